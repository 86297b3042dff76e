// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/fake_database.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace HF;
using namespace std::chrono_literals;

QStringList Names(const RcList<I_LSchemaObject>& items)
{
    QStringList names;
    for (const rc::Ref<I_LSchemaObject>& item : items)
        names.append(item->get_Name());
    return names;
}

TEST(SubstituteNames, ReplacesOnceAndQuotes)
{
    const struct
    {
        const char* query;
        const char* expected;
    } cases[] = {
        {"a = $NAME AND b = $PNAME AND c = $PPNAME", "a = 'it''s' AND b = '$NAME' AND c = ''"},
        {"$NAME$PNAME", "'it''s''$NAME'"},
        {"no names, $ alone, $$ and $1", "no names, $ alone, $$ and $1"},
        {"$$NAME", "$'it''s'"},
        {"", ""},
    };
    for (const auto& [query, expected] : cases)
        EXPECT_EQ(SubstituteNames(query, "it's", "$NAME").toStdString(), expected);
}

struct List : testing::Test
{
    rc::Ref<fake::Root> root = rc::make<fake::Root>();
    rc::Ref<fake::Database> database = root->Add();
    rc::Ref<I_LSchemaObject> main{database->Get({{TYPE_SCHEMA, "main"}})};
    rc::Ptr<LSchemaItemList> tables = main->get_ChildList(TYPE_TABLE);

    void SetUp() override { database->TakeLog(); }
    ~List() override { database->Close(); }
};

TEST_F(List, IsReadOnceOnDemandInOrderWithItsCount)
{
    EXPECT_FALSE(tables->IsBuilt());
    EXPECT_FALSE(main->HasProperty(PROP_COUNT_TABLES));
    EXPECT_EQ(tables->get_Name(), "Tables");
    const auto lazy = main->get_ChildObjects(TYPE_TABLE);
    EXPECT_EQ(database->TakeLog(), QStringList());
    EXPECT_EQ(Names(lazy.Force()), QStringList({"t", "P"}));
    EXPECT_TRUE(tables->BuildList());
    EXPECT_EQ(main->get_ChildObjectsNames(TYPE_TABLE), QStringList({"t", "P"}));
    EXPECT_EQ(database->TakeLog(), QStringList("TABLES OF 'main'"));
    EXPECT_EQ(main->GetLong(PROP_COUNT_TABLES), 2);
    EXPECT_EQ(rc::cast<I_LSchema>(rc::Ptr(main.get()))->get_Tables().size(), 2);

    const rc::Ptr<I_LSchemaObject> t = tables->get_ChildItem("t");
    const rc::Ptr<I_LSchemaObject> p = tables->get_ChildItem("p");
    ASSERT_TRUE(t && p);
    EXPECT_EQ(t->get_ParentObject().get(), main.get());
    EXPECT_FALSE(tables->get_ChildItem("nosuch"));
    EXPECT_EQ(t->get_Property(PROP_OBJECT_ID).value, LVariant(1));
    EXPECT_EQ(t->GetString(PROP_COMMENT), "about t");
    EXPECT_FALSE(t->GetBool(PROP_TEMPORARY));
    EXPECT_TRUE(p->GetBool(PROP_TEMPORARY));
    EXPECT_EQ(p->get_Property(PROP_COMMENT).value, LVariant::EmptyString());
    EXPECT_EQ(t->get_Property(PROP_SQL_TEXT).id, -1) << "a missing column leaves the property alone";
}

TEST_F(List, TakesTheLastColumnOfTheName)
{
    EXPECT_EQ(main->get_ChildObjectsNames(TYPE_LINK), QStringList({"link_p_t", "link_p_p"}));
    EXPECT_EQ(database->TakeLog(), QStringList("LINKS OF 'main'")) << "the text for this engine takes the place";
}

