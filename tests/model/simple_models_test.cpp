// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/connection_factory.h"
#include "engine/engine.h"
#include "hf/database.h"
#include "hf/database_model.h"
#include "hf/sql_text.h"
#include "model/text_helpers.h"
#include "support/own_settings.h"

namespace {

QStringList Sql(const rc::Ref<const HF::I_LSchemaObject>& object, HF::ELObjectType type, int kind, int property = -1,
                const HF::LVariant& value = {})
{
    QStringList texts;
    for (const HF::LQueryNode& node :
         orbDuckDB_Engine::Instance().GetModel(type)->GetQueryNodes(object, HF::ELQueryKind(kind), property, value)) {
        EXPECT_EQ(node.kind, kind);
        EXPECT_EQ(node.property, property);
        EXPECT_EQ(node.object.lock(), object);
        texts.append(node.sql);
    }
    return texts;
}

TEST(ModelTexts, Quoting)
{
    EXPECT_EQ(QuoteIdent("plain"), "\"plain\"");
    EXPECT_EQ(QuoteIdent("a\"b"), "\"a\"\"b\"");
    EXPECT_EQ(QuoteStringLiteral("it's"), "'it''s'");
    EXPECT_EQ(QualifiedName("s", "t"), "\"s\".\"t\"");
    EXPECT_EQ(QualifiedName("", "t"), "\"t\"");
    EXPECT_EQ(WrapSingleOperation("\n A;\n"), "BEGIN; --SO--\n\nA;\n\nEND; --SO--\n");
}

/// Databases of the real connection, which knows the engine's keywords.
class SimpleModels : public support::OwnSettings
{
protected:
    rc::Ref<HF::I_LDatabase> MakeDatabase()
    {
        m_database = ConnectionFactoryInstance()->get_Connections("")[0]->CreateDatabase(":memory:m", {}).Force();
        return rc::Ref<HF::I_LDatabase>(*m_database);
    }
    void TearDown() override
    {
        const bool closed = !m_database || m_database->Close().Force();
        EXPECT_TRUE(closed);
    }

private:
    rc::Ptr<HF::I_LDatabase> m_database;
};

TEST_F(SimpleModels, Database)
{
    const auto database = MakeDatabase();
    const auto path = [&](const QStringList& names) {
        return Sql(database, HF::TYPE_DATABASE, HF::KIND_CHANGE_PROPERTY, PROP_SEARCH_PATH, names);
    };
    EXPECT_EQ(path({"main", "sales"}), QStringList("SET search_path='main,sales';"));
    EXPECT_EQ(path({"x"}), QStringList("SET search_path='x';"));
    EXPECT_EQ(path({}), QStringList("SET search_path='';"));
    EXPECT_EQ(path({"it's"}), QStringList("SET search_path='it''s';"));
    EXPECT_TRUE(database->SqlExecute(QStringLiteral("CREATE SCHEMA \"it's\"")));
    for (const QStringList& names : {QStringList{"it's", "main"}, QStringList{}})
        EXPECT_TRUE(database->SqlExecute(path(names)[0])) << path(names)[0].toStdString();
    EXPECT_FALSE(database->SqlExecute(path({"x"})[0])); // no such schema
    EXPECT_EQ(Sql(database, HF::TYPE_DATABASE, HF::KIND_CHANGE_PROPERTY, PROP_NAME, "x"), QStringList(""));
    for (const int kind : {1, 3, 4, 5, 6, 7, 8})
        EXPECT_EQ(Sql(database, HF::TYPE_DATABASE, kind), QStringList("")) << kind;
    EXPECT_FALSE(orbDuckDB_Engine::Instance().GetModel(HF::TYPE_DATABASE)->IsTransactable(database));
}

TEST_F(SimpleModels, SchemaStatementsRunAsTheyAre)
{
    const auto database = MakeDatabase();
    for (const QString& name : {QString("plain"), QString("a\"b"), QString("Two Words"), QString("order")}) {
        EXPECT_TRUE(database->SqlExecute("CREATE SCHEMA " + QuoteIdent(name)));
        EXPECT_TRUE(database->UpdateChildObjects(HF::TYPE_SCHEMA));
        const auto found = database->get_ChildObject(HF::TYPE_SCHEMA, name).Force();
        ASSERT_TRUE(found) << name.toStdString();
        const rc::Ref<const HF::I_LSchemaObject> schema{rc::Ref<HF::I_LSchemaObject>(found)};
        EXPECT_EQ(SchemaNameOf(schema), "");

        const QStringList create = Sql(schema, HF::TYPE_SCHEMA, HF::KIND_CREATE);
        const QStringList drop = Sql(schema, HF::TYPE_SCHEMA, HF::KIND_DROP);
        ASSERT_EQ(create.size(), 1);
        ASSERT_EQ(drop.size(), 1);
        EXPECT_TRUE(create[0].startsWith("CREATE SCHEMA IF NOT EXISTS ") && create[0].endsWith(";\n"));
        EXPECT_TRUE(drop[0].startsWith("DROP SCHEMA IF EXISTS ") && drop[0].endsWith(" CASCADE;"));
        const QString count = "SELECT count(*) FROM duckdb_schemas() WHERE schema_name = " + QuoteStringLiteral(name);
        for (const auto& [sql, left] : {std::pair(drop[0], "0"), {create[0], "1"}, {drop[0], "0"}}) {
            EXPECT_TRUE(database->SqlExecute(sql)) << sql.toStdString();
            EXPECT_EQ(HF::EvaluateSQL(database, count).value_or("none"), left) << sql.toStdString();
        }
        const QStringList rename = Sql(schema, HF::TYPE_SCHEMA, HF::KIND_CHANGE_PROPERTY, PROP_NAME, "new name");
        EXPECT_EQ(rename, QStringList("ALTER SCHEMA " + schema->get_NameQuoted() + " RENAME TO \"new name\";"));
        EXPECT_FALSE(database->SqlExecute(rename[0])); // the engine does not have it yet
        EXPECT_EQ(Sql(schema, HF::TYPE_SCHEMA, HF::KIND_CHANGE_PROPERTY, PROP_COMMENT, "x"), QStringList(""));
    }
}

TEST_F(SimpleModels, PropertyLists)
{
    const auto listed = [](HF::ELObjectType type) {
        HF::LHasProperties::Properties list;
        orbDuckDB_Engine::Instance().GetModel(type)->CreateProperties(list);
        QStringList texts;
        for (const HF::LProperty& property : list.All())
            texts.append(QString("%1:%2").arg(property.id).arg(property.flags));
        return texts.join(' ');
    };
    EXPECT_EQ(listed(HF::TYPE_DATABASE), "26:135 100:131461 96:2109440 104:1 112:1 115:1");
    EXPECT_EQ(listed(HF::TYPE_SCHEMA), "26:135 22:16777217 107:1 109:1 116:1 118:1 113:1");
    EXPECT_EQ(listed(HF::TYPE_TABLE), "26:134 22:16777217 37:4097 35:4261 45:161 9:40 34:12422 191:16777217 192:16777217 194:16777217 197:16777249 193:16777217 "
                                      "109:16777217 200:16777217");
    EXPECT_EQ(listed(HF::TYPE_FIELD), "26:420 141:33 9:40 47:2101280 130:164 142:176 143:176 58:180 59:180 132:52 140:160 136:128 48:128");
    EXPECT_EQ(listed(HF::TYPE_METHOD), "26:420 141:33 9:40 47:2101280 176:164 142:176 143:176 58:180 59:180 132:52 136:128 48:128");
    EXPECT_EQ(listed(HF::TYPE_INDEX), "26:134 35:4129 9:40 18:12320 48:160");
    EXPECT_EQ(listed(HF::TYPE_UNIQUE), "26:135 18:12328");
    EXPECT_EQ(listed(HF::TYPE_CHECK), "26:135 60:428");
    EXPECT_EQ(listed(HF::TYPE_LINK), "26:135 37:33 47:134218769 154:129 161:161 159:161 160:161 158:161 34:8225 156:8225");
    EXPECT_EQ(listed(HF::TYPE_VIEW), "22:16777249 37:4129 26:134 45:129 46:65704 9:40 192:16777217");
    const QString function = listed(HF::TYPE_FUNCTION);
    EXPECT_TRUE(function.startsWith("26:166 22:16777377 37:33 9:40 46:65704 146:37 145:33 ") && function.endsWith(" 45:33")) << function.toStdString();
    EXPECT_EQ(function.count(":33 ") + function.endsWith(":33"), 5); // its arguments and its body as well
    EXPECT_EQ(listed(HF::TYPE_SEQUENCE), "26:420 22:16777249 37:33 9:40 190:420 186:420 187:420 188:420 189:420 185:420 45:420");
}

} // namespace
