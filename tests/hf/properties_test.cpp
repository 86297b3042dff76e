// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/fake_database.h"
#include "hf/log.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace HF;

TEST(Variant, KeepsItsTypeAlsoWhenEmpty)
{
    const struct
    {
        LVariant value;
        LVariant::Type type;
        bool empty, asBool;
        long asLong;
        const char* asString;
        QStringList asList;
    } cases[] = {
        {LVariant::Empty(), LVariant::Invalid, true, false, 0, "", {}},
        {LVariant::EmptyBool(), LVariant::Bool, true, false, 0, "", {}},
        {LVariant::EmptyLong(), LVariant::Long, true, false, 0, "", {}},
        {LVariant::EmptyString(), LVariant::String, true, false, 0, "", {}},
        {LVariant::EmptyStringList(), LVariant::StringList, true, false, 0, "", {}},
        {true, LVariant::Bool, false, true, 1, "true", {"true"}},
        {-5, LVariant::Long, false, true, -5, "-5", {"-5"}},
        {std::numeric_limits<long>::min(), LVariant::Long, false, true, std::numeric_limits<long>::min(),
         "-9223372036854775808", {"-9223372036854775808"}},
        {~0ul, LVariant::ULong, false, true, -1, "18446744073709551615", {"18446744073709551615"}},
        {"käse", LVariant::String, false, true, 0, "käse", {"käse"}},
        {QString(), LVariant::String, false, false, 0, "", {""}},
        {weft::String("12"), LVariant::String, false, true, 12, "12", {"12"}},
        {QStringList({"a", "b"}), LVariant::StringList, false, true, 0, "a, b", {"a", "b"}},
        {QStringList(), LVariant::StringList, false, false, 0, "", {}},
        {LVariant::FromQVariant(QVariant()), LVariant::Invalid, true, false, 0, "", {}},
        {LVariant::FromQVariant(qulonglong(7)), LVariant::ULong, false, true, 7, "7", {"7"}},
        {LVariant::FromQVariant(short(-7)), LVariant::Long, false, true, -7, "-7", {"-7"}},
        {LVariant::FromQVariant(2.5), LVariant::Any, false, true, 3, "2.5", {"2.5"}},
    };
    int number = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(number++);
        EXPECT_EQ(c.value.get_Type(), c.type);
        EXPECT_EQ(c.value.IsEmpty(), c.empty);
        EXPECT_EQ(c.value.ToBool(), c.asBool);
        EXPECT_EQ(c.value.ToLong(), c.asLong);
        EXPECT_EQ(c.value.ToString().toStdString(), c.asString);
        EXPECT_EQ(c.value.ToStringList(), c.asList);
        EXPECT_EQ(c.value, LVariant(c.value));
    }
    EXPECT_FALSE(LVariant::EmptyBool() == LVariant::EmptyLong());
    EXPECT_FALSE(LVariant("1") == LVariant(1));
}

TEST(PropertyId, NumbersAreMadeOnceForAName)
{
    const int first = LPropertyID::CreateID("Argument Names", "Function");
    EXPECT_EQ(LPropertyID::CreateID("Argument Names", "Function"), first);
    EXPECT_NE(LPropertyID::CreateID("Argument Names", "Other"), first);
    EXPECT_EQ(LPropertyID::GetPropertyName(first), "Argument Names");
    EXPECT_EQ(LPropertyID::GetPropertyName(PROP_SEARCH_PATH), "Default schemas");
    EXPECT_NE(LPropertyID::GetPropertyName(first + 1000), "");
}

struct Bag : LHasProperties
{
    bool DeclareProperties(Properties& list) const override
    {
        if (!ready)
            return false;
        ++declarations;
        list.AssignProperties({LProperty("C", PROP_NAME, LVariant::EmptyString(), 135),
                               LProperty("C", PROP_SCALE, -1, PROPERTY_HIDDEN),
                               LProperty("D", PROP_COLUMNS, LVariant::EmptyStringList(), 0)});
        return true;
    }
    void NotifyPropertyChanged(int id) override { notified.append(id); }
    bool ready = true;
    mutable int declarations = 0;
    QList<int> notified;
};

