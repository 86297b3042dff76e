// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/database_place.h"

#include "catalog/idents.h"
#include "catalog/makers.h"
#include "catalog/schema.h"
#include "hf/action.h"
#include "hf/schema_item_list.h"
#include "hf/table_lookup.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QThreadPool>

#include <bit>

namespace {

using namespace Qt::StringLiterals;
using DatabaseTest = support::DatabasePlace;

QString Shown(const HF::LIdent& ident)
{
    QStringList parts;
    for (const HF::LIdent::Element& each : ident.get_Elements()) {
        const auto bit = static_cast<std::uint64_t>(each.type);
        parts << QString::number(bit ? std::countr_zero(bit) : 0) + u':' + each.name;
    }
    return parts.join(u'/');
}

TEST(Idents, OneForEachKind)
{
    const std::pair<std::pair<const char*, const char*>, const char*> cases[] = {
        {{"a\nb", "1"}, "18:a/21:b"},  {{"b", "1"}, "21:b"},       {{"a\nb\nc", "1"}, "21:c"},
        {{"s", "2"}, "18:s"},          {{"a\nb\nc", "3"}, "18:a/21:b/9:c"}, {{"b\nc", "3"}, "21:b/9:c"},
        {{"c", "3"}, "9:c"},           {{"s\nf", "9"}, "18:s/10:f"}, {{"s\nv", "15"}, "18:s/26:v"},
        {{"s\ni", "16"}, "32:i"},      {{"q", "19"}, "19:q"},      {{"s\ny", "24"}, "18:s/24:y"},
        {{"s\nx", "17"}, "0:x"},       {{"x", "20"}, ""},          {{"x", ""}, "0:x"},
        {{"\nb", "1"}, "18:/21:b"},
    };
    for (const auto& [row, shown] : cases)
        EXPECT_EQ(Shown(MakeIdent(QString::fromUtf8(row.first), QString::fromUtf8(row.second))), QString::fromUtf8(shown))
            << row.first << " " << row.second;
}

TEST_F(DatabaseTest, NamesForCompletion)
{
    Run(u"CREATE SCHEMA \"o dd\"; CREATE TABLE \"o dd\".\"t'1\"(\"c\"\"x\" INTEGER, b VARCHAR); CREATE TABLE plain(a INTEGER); "
        "CREATE VIEW \"o dd\".v AS SELECT 1 AS i; CREATE INDEX ix ON plain(a); CREATE SEQUENCE sq; "
        "CREATE MACRO mac(x) AS x + 1; CREATE TYPE mood AS ENUM('x'); CREATE TEMP TABLE tmp(z INTEGER); CREATE TABLE \"two\nlines\"(\"c\nd\" INTEGER)"_s);
    ASSERT_TRUE(errors.isEmpty()) << errors.first().toStdString();
    const QList<HF::LIdent> idents = Database().get_Idents().Force();
    QStringList shown, names;
    for (const HF::LIdent& ident : idents) {
        shown << Shown(ident);
        names << ident.get_FullName();
    }
    for (const char* expected :
         {"18:o dd", "18:main", "21:t'1", "18:o dd/21:t'1", "9:c\"x", "21:t'1/9:c\"x", "18:o dd/21:t'1/9:c\"x", "26:v",
          "18:o dd/26:v", "32:ix", "19:sq", "18:main/19:sq", "10:mac", "18:main/10:mac", "24:mood", "18:main/24:mood",
          "21:tmp", "9:z", "18:main/21:two\nlines/9:c\nd"})
        EXPECT_TRUE(shown.contains(QString::fromUtf8(expected))) << expected;
    QStringList sorted = names;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(names, sorted);
    for (const QString& name : shown)
        EXPECT_FALSE(name.contains(u"pg_catalog"_s) || name.contains(u"duckdb_tables"_s)) << name.toStdString();

    QStringList system;
    for (const HF::LIdent& ident : Database().get_SystemIdents().Force())
        system << Shown(ident);
    EXPECT_TRUE(system.contains(u"26:duckdb_tables"_s));
    EXPECT_FALSE(system.contains(u"26:v"_s));
    EXPECT_TRUE(errors.isEmpty());

    // Kept until somebody says that they changed.
    Run(u"CREATE TABLE later(i INTEGER)"_s);
    EXPECT_EQ(Database().get_Idents().Force().size(), idents.size());
    Database().InvalidateIdents();
    EXPECT_GT(Database().get_Idents().Force().size(), idents.size());
}

TEST_F(DatabaseTest, NamesAndIcons)
{
    const QString file = Path(u"my.file.duckdb"_s);
    const auto onDisk = MakeDatabase(MakeEngine(file), file);
    EXPECT_EQ(onDisk->get_Name(), u"my"_s);
    EXPECT_EQ(onDisk->get_Icon().Force(), u":/icons/office-database.svg"_s);
    EXPECT_EQ(onDisk->get_StorageKind(), 0);
    onDisk->Close().Force();

    const auto named = MakeDatabase(MakeEngine(u":memory:"_s), u":x"_s, 1);
    EXPECT_EQ(named->get_Name(), u":x"_s);
    EXPECT_EQ(named->get_Icon().Force(), u":/icons/office-database.svg\n:/icons/sign-clock.svg"_s);
    named->Close().Force();
    EXPECT_EQ(Database().get_Name(), u":memory:"_s);
    // The path tells, whatever kind was given.
    const auto told = MakeDatabase(nullptr, u":memory:"_s, 0);
    EXPECT_EQ(told->get_StorageKind(), 1);
}

TEST_F(DatabaseTest, OpeningAndFailed)
{
    const EngineLazy opening = EngineLazy::FromBody([] { return MakeEngine(u":memory:"_s); });
    const auto database = MakeDatabase(nullptr, opening, u"later.duckdb"_s);
    const auto open = database->Open();
    EXPECT_FALSE(open.IsResolved());
    EXPECT_TRUE(database->Close().Force());
    EXPECT_FALSE(opening.IsResolved());
    EXPECT_EQ(connection->get_Children().size(), 1); // still there: nothing was closed
    EXPECT_TRUE(open.Force());
    EXPECT_FALSE(database->get_IsReadOnly().Force());
    EXPECT_TRUE(database->Close().Force());
    EXPECT_TRUE(connection->get_Children().isEmpty());

    const auto failed = MakeDatabase(nullptr, u"failed.duckdb"_s);
    EXPECT_TRUE(failed->Open().IsResolved());
    EXPECT_FALSE(failed->Open().Force());
    EXPECT_TRUE(failed->get_IsReadOnly().Force());
    EXPECT_FALSE(failed->ThrowOut().Force());
    EXPECT_TRUE(connection->get_Children().isEmpty());
}

TEST_F(DatabaseTest, ClosingEndsTheCirclesAndKeepsTheFile)
{
    const QString file = Path(u"f.duckdb"_s);
    rc::Weak<orbDuckDB_Database> weak;
    rc::Weak<HF::I_LSchemaObject> weakSchema, weakTable;
    {
        const auto database = MakeDatabase(MakeEngine(file), file);
        weak = rc::Weak<orbDuckDB_Database>(database);
        database->SqlExecute(u"CREATE TABLE t(i INTEGER)"_s);
        for (const auto& schema : database->get_ChildObjects(HF::TYPE_SCHEMA).Force()) {
            weakSchema = rc::Weak<HF::I_LSchemaObject>(schema);
            for (const auto& table : schema->get_ChildObjects(HF::TYPE_TABLE).Force()) {
                weakTable = rc::Weak<HF::I_LSchemaObject>(table);
                EXPECT_EQ(table->get_ChildObjects(HF::TYPE_FIELD).Force().size(), 1);
            }
        }
        ASSERT_TRUE(weakTable.lock());
        database->Flush();
        EXPECT_TRUE(database->Close().Force());
        EXPECT_TRUE(database->get_IsClosing());
    }
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_FALSE(weak.lock());
    EXPECT_FALSE(weakTable.lock());
    EXPECT_TRUE(QFileInfo::exists(file));
    EXPECT_TRUE(connection->get_Children().isEmpty());
    // The file is free again.
    const auto again = MakeEngine(file);
    again->Close();
}

TEST_F(DatabaseTest, LookingForATableHoldsTheFileNoLongerThanTheDatabase)
{
    const QString path = Path(u"looked.duckdb"_s);
    MakeEngine(path)->Close();
    for (int round = 0; round < 8; ++round) {
        const Engine engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(path));
        engine->Open();
        const auto database = MakeDatabase(engine, path);
        EXPECT_FALSE(HF::FindTable(rc::Ref<HF::I_LDatabase>(database), u"nothing"_s, true));
        EXPECT_TRUE(database->Close().Force());
        EXPECT_FALSE(nub::orbsql::IsFileOpen(KernelText::FromQString(path)));
    }
    EXPECT_TRUE(errors.isEmpty()) << errors.first().toStdString();
}

