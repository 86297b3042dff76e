// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/engine.h"

#include "hf/database.h"
#include "hf/database_model.h"
#include "hf/engine_place.h"
#include "hf/schema_object.h"
#include "hf/schema_item_list.h"
#include "hf/values.h"

#include <gtest/gtest.h>

using namespace HF;

namespace {

/// Knows two words and one kind of object.
class TestEngine final : public LDatabaseEngine
{
public:
    TestEngine()
    {
        RegisterFieldTypes({{rc::make<LValueInt32>(), "Integer", FIELD_INTEGER},
                            {LValueInvalid::Instance(), "", FIELD_UNKNOWN},
                            {rc::make<LValueDecimal>(18, 3, u"0"), "Decimal", FIELD_DECIMAL},
                            {rc::make<LValueString>(), "Timestamp With Time Zone", FIELD_TIMESTAMP_TZ},
                            {rc::make<LValueString>(), "UHugeInt", FIELD_UHUGEINT}});
    }
    LLazy<bool, false> IsNeedQuote(const QString& name, const rc::Ptr<I_LConnection>& connection) const override
    {
        return LDatabaseKeywords({"SELECT", "order"}).Contains(name)
               || LDatabaseEngine::IsNeedQuote(name, connection).Force();
    }
    I_LDatabaseModel* GetModel(ELObjectType type) const override
    {
        return type == TYPE_TABLE ? const_cast<Model*>(&m_model) : DummyModel();
    }

private:
    struct Model : I_LDatabaseModel
    {
        QList<LQueryNode> GetQueryNodes(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                                        const LVariant& value) const override
        {
            LQueryNode node = MakeNode(object, kind, property, value);
            node.sql = QStringLiteral("first");
            LQueryNode child = MakeNode(object, kind, property, value), comment = child, empty = child;
            child.sql = QStringLiteral("second -- c");
            comment.sql = QStringLiteral("-- nothing to do\n");
            child.children = {empty, comment};
            node.children = {child};
            LQueryNode last = MakeNode(object, kind, property, value);
            last.sql = QStringLiteral("third;\n\n");
            return {node, last};
        }
        bool IsTransactable(const rc::Ref<const I_LSchemaObject>&) const override { return false; }
    };
    Model m_model;
};

class TestObject final : public LDatabaseObject<I_LSchemaObject>
{
public:
    explicit TestObject(int type) : m_type(type) {}
    int get_ObjectType() const override { return m_type; }

private:
    int m_type;
};

} // namespace

TEST(Engine, FieldTypesByWholeName)
{
    const TestEngine engine;
    EXPECT_EQ(engine.GetFieldTypeByName("UHugeInt"), FIELD_UHUGEINT);
    EXPECT_EQ(engine.GetFieldTypeByName("INTEGER"), FIELD_INTEGER);
    EXPECT_EQ(engine.GetFieldTypeByName("TIMESTAMP WITH TIME ZONE"), FIELD_TIMESTAMP_TZ);
    EXPECT_EQ(engine.GetFieldTypeByName("decimal(4,2)"), FIELD_DECIMAL);
    for (const char* unknown : {"", "INTEGER[]", "INTEGER[3]", "DECIMAL(4,2)[]", "DECIMALS", "STRUCT(a INTEGER)"})
        EXPECT_EQ(engine.GetFieldTypeByName(unknown), FIELD_UNKNOWN) << unknown;

    EXPECT_EQ(engine.FormatFieldType("INTEGER"), "Integer");
    // The arguments of an element type must not get lost.
    EXPECT_EQ(engine.FormatFieldType("DECIMAL(4,2)"), "DECIMAL(4,2)");
    EXPECT_EQ(engine.FormatFieldType("INTEGER[]"), "INTEGER[]");

    EXPECT_TRUE(rc::cast<LValueInt32>(engine.CreateValueForType("integer", false)));
    const auto decimal = rc::cast<LValueDecimal>(engine.CreateValueForType("DECIMAL(4,2)", true));
    ASSERT_TRUE(decimal);
    EXPECT_TRUE(decimal->get_IsNull());
    EXPECT_EQ(decimal->get_Precision(), 4);
    EXPECT_EQ(decimal->get_Scale(), 2);
    EXPECT_TRUE(rc::cast<LValueString>(engine.CreateValueForType("INTEGER[]", false)));
}