TEST_F(List, FindsByNameAndByKeyAndTellsCaseTwinsApart)
{
    database->results["TABLES OF 'main'"] = {{"table_name"}, {{"f$$1"}, {"f$$2"}, {"Ab"}, {"aB"}, {"Ärger"}}};
    const auto found = [&](const char* name) {
        const rc::Ptr<I_LSchemaObject> item = tables->get_ChildItem(name);
        for (int i = 0; i < tables->get_Count(); ++i)
            if (tables->get_ItemsNow()[i] == item)
                return i;
        return -1;
    };
    const struct
    {
        const char* name;
        int index;
    } cases[] = {{"f", 0},  {"F", 0},  {"f$$1", 0},  {"f$$2", 1}, {"Ab", 2},
                 {"aB", 3}, {"ab", 2}, {"äRGER", 4}, {"", -1}};
    for (const auto& [name, index] : cases)
        EXPECT_EQ(found(name), index) << name;
    tables->get_ItemsNow()[0]->AssignName("renamed");
    EXPECT_EQ(found("renamed"), 0);
    EXPECT_EQ(found("f"), 1);
}

TEST_F(List, SortsColumnsByTheirPosition)
{
    const auto t = database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "t"}});
    EXPECT_EQ(t->get_ChildObjectsNames(TYPE_FIELD), QStringList({"a", "b"}));
}

TEST_F(List, ColumnsAreLookedUpOnceForAllRows)
{
    fake::Rows rows{{"table_oid", "table_name", "comment", "temporary"}, {}};
    for (int i = 0; i < 500; ++i)
        rows.rows.append({i, QString::number(i), QVariant(), false});
    database->results["TABLES OF 'main'"] = rows;
    fake::Cursor::s_lookups = 0;
    EXPECT_EQ(main->get_ChildObjectsNames(TYPE_TABLE).size(), 500);
    EXPECT_LE(fake::Cursor::s_lookups, 4);
}

TEST_F(List, AFailedReadKeepsWhatWasThere)
{
    EXPECT_TRUE(tables->BuildList());
    const RcList<I_LSchemaObject> before = tables->get_ItemsNow();
    const fake::Rows good = database->results["TABLES OF 'main'"];
    const std::pair<const char*, fake::Rows> cases[] = {
        {"no column of the name", {{"something"}, {{"x"}}}},
        {"an object that throws", {{"table_name"}, {{"fine"}, {"unreadable"}}}},
    };
    for (const auto& [what, rows] : cases) {
        database->results["TABLES OF 'main'"] = rows;
        EXPECT_FALSE(tables->ReloadObjects()) << what;
        EXPECT_EQ(tables->get_ItemsNow(), before) << what;
    }
    database->results.erase("TABLES OF 'main'");
    EXPECT_FALSE(main->UpdateChildObjects(TYPE_TABLE)) << "the query fails";
    EXPECT_TRUE(tables->BuildList()) << "what was read stands";
    database->results["TABLES OF 'main'"] = good;
    EXPECT_TRUE(tables->ReloadObjects());
    EXPECT_FALSE(main->UpdateChildObjects(TYPE_SEQUENCE)) << "no such list";

    const auto second = database->Get({{TYPE_SCHEMA, "second"}})->get_ChildList(TYPE_TABLE);
    database->closing = true;
    EXPECT_FALSE(second->BuildList());
    EXPECT_FALSE(second->IsBuilt());
    database->closing = false;
}

TEST_F(List, ARebuildMakesNewObjectsAndLetsTheOldOnesEnd)
{
    rc::Weak<I_LSchemaObject> gone, goneField;
    rc::Ptr<I_LSchemaObject> held;
    {
        const auto p = tables->get_ChildItem("p");
        gone = rc::Weak<I_LSchemaObject>(p);
        held = tables->get_ChildItem("t");
        goneField = rc::Weak<I_LSchemaObject>(held->get_ChildObject(TYPE_FIELD, "a").Force());
    }
    EXPECT_TRUE(main->UpdateChildObjects(TYPE_TABLE));
    EXPECT_FALSE(gone.lock());
    EXPECT_FALSE(goneField.lock()) << "a table out of the tree holds no fields in a circle";
    EXPECT_NE(tables->get_ChildItem("t"), held);
    EXPECT_TRUE(held->IsDetached());

    // Whoever still has the old table may use it, and it ends with him.
    EXPECT_EQ(held->get_ParentObject().get(), main.get());
    EXPECT_EQ(held->get_ChildObjectsNames(TYPE_FIELD), QStringList({"a", "b"}));
    const rc::Weak<I_LSchemaObject> field(held->get_ChildObject(TYPE_FIELD, "a").Force());
    EXPECT_EQ(field.lock()->get_ParentObject(), held);
    const rc::Weak<I_LSchemaObject> weak(held);
    held.reset();
    EXPECT_FALSE(weak.lock());
    EXPECT_FALSE(field.lock());
}

