// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/orbis_process.h"

#include <QDir>

TEST_F(ProgramTest, BackupCopiesEverything)
{
    Make("db.duckdb", "CREATE SCHEMA s; CREATE TABLE s.t AS SELECT range AS i FROM range(1000);"
                      "CREATE VIEW v AS SELECT sum(i) AS total FROM s.t;");
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("copies"));
    const RunResult result = Run({"backup", "db.duckdb", "copies"});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(QDir(Path("copies")).entryList(QDir::Files), QStringList("db.duckdb"));
    EXPECT_EQ(Rows("copies/db.duckdb", "SELECT total::BIGINT FROM v")[0].toArray()[0].toInt(), 499500);

    // What is there is not overwritten.
    Make("other.duckdb", "SELECT 1;");
    const QByteArray copy = Read("copies/db.duckdb");
    const RunResult again = Run({"backup", "db.duckdb", "copies"});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(StandsOnce(again.err, "orbis: ")) << again.err.toStdString();
    EXPECT_EQ(Read("copies/db.duckdb"), copy);

    const RunResult nowhere = Run({"backup", "db.duckdb", "no/such/folder"});
    EXPECT_EQ(nowhere.exitCode, 3);
    EXPECT_EQ(Run({"backup", "db.duckdb", "other.duckdb"}).exitCode, 3);
    EXPECT_EQ(Files(), QStringList({"copies", "db.duckdb", "other.duckdb"}));
}

TEST_F(ProgramTest, BackupOfAReadOnlyDatabase)
{
    Make("db.duckdb", "CREATE TABLE t AS SELECT 3 AS i;");
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("copies"));
    const RunResult result = Run({"--read-only", "backup", "db.duckdb", "copies"});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(Rows("copies/db.duckdb", "FROM t")[0].toArray()[0].toInt(), 3);
}