TEST(Engine, QuotedNamesAreReadBack)
{
    const TestEngine engine;
    test::EnginePlace place;
    struct Case
    {
        const char* name;
        bool quoted;
    };
    const Case cases[] = {
        {"a", false},    {"A_1", false},  {"a$b", false},  {"Ä1", false},    {"日本", false}, {"²", false},
        {"1x", true},    {"$x", true},    {"a.b", true},   {"a#b", true},    {"a b", true},   {"a-b", true},
        {"a\"b", true},  {"\"", true},    {"select", true}, {"Order", true}, {"😀", true},    {"\u00A0x", true},
        {"a\nb", true},  {"", true},      {"--", true},    {"'", true},
    };
    for (const Case& c : cases) {
        const QString name = QString::fromUtf8(c.name);
        const QString text = engine.QuoteName(name, nullptr);
        EXPECT_EQ(text != name, c.quoted) << c.name;
        if (name.isEmpty())
            continue; // no engine holds such a name
        EXPECT_EQ(place.Ask(QStringLiteral("CREATE OR REPLACE TABLE t(%1 INTEGER);"
                                           "SELECT column_name FROM duckdb_columns() WHERE table_name = 't'")
                                .arg(text)),
                  name)
            << c.name;
    }
}

TEST(Engine, ParseIdentSplitsPaths)
{
    const TestEngine engine;
    const QList<ELDbObjType> path{DBOBJ_SCHEMA, DBOBJ_TABLE, DBOBJ_FIELD};
    using Elements = QList<LIdent::Element>;
    const auto parse = [&](const QString& text) { return engine.ParseIdent(text, path).get_Elements(); };
    EXPECT_EQ(parse("main.t.c"),
              (Elements{{DBOBJ_SCHEMA, "main"}, {DBOBJ_TABLE, "t"}, {DBOBJ_FIELD, "c"}}));
    EXPECT_EQ(parse("\"a.b\" . \"x\"\"y\""), (Elements{{DBOBJ_TABLE, "a.b"}, {DBOBJ_FIELD, "x\"y"}}));
    EXPECT_EQ(parse("  c "), (Elements{{DBOBJ_FIELD, "c"}}));
    EXPECT_EQ(parse("\" c \""), (Elements{{DBOBJ_FIELD, " c "}}));
    EXPECT_EQ(parse("db.main.t.c"), (Elements{{DBOBJ_UNKNOWN, "db"}, {DBOBJ_SCHEMA, "main"}, {DBOBJ_TABLE, "t"},
                                              {DBOBJ_FIELD, "c"}}));
    EXPECT_EQ(parse("t.\"open"), (Elements{{DBOBJ_TABLE, "t"}, {DBOBJ_FIELD, "open"}}));
    EXPECT_TRUE(parse(" ").isEmpty());
    EXPECT_EQ(engine.ParseIdent("a.b", {}).get_FullName(), "a.b");
    EXPECT_EQ(engine.ParseIdent("a.b", {DBOBJ_VIEW}).get_Type(), DBOBJ_VIEW);
    // What QuoteName writes is one name again.
    for (const QString& name : {QStringLiteral("a.b"), QStringLiteral("x\"\"y"), QStringLiteral(" ")})
        EXPECT_EQ(engine.ParseIdent(engine.QuoteName(name, nullptr), {}).get_Name(), name);
}

TEST(Engine, StatementsComeDepthFirstFromTheModelOfTheKind)
{
    const TestEngine engine;
    const auto table = rc::make<TestObject>(TYPE_TABLE), other = rc::make<TestObject>(5);
    EXPECT_EQ(engine.GenerateQuery(table, KIND_CREATE, -1, LVariant::Empty(), 0),
              "first;\nsecond -- c\n;\n-- nothing to do\nthird;");
    EXPECT_FALSE(engine.IsTransactable(table));

    const QList<LQueryNode> nodes = engine.GetQueryNodes(other, KIND_DROP, 26, LVariant("x"));
    ASSERT_EQ(nodes.size(), 1);
    EXPECT_EQ(nodes[0].sql, "");
    EXPECT_EQ(nodes[0].kind, KIND_DROP);
    EXPECT_EQ(nodes[0].property, 26);
    EXPECT_EQ(nodes[0].value, LVariant("x"));
    EXPECT_EQ(nodes[0].object.lock().get(), other.get());
    EXPECT_EQ(engine.GenerateQuery(other, KIND_DROP, 26, LVariant("x"), 0), "");
}