TEST_F(List, AChildListShowsItsPartOfTheParentList)
{
    const auto t = tables->get_ChildItem("t");
    const auto p = tables->get_ChildItem("p");
    EXPECT_EQ(t->get_ChildObjectsNames(TYPE_LINK), QStringList("link_p_t"));
    // A temporary table may have the name of a lasting one, whose links are not its own.
    EXPECT_EQ(p->get_ChildObjectsNames(TYPE_LINK), QStringList());
    p->AssignPropertyValueSilent(PROP_TEMPORARY, false);
    EXPECT_TRUE(p->UpdateChildObjects(TYPE_LINK));
    EXPECT_EQ(p->get_ChildObjectsNames(TYPE_LINK), QStringList({"link_p_t", "link_p_p"}));
    database->TakeLog();
    EXPECT_TRUE(t->UpdateChildObjects(TYPE_LINK));
    EXPECT_EQ(t->GetLong(PROP_COUNT_LINKS), 1);
    EXPECT_EQ(database->TakeLog().count("LINKS OF 'main'"), 1);
    const auto link = t->get_ChildObject(TYPE_LINK, "link_p_t").Force();
    EXPECT_EQ(link, main->get_ChildObject(TYPE_LINK, "link_p_t").Force()) << "the same object";
    EXPECT_EQ(link->get_ParentObject().get(), main.get());

    // A rebuild of either one reaches both.
    auto& rows = database->results["LINKS OF 'main'"].rows;
    rows.append({"engine 3", "T", "other", "link_other_t"});
    EXPECT_TRUE(main->UpdateChildObjects(TYPE_LINK));
    EXPECT_EQ(t->get_ChildObjectsNames(TYPE_LINK), QStringList({"link_p_t", "link_other_t"}));
    EXPECT_EQ(t->GetLong(PROP_COUNT_LINKS), 2);
    rows.removeFirst();
    EXPECT_TRUE(t->UpdateChildObjects(TYPE_LINK));
    EXPECT_EQ(main->GetLong(PROP_COUNT_LINKS), 2);
    EXPECT_EQ(p->GetLong(PROP_COUNT_LINKS), 1);
    EXPECT_FALSE(link->get_ChildList(TYPE_LINK));
    EXPECT_TRUE(link->IsDetached());

    // Tables come and go; those that are gone are not asked.
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(tables->ReloadObjects());
    EXPECT_TRUE(main->UpdateChildObjects(TYPE_LINK));
}

TEST_F(List, NothingIsLeftWhenADatabaseCloses)
{
    std::vector<rc::Weak<LTreeItem>> all;
    const auto t = database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "t"}});
    for (const auto& schema : database->get_ChildObjects(TYPE_SCHEMA).Force())
        for (const auto& table : schema->get_ChildObjects(TYPE_TABLE).Force()) {
            all.emplace_back(schema);
            all.emplace_back(table);
            for (const auto& list : table->get_ChildLists()) {
                list->BuildList();
                all.emplace_back(list);
                for (const auto& item : list->get_ItemsNow())
                    all.emplace_back(item);
            }
        }
    ASSERT_GT(all.size(), 15u);

    const auto other = root->Add();
    rc::Ptr<I_LSchemaObject> held = other->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "t"}, {TYPE_FIELD, "a"}});
    const rc::Weak<fake::Database> weakOther(other);
    ASSERT_TRUE(held);
    EXPECT_TRUE(other->Close().Force());
    EXPECT_EQ(held->get_Database(), other) << "parents stay in reach of what is held";
    EXPECT_TRUE(held->get_IsClosing());
    EXPECT_EQ(root->get_ChildList(TYPE_DATABASE)->get_Count(), 1);

    EXPECT_TRUE(database->Close().Force());
    main = other; // the last references of this test
    tables.reset();
    const rc::Weak<fake::Database> weak(database);
    const_cast<rc::Ptr<I_LSchemaObject>&>(t).reset();
    database = other;
    EXPECT_FALSE(weak.lock());
    for (const rc::Weak<LTreeItem>& item : all)
        EXPECT_FALSE(item.lock());
}