TEST(Properties, AreReadByTypeWithDefaults)
{
    Bag bag;
    EXPECT_FALSE(bag.HasProperty(PROP_COMMENT));
    EXPECT_EQ(bag.GetStringOr(PROP_COMMENT, "none"), "none");
    EXPECT_EQ(bag.GetLongOr(PROP_NAME, 4), 4) << "declared and empty";
    EXPECT_EQ(bag.GetLong(PROP_SCALE), -1) << "declared with a value";
    bag.AssignPropertyValue(PROP_COMMENT, "text");
    EXPECT_EQ(bag.GetStringOr(PROP_COMMENT, "none"), "text");
    EXPECT_EQ(bag.HasProperty(PROP_COMMENT)->value, LVariant("text"));
    bag.AssignPropertyValue(PROP_COMMENT, LVariant::EmptyString());
    EXPECT_FALSE(bag.HasProperty(PROP_COMMENT));
    EXPECT_EQ(bag.get_Property(PROP_COMMENT).id, PROP_COMMENT);
    bag.AssignPropertyValue(PROP_COLUMNS, QStringList({"a", "b"}));
    EXPECT_EQ(bag.GetStringList(PROP_COLUMNS), QStringList({"a", "b"}));
    EXPECT_EQ(bag.GetStringListOr(PROP_KEY_COLUMNS, {"x"}), QStringList("x"));
    EXPECT_TRUE(bag.GetBoolOr(PROP_UNIQUE, true));
    EXPECT_EQ(bag.get_Property(424242).id, -1);
    EXPECT_EQ(bag.notified, QList<int>({PROP_COMMENT, PROP_COMMENT, PROP_COLUMNS}));

    EXPECT_TRUE(bag.AssignPropertySelection(PROP_LINK_CARDINALITY, "ONE to MANY"));
    EXPECT_FALSE(bag.AssignPropertySelection(PROP_LINK_CARDINALITY, "ONE to MANY"));
    EXPECT_EQ(bag.GetString(PROP_LINK_CARDINALITY), "ONE to MANY");
    EXPECT_EQ(bag.get_Property(PROP_LINK_CARDINALITY).selection, "ONE to MANY");
}

TEST(Properties, ADeclarationKeepsWhatWasAssignedBefore)
{
    Bag bag;
    bag.ready = false; // such as an object that does not know its engine yet
    bag.AssignPropertyValue(PROP_COMMENT, "c");
    bag.AssignPropertyValue(PROP_NAME, "n");
    bag.SetPropertyFlag(PROP_SCALE, PROPERTY_READONLY, true);
    EXPECT_EQ(bag.get_Properties().size(), 3);
    bag.ready = true;
    const QList<LProperty> all = bag.get_Properties();
    ASSERT_EQ(all.size(), 4);
    EXPECT_EQ(all[0], LProperty("C", PROP_NAME, "n", 135));
    EXPECT_EQ(all[1], LProperty("C", PROP_SCALE, -1, PROPERTY_HIDDEN | PROPERTY_READONLY));
    EXPECT_EQ(all[2].id, PROP_COLUMNS);
    EXPECT_EQ(all[3].value, LVariant("c"));
    bag.SetPropertyFlag(PROP_SCALE, PROPERTY_HIDDEN, false);
    EXPECT_EQ(bag.get_Property(PROP_SCALE).flags, PROPERTY_READONLY);
    bag.SetPropertyFlagForAll(PROPERTY_READONLY, true);
    for (const LProperty& property : bag.get_Properties())
        EXPECT_TRUE(property.flags & PROPERTY_READONLY);
    EXPECT_EQ(bag.declarations, 1);

    QList<LProperty> list;
    const std::pair<int, int> flags[] = {
        {0x401, 0x8000401}, {0x400, 0x400}, {0x1, 0x1}, {0x210, 0x8000210}, {0x200, 0x200}, {0x411, 0x8000411}};
    for (const auto& [given, kept] : flags) {
        AddPropertyTo(list, "C", 1, true, given);
        EXPECT_EQ(list.last().flags, kept);
    }
}

TEST(Properties, TakeTheValueOfALazyWhenItComes)
{
    const auto schema = rc::make<fake::Schema>();
    EXPECT_TRUE(schema->AssignPropertyLazyValue<long>(PROP_RECORD_COUNT, LLazy<long, false>(5)).IsResolved());
    EXPECT_EQ(schema->GetLong(PROP_RECORD_COUNT), 5);
    {
        const auto pending = schema->AssignPropertyLazyValue<long>(
            PROP_RECORD_COUNT, LLazy<long, false>::FromBody([] { return 6l; }));
        EXPECT_EQ(schema->GetLong(PROP_RECORD_COUNT), 5);
    }
    EXPECT_EQ(schema->GetLong(PROP_RECORD_COUNT), 6) << "nobody waited, so it came with the drop";
}

TEST(Properties, ManyThreadsReadAndWrite)
{
    const auto schema = rc::make<fake::Schema>();
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 2000; ++i) {
                schema->AssignPropertyValue(1000 + i % 50, QString(8, QChar('a' + t)));
                const QString text = schema->GetString(1000 + (i * 7) % 50);
                if (!text.isEmpty() && (text.size() != 8 || text.count(text[0]) != 8))
                    ++wrong;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(schema->get_Properties().size(), 50);
}

struct Changes : testing::Test
{
    rc::Ref<fake::Root> root = rc::make<fake::Root>();
    rc::Ref<fake::Database> database = root->Add();
    rc::Ref<I_LSchemaObject> table{database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "t"}})};

    void SetUp() override { database->TakeLog(); }
    ~Changes() override { database->Close(); }
};

