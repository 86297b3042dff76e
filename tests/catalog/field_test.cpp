// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/database_place.h"

#include "data/field.h"
#include "hf/action.h"

#include <QMenu>

namespace {

using namespace Qt::StringLiterals;

class FieldTest : public support::DatabasePlace
{
protected:
    rc::Ptr<HF::I_LTable> Table(const QString& name)
    {
        const auto schema = rc::cast<HF::I_LSchema>(Database().get_ChildObject(HF::TYPE_SCHEMA, u"main"_s).Force());
        schema->UpdateChildObjects(HF::TYPE_TABLE);
        return schema->get_Table(name);
    }
    /// The values of some properties, joined by "|".
    static QString Shown(const HF::I_LField& field, std::initializer_list<int> ids)
    {
        QStringList texts;
        for (const int id : ids)
            texts << field.get_Property(id).value.ToString();
        return texts.join(u'|');
    }
};

TEST_F(FieldTest, TypesComeApart)
{
    struct Case
    {
        const char* type;
        const char* shown; ///< type, precision, scale, arguments, size, element
        HF::ELFieldType fieldType;
    };
    const Case cases[] = {
        {"DECIMAL(18,3)", "Decimal|18|3|||", HF::FIELD_DECIMAL},
        {"INTEGER[]", "List|||||Integer", HF::FIELD_LIST},
        {"INTEGER[3]", "Array||||3|Integer", HF::FIELD_ARRAY},
        {"DECIMAL(4,1)[2][]", "List|||||DECIMAL(4,1)[2]", HF::FIELD_LIST},
        {"DECIMAL(4,1)[]", "List|||||DECIMAL(4,1)", HF::FIELD_LIST},
        {"STRUCT(a INTEGER)", "Struct|||a INTEGER||", HF::FIELD_STRUCT},
        {"MAP(VARCHAR, INTEGER)", "Map|||VARCHAR, INTEGER||", HF::FIELD_MAP},
        {"UNION(n INTEGER, s VARCHAR)", "Union|||n INTEGER, s VARCHAR||", HF::FIELD_UNION},
        {"ENUM('a', 'it''s (b)')", "Enum|||'a', 'it''s (b)'||", HF::FIELD_ENUM},
        {"TIMESTAMP WITH TIME ZONE", "Timestamp With Time Zone|||||", HF::FIELD_TIMESTAMP_TZ},
        {"BLOB", "BLOB|||||", HF::FIELD_BLOB},
        {"JSON", "JSON|||||", HF::FIELD_JSON},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.type);
        Run(u"CREATE OR REPLACE TABLE t(c %1)"_s.arg(QString::fromUtf8(each.type)));
        const auto table = Table(u"t"_s);
        ASSERT_TRUE(table);
        const auto field = table->get_Field(0);
        ASSERT_TRUE(field);
        EXPECT_EQ(Shown(*field, {PROP_TYPE_NAME, PROP_PRECISION, PROP_SCALE, PROP_TYPE_ARGUMENTS, PROP_ARRAY_SIZE,
                                 PROP_ELEMENT_TYPE})
                      .replace(u"|-1|-1|"_s, u"|||"_s),
                  QString::fromUtf8(each.shown));
        EXPECT_EQ(field->get_Type().Force(), each.fieldType);
    }
}

TEST_F(FieldTest, FlagsOfOddNames)
{
    Run(u"CREATE TABLE \"o'd d\"(\"a b\" INTEGER PRIMARY KEY, \"$NAME\" INTEGER UNIQUE, c INTEGER, \"d\" INTEGER, e INTEGER NOT NULL); "
        "CREATE UNIQUE INDEX i1 ON \"o'd d\"(c); CREATE INDEX i2 ON \"o'd d\"(\"d\"); CREATE INDEX i3 ON \"o'd d\"(e, c)"_s);
    ASSERT_TRUE(errors.isEmpty()) << errors.first().toStdString();
    const auto table = Table(u"o'd d"_s);
    ASSERT_TRUE(table);
    const std::pair<const char16_t*, const char16_t*> cases[] = {
        {u"a b", u"a b [I:U]"}, {u"$NAME", u"$NAME [I:U:N]"}, {u"c", u"c [I:U:N]"}, {u"d", u"d [I:N]"}, {u"e", u"e"}};
    for (const auto& [name, shown] : cases) {
        const auto field = table->get_Field(QString::fromUtf16(name));
        ASSERT_TRUE(field) << QString::fromUtf16(name).toStdString();
        EXPECT_TRUE(field->UpdatePropertyImpl(PROP_UNIQUE).Force());
        EXPECT_EQ(field->get_NameForViews(), QString::fromUtf16(shown));
    }
    EXPECT_TRUE(table->get_Field(0)->IsPK().Force());
    EXPECT_FALSE(table->get_Field(1)->IsPK().Force());
    EXPECT_EQ(table->get_Field(0)->get_Icon().Force(), u":/icons/field-pk.svg"_s);
}