TEST_F(DatabaseTest, ThrowOutRemovesTheFilesOfADatabaseOnDiskOnly)
{
    const QString file = Path(u"gone.duckdb"_s);
    auto database = MakeDatabase(MakeEngine(file), file);
    database->SqlExecute(u"CREATE TABLE t(i INTEGER)"_s);
    EXPECT_TRUE(database->ThrowOut().Force());
    EXPECT_FALSE(QFileInfo::exists(file));
    EXPECT_FALSE(QFileInfo::exists(file + u".wal"_s));
    EXPECT_TRUE(connection->get_Children().isEmpty());

    const QString kept = Path(u"kept.duckdb"_s);
    database = MakeDatabase(MakeEngine(kept), kept, 2);
    EXPECT_TRUE(database->ThrowOut().Force());
    EXPECT_TRUE(QFileInfo::exists(kept));
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(DatabaseTest, FlushWritesTheFileOnce)
{
    const QString file = Path(u"w.duckdb"_s);
    const auto database = MakeDatabase(MakeEngine(file), file);
    database->SqlExecute(u"CREATE TABLE t AS SELECT * FROM range(1000)"_s);
    ASSERT_TRUE(QFileInfo(file + u".wal"_s).size() > 0);
    const auto first = database->Flush();
    const auto second = database->Flush();
    first.Force();
    second.Force();
    EXPECT_EQ(QFileInfo(file + u".wal"_s).size(), 0);
    EXPECT_TRUE(errors.isEmpty());
    int checkpoints = 0;
    for (const HF::LQueryLogEntry& entry : queries)
        checkpoints += entry.text.contains(u"CHECKPOINT"_s);
    EXPECT_GE(checkpoints, 1);
    EXPECT_LE(checkpoints, 2);
    database->Close().Force();
}

TEST_F(DatabaseTest, BackupByItsAction)
{
    const QString file = Path(u"b.duckdb"_s);
    const auto database = MakeDatabase(MakeEngine(file), file);
    database->SqlExecute(u"CREATE TABLE t AS SELECT 42 AS i"_s);
    const auto action = database->get_Action(QString::fromLatin1(HF::DO_BACKUP));
    ASSERT_TRUE(action);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"copy"_s));
    action->Run({database}, Path(u"copy"_s));
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
    EXPECT_TRUE(QFileInfo::exists(Path(u"copy/b.duckdb"_s)));
    action->Run({database}, Path(u"copy"_s)); // there is one already
    EXPECT_EQ(errors.size(), 1);
    database->Close().Force();
    const auto copy = MakeDatabase(MakeEngine(Path(u"copy/b.duckdb"_s)), Path(u"copy/b.duckdb"_s));
    EXPECT_EQ(copy->SqlSelect(u"SELECT i FROM t"_s, 0, {}, 1, 2, 1)->get_Field(0)->get_String(), u"42"_s);
    copy->Close().Force();
}