TEST(ListLeak, WhatWasHeldBelowAClosedDatabaseEndsIt)
{
    const auto root = rc::make<fake::Root>();
    rc::Weak<fake::Database> weak;
    rc::Ptr<I_LSchemaObject> field;
    {
        const auto database = root->Add();
        weak = rc::Weak<fake::Database>(database);
        field = database->Get({{TYPE_SCHEMA, "main"}, {TYPE_TABLE, "t"}, {TYPE_FIELD, "a"}});
        database->Close();
    }
    EXPECT_TRUE(weak.lock());
    field.reset();
    EXPECT_FALSE(weak.lock());
}

TEST_F(List, ADroppedObjectLeavesItsList)
{
    const auto t = tables->get_ChildItem("t");
    database->fail = [](const QString&) { return true; };
    EXPECT_FALSE(t->Drop().Force());
    EXPECT_EQ(tables->get_Count(), 2);
    database->fail = nullptr;
    database->TakeLog();
    EXPECT_TRUE(t->Drop().Force());
    EXPECT_EQ(database->TakeLog(), QStringList({"DROP t;", "FLUSH"}));
    EXPECT_EQ(tables->get_Names(), QStringList("P"));
    EXPECT_EQ(main->GetLong(PROP_COUNT_TABLES), 1);
    EXPECT_FALSE(t->get_ParentObject());
    EXPECT_FALSE(t->Drop().Force()) << "without a database nothing runs";
}

TEST_F(List, ManyThreadsReadOneListOnce)
{
    for (int round = 0; round < 20; ++round) {
        tables->Clear();
        EXPECT_FALSE(tables->IsBuilt());
        database->TakeLog();
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 6; ++i)
            threads.emplace_back([&] {
                if (main->get_ChildObjects(TYPE_TABLE).Force().size() != 2)
                    ++wrong;
                if (!tables->get_ChildItem("P"))
                    ++wrong;
            });
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(wrong, 0);
        ASSERT_EQ(database->TakeLog().size(), 1);
    }
}

TEST_F(List, RebuildsRaceWithReaders)
{
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i)
        readers.emplace_back([&] {
            while (!stop)
                for (const auto& table : main->get_ChildObjects(TYPE_TABLE).Force()) {
                    if (table->get_Name() == "t" && table->get_ChildObjects(TYPE_FIELD).Force().size() == 1)
                        ++wrong;
                    table->get_ChildObjects(TYPE_LINK).Force();
                }
        });
    for (int i = 0; i < 100; ++i) {
        if (!tables->ReloadObjects() || !main->UpdateChildObjects(TYPE_LINK))
            ++wrong;
    }
    stop = true;
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(List, TheEventLoopTurnsWhileAnotherThreadReads)
{
    std::atomic<bool> reading{false}, finish{false};
    database->whileSelecting = [&](const QString&) {
        reading = true;
        while (!finish)
            std::this_thread::sleep_for(1ms);
    };
    std::thread worker([&] { tables->BuildList(); });
    while (!reading)
        std::this_thread::yield();
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { finish = ++ticks >= 3; });
    timer.start(1);
    EXPECT_TRUE(tables->BuildList());
    EXPECT_GE(ticks, 3);
    worker.join();
    database->whileSelecting = nullptr;
    EXPECT_EQ(database->TakeLog().size(), 1);
}

TEST_F(List, ItsOwnQueryMayAskForItWithoutADeadlock)
{
    int inner = -1;
    database->whileSelecting = [&](const QString&) { inner = main->get_ChildObjects(TYPE_TABLE).Force().size(); };
    EXPECT_EQ(main->get_ChildObjects(TYPE_TABLE).Force().size(), 2);
    EXPECT_EQ(inner, 0);
    database->whileSelecting = nullptr;
}

TEST_F(List, IsRebuiltLaterFromTheMainLoop)
{
    main->UpdateChildObjectsLater(TYPE_TABLE);
    EXPECT_FALSE(tables->IsBuilt());
    LYield();
    EXPECT_TRUE(tables->IsBuilt());
    rc::make<fake::Schema>()->UpdateChildObjectsLater(TYPE_TABLE);
    LYield(); // the object is gone: nothing happens
}

} // namespace