TEST_F(Changes, AreAppliedByTheModelsStatements)
{
    EXPECT_TRUE(table->ProcessProperty(PROP_COLLATION, "NOCASE").Force());
    EXPECT_EQ(database->TakeLog(), QStringList({"SET 7 = NOCASE;", "FLUSH"})) << "one statement needs no transaction";
    EXPECT_EQ(table->GetString(PROP_COLLATION), "NOCASE");

    EXPECT_FALSE(table->ProcessProperty(PROP_COMMENT, "x").Force()) << "the model has no statement for it";
    EXPECT_EQ(database->TakeLog(), QStringList());
    EXPECT_EQ(table->GetString(PROP_COMMENT), "about t");

    EXPECT_TRUE(table->ApplyPropertyValue(PROP_COLUMNS, QStringList({"a", "b"})).Force());
    EXPECT_EQ(database->TakeLog(), QStringList({"BEGIN;", "SET 18 = a, b;", "ALSO;", "COMMIT;", "FLUSH"}));

    EXPECT_TRUE(table->Rename("new").Force());
    EXPECT_EQ(database->TakeLog(), QStringList({"SET 26 = new;", "FLUSH"}));
    EXPECT_EQ(table->get_Name(), "new");
    EXPECT_TRUE(database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "NEW"}}));
    EXPECT_FALSE(database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "t"}}));
    EXPECT_TRUE(table->ProcessProperty(PROP_NAME, "newer").Force());
    EXPECT_EQ(table->get_Name(), "newer");

    table->ApplyPropertyValue(PROP_COLLATION, "C");
    EXPECT_EQ(database->TakeLog().last(), "FLUSH") << "an answer that nobody waits for is worked out all the same";
}

TEST_F(Changes, ThatFailLeaveThingsAsTheyWereAndSayWhy)
{
    QStringList errors;
    SetErrorLogSink([&errors](const QString& text) { errors.append(text); });
    database->fail = [](const QString& text) { return text == "ALSO;"; };
    EXPECT_FALSE(table->ProcessProperty(PROP_COLUMNS, QStringList("a")).Force());
    EXPECT_EQ(database->TakeLog(), QStringList({"BEGIN;", "SET 18 = a;", "ALSO;", "ROLLBACK;"}));
    EXPECT_FALSE(table->HasProperty(PROP_COLUMNS));
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].startsWith("no") && errors[0].endsWith("ALSO;")) << errors[0].toStdString();

    database->fail = [](const QString& text) { return text == "COMMIT;"; };
    EXPECT_FALSE(table->ProcessProperty(PROP_COLUMNS, QStringList("a")).Force());
    EXPECT_EQ(database->TakeLog().last(), "ROLLBACK;");
    SetErrorLogSink(nullptr);
}

TEST_F(Changes, StatementsOfTheirOwnTransactionRunAlone)
{
    const QString alone = "BEGIN; --SO--\nx\nEND; --SO--\n";
    EXPECT_TRUE(RunStatements(database, {"a;", "b;", alone, "c;"}, true));
    EXPECT_EQ(database->TakeLog(),
              QStringList({"BEGIN;", "a;", "b;", "COMMIT;", alone, "BEGIN;", "c;", "COMMIT;", "FLUSH"}));
    EXPECT_TRUE(RunStatements(database, {"a;", "b;"}, false));
    EXPECT_EQ(database->TakeLog(), QStringList({"a;", "b;", "FLUSH"}));
    database->fail = [&](const QString& text) { return text == alone; };
    EXPECT_FALSE(RunStatements(database, {"a;", alone, "b;"}, true));
    EXPECT_EQ(database->TakeLog(), QStringList({"BEGIN;", "a;", "COMMIT;", alone}));
}

TEST_F(Changes, CountsComeWithTheirListsAndOnlyWhenNeeded)
{
    const rc::Ref<I_LSchemaObject> main{database->Get({{TYPE_SCHEMA, "second"}})};
    EXPECT_TRUE(main->UpdatePropertyIfNeed(PROP_COUNT_TABLES).Force());
    EXPECT_EQ(main->GetLong(PROP_COUNT_TABLES), 2);
    EXPECT_EQ(database->TakeLog(), QStringList("TABLES OF 'second'"));
    EXPECT_TRUE(main->UpdatePropertyIfNeed(PROP_COUNT_TABLES).IsResolved());
    EXPECT_TRUE(main->ReloadProperties().Force());
    EXPECT_EQ(database->TakeLog(), QStringList());
    EXPECT_EQ(main->Evaluate(EVAL_EXISTS), LVariant(true));
    EXPECT_EQ(main->Evaluate(EVAL_JUST_CREATED), LVariant(false));
    EXPECT_TRUE(main->Evaluate(1).IsEmpty());
}

} // namespace