TEST_F(DatabaseTest, DefaultSchemas)
{
    Run(u"CREATE SCHEMA sales; CREATE SCHEMA \"R & D\"; CREATE TABLE sales.lone(i INTEGER)"_s);
    Database().UpdatePropertyImpl(PROP_SEARCH_PATH).Force();
    Database().UpdateChildObjects(HF::TYPE_SCHEMA);
    ASSERT_TRUE(Database().ProcessProperty(PROP_SEARCH_PATH, QStringList{u"main"_s, u"sales"_s}).Force());
    EXPECT_TRUE(HF::IsQuerySuccess(Run(u"SELECT * FROM lone"_s)));
    EXPECT_EQ(orbDuckDB_Engine::Instance().GetSearchPath(rc::self<HF::I_LDatabase>(&Database())),
              (QStringList{u"main"_s, u"sales"_s, u"pg_catalog"_s}));

    QAction action;
    Database().UpdateDefaultSchemasAction(action);
    EXPECT_EQ(action.text(), u"2 schemas"_s);
    EXPECT_EQ(action.toolTip(), u"<b>Default schemas</b><br>main<br>sales"_s);
    const auto entry = [&action](const QString& text) -> QAction* {
        for (QAction* each : action.menu<QMenu*>()->actions())
            if (each->text() == text)
                return each;
        return nullptr;
    };
    ASSERT_TRUE(entry(u"sales"_s) && entry(u"R && D"_s));
    EXPECT_TRUE(entry(u"sales"_s)->isChecked());
    EXPECT_FALSE(entry(u"R && D"_s)->isChecked());
    entry(u"sales"_s)->trigger();
    EXPECT_EQ(Database().GetStringList(PROP_SEARCH_PATH), QStringList{u"main"_s});
    EXPECT_EQ(orbDuckDB_Engine::Instance().GetSearchPath(rc::self<HF::I_LDatabase>(&Database())),
              (QStringList{u"main"_s, u"pg_catalog"_s}));
    Database().UpdateDefaultSchemasAction(action);
    EXPECT_EQ(action.text(), u"main"_s);
    EXPECT_EQ(action.toolTip(), u"Default schemas"_s);
    entry(u"Deselect All Schemas"_s)->trigger();
    Database().UpdateDefaultSchemasAction(action);
    EXPECT_EQ(action.text(), u"None"_s);
    EXPECT_FALSE(entry(u"Deselect All Schemas"_s)->isEnabled());
}

