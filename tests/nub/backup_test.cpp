// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/database_fixture.h"

#include <atomic>
#include <thread>

using namespace nub;
using namespace nub::test;

namespace {

smart_ptr<I_Disk_Location> Location(const std::string& path)
{
    const String text = String::FromUtf8(path);
    return smart_ptr<I_Disk_Location>::adopt(CreateDiskLocation(reinterpret_cast<const unsigned short*>(text.c_str())));
}

// Parents sort behind their children by name; views and macros use one another backwards.
const char* const Content = R"(
    CREATE SCHEMA "s p";
    CREATE TYPE mood AS ENUM ('a', 'it''s');
    CREATE SEQUENCE sq START 5 INCREMENT 2;
    CREATE TABLE parent(id INTEGER PRIMARY KEY, v VARCHAR DEFAULT 'x' COLLATE nocase UNIQUE, m mood,
                        g INTEGER AS (id * 2), CHECK (id > 0));
    CREATE TABLE child(id BIGINT DEFAULT nextval('sq'), pid INTEGER REFERENCES parent(id));
    CREATE TABLE "s p"."t ""q"""("a b" DECIMAL(18,3)[], st STRUCT(x INTEGER, y VARCHAR));
    CREATE TABLE "s p".grand(pid INTEGER PRIMARY KEY);
    CREATE TABLE "s p".grandchild(pid INTEGER REFERENCES "s p".grand(pid));
    CREATE TABLE empty_one(x INTEGER NOT NULL);
    CREATE INDEX ie ON child((pid + 1));
    CREATE MACRO vm(x) AS x + 1;
    CREATE MACRO tm(x, y := 3) AS TABLE SELECT x + y AS z;
    CREATE VIEW v1 AS SELECT * FROM parent;
    CREATE VIEW a0 AS SELECT vm(id) AS q FROM v1;
    COMMENT ON TABLE parent IS 'pc';
    COMMENT ON COLUMN parent.v IS 'vc';
    COMMENT ON VIEW v1 IS 'cv';
    INSERT INTO parent(id, v, m) SELECT i, 'v' || i, 'it''s' FROM range(1, 3000) r(i);
    INSERT INTO child(pid) SELECT id FROM parent;
    INSERT INTO "s p".grand VALUES (1), (2);
    INSERT INTO "s p".grandchild VALUES (2), (1);
    INSERT INTO "s p"."t ""q""" VALUES ([1.5, NULL], {'x': 1, 'y': 'é'}), (NULL, NULL);
    DELETE FROM child WHERE pid % 3 = 0;
)";

/// Everything that has to be alike in source and copy.
std::vector<std::string> Portrait(I_DuckDBDatabase& database)
{
    std::vector<std::string> portrait;
    for (const char* query : {
             "SELECT schema_name, table_name, comment, sql FROM duckdb_tables() WHERE database_name = current_database() ORDER BY ALL",
             "SELECT schema_name, table_name, column_name, data_type, column_default, comment FROM duckdb_columns() WHERE NOT internal "
             "AND database_name = current_database() ORDER BY ALL",
             "SELECT view_name, comment, sql FROM duckdb_views() WHERE NOT internal AND database_name = current_database() ORDER BY ALL",
             "SELECT index_name, is_unique, sql FROM duckdb_indexes() WHERE database_name = current_database() ORDER BY ALL",
             "SELECT function_name, parameters, macro_definition FROM duckdb_functions() WHERE NOT internal "
             "AND database_name = current_database() ORDER BY ALL",
             "SELECT type_name, labels FROM duckdb_types() WHERE NOT internal AND database_name = current_database() ORDER BY ALL",
             "SELECT sequence_name, increment_by FROM duckdb_sequences() WHERE database_name = current_database() ORDER BY ALL",
             "SELECT count(*), sum(id), min(v), max(m), sum(g) FROM parent", "SELECT count(*), sum(id), sum(pid) FROM child",
             "SELECT * FROM \"s p\".\"t \"\"q\"\"\"", "SELECT * FROM \"s p\".grandchild", "SELECT sum(q) FROM a0",
             "SELECT z FROM tm(4)", "SELECT nextval('sq')"})
        portrait.push_back(Ask(database, query));
    return portrait;
}

} // namespace

TEST(Backup, OfAFileEqualsTheSource)
{
    Folder folder;
    std::filesystem::create_directory(folder / "to");
    const DatabasePtr database = MakeDatabase(folder / "src.duckdb");
    database->Create();
    Script(*database, Content);
    const auto cursor = CursorPtr::adopt(database->SqlSelect(u"SELECT id FROM parent", 1, {}));
    ASSERT_TRUE(cursor->NextRow());
    database->Backup(Location(folder / "to"));
    EXPECT_EQ(std::filesystem::exists(folder / "to/src.duckdb"), true);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "to"), {}), 1);
    const DatabasePtr copy = MakeDatabase(folder / "to/src.duckdb");
    copy->Open();
    EXPECT_EQ(Portrait(*copy), Portrait(*database));
    EXPECT_TRUE(orbsql::IsFileOpen(String::FromUtf8(folder / "src.duckdb")));
    copy->Close();

    EXPECT_TRUE(Has(Thrown([&] { database->Backup(Location(folder / "to")); }), "already exists"));
    EXPECT_TRUE(Has(Thrown([&] { database->Backup(Location(folder.path())); }), "already exists"));
    EXPECT_TRUE(Has(Thrown([&] { database->Backup(Location(folder / "none")); }), "does not exist"));
    EXPECT_FALSE(Thrown([&] { database->Backup(nullptr); }).empty());
    std::filesystem::remove(folder / "to/src.duckdb");
    Script(*database, "BEGIN; INSERT INTO empty_one VALUES (1)");
    try {
        database->Backup(Location(folder / "to"));
        copy->Open(); // an engine that can copy beside an open transaction leaves that out
        EXPECT_EQ(Ask(*copy, "SELECT count(*) FROM empty_one"), "0");
        copy->Close();
        std::filesystem::remove(folder / "to/src.duckdb");
    } catch (const xException& failure) {
        EXPECT_TRUE(Has(failure.what(), "other write transactions")) << failure.what();
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder / "to"));
        Script(*database, "ROLLBACK");
    database->Close();
    EXPECT_TRUE(Has(Thrown([&] { database->Backup(Location(folder / "to")); }), "not open"));
    database->put_IsReadOnly(true);
    database->Open();
    database->Backup(Location(folder / "to"));
    EXPECT_EQ(std::filesystem::file_size(folder / "to/src.duckdb"), std::filesystem::file_size(folder / "src.duckdb"));
}