TEST_F(FieldTest, IndexesByTheFlag)
{
    support::Prompter prompter;
    Run(u"CREATE TABLE t(\"a\"\"b\" INTEGER, c INTEGER); CREATE UNIQUE INDEX u ON t(c)"_s);
    const auto table = Table(u"t"_s);
    const auto field = table->get_Field(0);
    prompter.text = QString();
    EXPECT_FALSE(field->ApplyPropertyValue(PROP_INDEXED, true).Force());
    prompter.text = u"my \"ix\""_s;
    EXPECT_TRUE(field->ApplyPropertyValue(PROP_INDEXED, true).Force()) << errors.join(u'\n').toStdString();
    EXPECT_EQ(Column(u"SELECT index_name FROM duckdb_indexes() ORDER BY 1"_s), u"my \"ix\" u"_s);
    field->UpdatePropertyImpl(PROP_INDEXED).Force();

    const auto unique = table->get_Field(1);
    unique->UpdatePropertyImpl(PROP_INDEXED).Force();
    EXPECT_FALSE(unique->ApplyPropertyValue(PROP_INDEXED, false).Force());
    EXPECT_EQ(errors, QStringList{u"You need to reset \"Unique\" flag first!"_s});
    EXPECT_EQ(Column(u"SELECT count(*) FROM duckdb_indexes()"_s), u"2"_s);
}

TEST_F(FieldTest, FieldsOfAViewAreReadOnly)
{
    Run(u"CREATE VIEW v AS SELECT 1 AS a, 'x' AS b"_s);
    const auto schema = Database().get_ChildObject(HF::TYPE_SCHEMA, u"main"_s).Force();
    const auto view = schema->get_ChildObject(HF::TYPE_VIEW, u"v"_s).Force();
    ASSERT_TRUE(view);
    const auto fields = view->get_ChildObjects(HF::TYPE_FIELD).Force();
    ASSERT_EQ(fields.size(), 2);
    EXPECT_EQ(fields[0]->GetString(PROP_TYPE_NAME), u"Integer"_s);
    for (const int id : {PROP_COMMENT, PROP_UNIQUE, PROP_INDEXED, PROP_DEFAULT})
        EXPECT_TRUE(fields[0]->get_Property(id).flags & HF::PROPERTY_HIDDEN) << id;
    EXPECT_TRUE(fields[0]->get_Property(PROP_TYPE_NAME).flags & HF::PROPERTY_READONLY);
    const std::unique_ptr<QMenu> menu(fields[0]->get_Menu());
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions()[0]->text(), u"Refresh"_s);
}

TEST_F(FieldTest, TheLastFieldStays)
{
    support::Prompter prompter;
    Run(u"CREATE TABLE t(a INTEGER)"_s);
    const auto table = Table(u"t"_s);
    table->get_Field(0)->Drop().Force();
    EXPECT_EQ(prompter.told, QStringList{u"Cannot delete the last field from table!"_s});
    const rc::Ref<HF::LTreeItem> field(*table->get_Field(0));
    table->get_Field(0)->get_Action(QString::fromLatin1(HF::DO_DROP_SELF))->Run({field});
    EXPECT_EQ(prompter.asked, QStringList{u"Do you really want to delete field \"a\"?"_s});
    EXPECT_EQ(prompter.told.size(), 2);
    EXPECT_TRUE(HF::IsQuerySuccess(Run(u"SELECT a FROM t"_s)));
}

} // namespace