TEST_F(DatabaseTest, DefaultSchemasComeBackWithTheFile)
{
    const QString file = Path(u"s.duckdb"_s);
    auto database = MakeDatabase(MakeEngine(file), file);
    database->SqlExecute(u"CREATE SCHEMA sales; CREATE TABLE sales.lone AS SELECT 1 AS i"_s);
    EXPECT_TRUE(database->ProcessProperty(PROP_SEARCH_PATH, QStringList{u"sales"_s}).Force());
    database->Close().Force();
    database = MakeDatabase(MakeEngine(file), file);
    EXPECT_TRUE(database->SqlSelect(u"SELECT * FROM lone"_s, 0, {}, 1, 2, 1));
    database->Close().Force();
    // One in memory forgets them with its end.
    EXPECT_TRUE(Database().ProcessProperty(PROP_SEARCH_PATH, QStringList{u"main"_s}).Force());
    Database().Close().Force();
    EXPECT_FALSE(StoredText().contains(u":memory:"_s)) << StoredText().toStdString();
}

TEST_F(DatabaseTest, CreatingASchema)
{
    support::Prompter prompter;
    const auto create = [&](std::optional<QString> answer) {
        prompter.text = answer;
        return Database().CreateChildObjectDialog(HF::TYPE_SCHEMA).Force();
    };
    EXPECT_TRUE(create(std::nullopt).isEmpty());
    EXPECT_TRUE(prompter.told.isEmpty());
    EXPECT_TRUE(create(u"   "_s).isEmpty());
    EXPECT_EQ(prompter.told.takeLast(), u"Name of schema cannot be empty!"_s);
    EXPECT_TRUE(create(u" main "_s).isEmpty());
    EXPECT_EQ(prompter.told.takeLast(), u"Schema with such name already exists: main"_s);
    const QString odd = u"o\"d d;--"_s;
    const RcList<HF::I_LSchemaObject> made = create(odd);
    ASSERT_EQ(made.size(), 1) << errors.join(u'\n').toStdString();
    EXPECT_EQ(made[0]->get_Name(), odd);
    EXPECT_EQ(made[0]->get_ObjectType(), HF::TYPE_SCHEMA);
    EXPECT_TRUE(prompter.told.isEmpty());
}