TEST(Backup, BesideARowReaderOfAnotherSession)
{
    Folder folder;
    const std::string path = folder / "src.duckdb";
    const DatabasePtr database = MakeDatabase(path);
    database->Create();
    Script(*database, "CREATE TABLE t AS SELECT range AS i FROM range(300000)");
    const DatabasePtr other = MakeDatabase(path);
    other->Open();
    std::filesystem::create_directory(folder / "to");
    {
        const auto reading = CursorPtr::adopt(other->SqlSelect(u"SELECT i FROM t", 1, {}));
        ASSERT_TRUE(reading->NextRow());
        try {
            database->Backup(Location(folder / "to")); // neither hangs nor cuts the reader off
        } catch (const xException& failure) {
            EXPECT_TRUE(Has(failure.what(), "reading rows")) << failure.what();
            database->Close(); // does not wait for the reader either
            database->Open();
        }
        std::int64_t rows = 1;
        while (reading->NextRow())
            ++rows;
        EXPECT_EQ(rows, 300000);
    }
    std::filesystem::remove_all(folder / "to/src.duckdb");
    database->Backup(Location(folder / "to"));
    const DatabasePtr copy = MakeDatabase(folder / "to/src.duckdb");
    copy->Open();
    EXPECT_EQ(Ask(*copy, "SELECT count(*) FROM t"), "300000");
}

TEST(Backup, OfMemoryEqualsTheSource)
{
    Folder folder;
    const DatabasePtr database = OpenMemory();
    Script(*database, Content);
    Script(*database, "CREATE TEMP TABLE scratch(a INTEGER); ATTACH ':memory:' AS other; CREATE TABLE other.o(a INTEGER)");
    try {
        database->Backup(Location(folder.path()));
    } catch (const xException& failure) {
        // The oldest engine cannot copy defaults that use a sequence; it says so.
        ASSERT_TRUE(Has(failure.what(), "Cross catalog dependencies are not supported")) << failure.what();
        EXPECT_TRUE(folder.Entries().empty());
        EXPECT_EQ(Ask(*database, "SELECT count(*) FROM duckdb_databases() WHERE NOT internal"), "2");
        return;
    }
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"memory.duckdb"});
    EXPECT_EQ(Ask(*database, "SELECT count(*) FROM duckdb_databases() WHERE NOT internal"), "2");
    const DatabasePtr copy = MakeDatabase(folder / "memory.duckdb");
    copy->Open();
    Script(*database, "DROP TABLE scratch");
    EXPECT_EQ(Portrait(*copy), Portrait(*database));
    EXPECT_TRUE(Has(Thrown([&] { database->Backup(Location(folder.path())); }), "already exists"));
}

TEST(Backup, IsConsistentWhileAnotherSessionWrites)
{
    Folder folder;
    const std::string path = folder / "busy.duckdb";
    const DatabasePtr database = MakeDatabase(path);
    database->Create();
    Script(*database, "CREATE TABLE a(n BIGINT, pad VARCHAR); CREATE TABLE b(n BIGINT)");
    const DatabasePtr writer = MakeDatabase(path);
    writer->Open();
    std::atomic<bool> stop{false};
    std::thread thread([&] {
        while (!stop)
            Chain(*writer, "BEGIN; INSERT INTO a SELECT i, repeat('x', 50) FROM range(2000) r(i); INSERT INTO b SELECT * FROM range(2000); "
                           "COMMIT; CHECKPOINT");
    });
    int copies = 0;
    for (int i = 0; i < 6; ++i) {
        const std::string target = folder / std::to_string(i);
        std::filesystem::create_directory(target);
        try {
            database->Backup(Location(target));
        } catch (const xException& failure) {
            EXPECT_TRUE(Has(failure.what(), "CHECKPOINT") || Has(failure.what(), "changes too fast")) << failure.what();
            EXPECT_TRUE(std::filesystem::is_empty(target));
            continue;
        }
        const DatabasePtr copy = MakeDatabase(target + "/busy.duckdb");
        copy->Open();
        EXPECT_EQ(Ask(*copy, "SELECT (SELECT count(*) FROM a) = (SELECT count(*) FROM b), (SELECT min(length(pad)) FROM a) = 50 OR "
                             "(SELECT count(*) FROM a) = 0"),
                  "true|true");
        ++copies;
    }
    stop = true;
    thread.join();
    std::filesystem::create_directory(folder / "last");
    database->Backup(Location(folder / "last")); // nobody writes any more
    RecordProperty("copies", copies);
}