TEST_F(DatabaseTest, Schemas)
{
    Run(u"CREATE SCHEMA s; CREATE TABLE s.t(i INTEGER); CREATE MACRO s.f(x) AS x; CREATE SCHEMA \"PG_Catalog2\""_s);
    const auto schemas = Database().get_ChildObjects(HF::TYPE_SCHEMA).Force();
    QStringList names, system;
    rc::Ptr<orbDuckDB_Schema> s;
    for (const auto& each : schemas) {
        names << each->get_Name();
        if (each->get_IsSystem())
            system << each->get_Name();
        if (each->get_Name() == u"s"_s)
            s = rc::cast<orbDuckDB_Schema>(each);
    }
    std::sort(system.begin(), system.end());
    EXPECT_EQ(system, (QStringList{u"information_schema"_s, u"pg_catalog"_s}));
    EXPECT_EQ(names.count(u"main"_s), 1);
    ASSERT_TRUE(s);
    EXPECT_EQ(s->get_ChildListsTypes(), (QList<int>{HF::TYPE_FUNCTION, HF::TYPE_LINK, HF::TYPE_TABLE, HF::TYPE_VIEW,
                                                    HF::TYPE_SEQUENCE}));
    for (const auto& list : s->get_ChildLists())
        EXPECT_FALSE(list->IsBuilt());
    EXPECT_GT(s->GetLong(PROP_OBJECT_ID), 0);
    EXPECT_EQ(s->get_Tables().size(), 1);
    EXPECT_TRUE(s->get_Table(u"t"_s));
    EXPECT_FALSE(s->get_Table(u"nosuch"_s));
    HF::LIdent function;
    function.Append(HF::DBOBJ_FUNCTION, u"f"_s);
    EXPECT_TRUE(s->ResolveIdent(function));
    HF::LIdent missing;
    missing.Append(HF::DBOBJ_FUNCTION, u"t"_s);
    EXPECT_FALSE(s->ResolveIdent(missing));
    const qsizetype before = queries.size();
    EXPECT_FALSE(s->ApplyPropertyValue(PROP_NAME, u"s"_s).Force());
    EXPECT_EQ(queries.size(), before);
    EXPECT_EQ(Database().get_ChildList(HF::TYPE_SCHEMA)->get_DefaultFilteredNames(),
              (QList<QString>{u"information_schema"_s, u"pg_catalog"_s}));
}

TEST_F(DatabaseTest, WhatADumpIsAskedFor)
{
    static std::optional<orbDuckDB_DumpRequest> asked;
    CatalogMakers().dumpTask = [](const orbDuckDB_DumpRequest& request) -> rc::Ptr<HF::LTask> {
        asked = request;
        return nullptr;
    };
    Run(u"CREATE SCHEMA s; CREATE TABLE s.b(i INTEGER); CREATE TABLE s.a(i INTEGER); CREATE TABLE z(i INTEGER)"_s);
    const auto dump = [&](const RcList<HF::LTreeItem>& selection, int kind = HF::DUMP_KIND_SQL) {
        asked.reset();
        Database().MakeDump(u"x.sql"_s, kind, HF::ELDumpData(2), u"UTF-8"_s, nullptr, selection, {});
    };
    dump({}, 4);
    EXPECT_FALSE(asked);
    dump({});
    ASSERT_TRUE(asked);
    EXPECT_EQ(asked->scope, 0);
    EXPECT_TRUE(asked->options.MultiRowInsert);
    EXPECT_EQ(asked->title, u"Make dump of database \":memory:\""_s);
    EXPECT_EQ(asked->names.value(u"s"_s), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(asked->names.value(u"main"_s), QStringList{u"z"_s});
    const auto s = Database().get_ChildObject(HF::TYPE_SCHEMA, u"s"_s).Force();
    dump({rc::Ref<HF::LTreeItem>(*s)});
    EXPECT_EQ(asked->scope, 1);
    EXPECT_EQ(asked->tables.size(), 2);
    dump({rc::Ref<HF::LTreeItem>(*s->get_ChildObject(HF::TYPE_TABLE, u"b"_s).Force())});
    EXPECT_EQ(asked->scope, 2);
    EXPECT_TRUE(asked->schemas.isEmpty());
    EXPECT_EQ(asked->names.value(u"s"_s), QStringList{u"b"_s});
    CatalogMakers().dumpTask = nullptr;
    asked.reset();
}

} // namespace
