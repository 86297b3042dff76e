// SPDX-License-Identifier: GPL-3.0-or-later
// A grid over a large table in a file: the first window against its own
// statement, windows at any depth, memory while scrolling. Prints one JSON
// object a line; ends with 1 when a bound does not hold. The number of rows may
// be given, and a file with a table t(id, b, s) that is there already.
#include "catalog/database.h"
#include "engine/kernel_text.h"
#include "hf/log.h"
#include "hf/table_cursor.h"
#include "hf/table_lookup.h"
#include "support/engine_connection.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr double ExtraMilliseconds = 20;
constexpr double ScrollBytes = 16.0 * 1024 * 1024; ///< what the allocators may keep on the way
constexpr double RunBytes = 300.0 * 1024 * 1024;
constexpr int Rounds = 7;
constexpr int Windows = 100;

double Milliseconds(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double ResidentBytes()
{
    long pages = 0, resident = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return double(resident) * double(sysconf(_SC_PAGESIZE));
}

/// One session on the file, with nothing of the catalogue read.
rc::Ref<orbDuckDB_Database> Open(const rc::Ref<support::EngineConnection>& connection, const QString& path)
{
    auto engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(path));
    engine->Open();
    return rc::make<orbDuckDB_Database>(rc::Ref<HF::I_LConnection>(connection), engine,
                                        orbDuckDB_Database::EngineLazy(engine), 0, path);
}

void Make(const QString& path, const QString& rows)
{
    auto engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(path));
    engine->Create();
    engine->SqlExecute(KernelText::FromQString(QStringLiteral("CREATE TABLE t AS SELECT range AS id, range * 7 % 1000003 AS b, "
                                                              "'text ' || (range % 1000) AS s FROM range(%1)")
                                                   .arg(rows)),
                       {});
    engine->Close();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString path = argc > 2 ? QString::fromLocal8Bit(argv[2]) : folder.filePath(QStringLiteral("large.duckdb"));
    const QString rows = argc > 1 ? QString::fromLatin1(argv[1]) : QStringLiteral("100000000");
    if (argc <= 2)
        Make(path, rows);
    malloc_trim(0);
    const bool verbose = std::getenv("BENCH_QUERIES") != nullptr;
    if (verbose)
        HF::SetQueryLogSink([](const HF::LQueryLogEntry& entry) {
            std::fprintf(stderr, "%lld ms: %s\n", static_cast<long long>(entry.milliseconds),
                         entry.text.left(110).replace(u'\n', u' ').toUtf8().constData());
        });

    const auto connection = rc::make<support::EngineConnection>();
    bool holds = true;
    double opened = 1e9, bare = 1e9;
    for (int i = 0; i < Rounds; ++i) {
        const rc::Ref<orbDuckDB_Database> database = Open(connection, path);
        database->MakeSqlQuery()->Execute(QStringLiteral("SELECT 1"), HF::QUERY_NO_LOG, {});
        Clock::time_point start = Clock::now();
        const auto table = HF::FindTable(rc::Ref<HF::I_LDatabase>(database), QStringLiteral("t"), true);
        const auto cursor = table ? table->OpenCursor(0, false, false, false) : rc::Ptr<HF::I_LTableCursor>();
        opened = std::min(opened, Milliseconds(start));
        if (!cursor || cursor->GetBufferedRowCount() != 1000)
            return 2;
        const QString text = cursor->get_WindowText();
        database->Close().Force();

        const rc::Ref<orbDuckDB_Database> other = Open(connection, path);
        other->MakeSqlQuery()->Execute(QStringLiteral("SELECT 1"), HF::QUERY_NO_LOG, {});
        start = Clock::now();
        other->MakeSqlQuery()->Execute(text, HF::QUERY_NO_LOG, {});
        bare = std::min(bare, Milliseconds(start));
        other->Close().Force();
    }
    std::printf("{\"name\":\"first_window\",\"statement_ms\":%.1f,\"grid_ms\":%.1f,\"extra_ms\":%.1f,\"bound\":%.0f}\n", bare,
                opened, opened - bare, ExtraMilliseconds);
    holds = holds && opened - bare <= ExtraMilliseconds;

    const rc::Ref<orbDuckDB_Database> database = Open(connection, path);
    const auto table = HF::FindTable(rc::Ref<HF::I_LDatabase>(database), QStringLiteral("t"), true);
    const auto cursor = table->OpenCursor(0, false, false, false);
    cursor->UpdateRecordCount();
    const unsigned long count = cursor->get_RecordCount().Force();
    const auto place = [count](int i) {
        return i == Windows - 1 ? count - 1 : count / Windows * static_cast<unsigned long>(i);
    };
    // First without the grid, since the engine keeps the blocks that it has read.
    for (int i = 0; i < Windows; ++i)
        database->MakeSqlQuery()->Execute(QStringLiteral("SELECT * FROM t LIMIT 1000 OFFSET %1").arg(place(i)), HF::QUERY_NO_LOG,
                                          {});
    const double before = ResidentBytes();
    double slowest = 0;
    for (int i = 0; i < Windows; ++i) {
        const unsigned long row = place(i);
        const Clock::time_point start = Clock::now();
        cursor->put_Position(row).Force();
        slowest = std::max(slowest, Milliseconds(start));
        if (!cursor->IsRowLoaded(row) || cursor->get_Field(0)->get_String() != QString::number(row))
            return 2;
    }
    const double grown = ResidentBytes() - before;
    std::printf("{\"name\":\"scrolling\",\"rows\":%lu,\"windows\":%d,\"slowest_ms\":%.1f,\"grown_mib\":%.1f,\"resident_mib\":%.1f,"
                "\"bound_mib\":%.0f}\n",
                count, Windows, slowest, grown / 1048576, ResidentBytes() / 1048576, RunBytes / 1048576);
    holds = holds && grown <= ScrollBytes && ResidentBytes() <= RunBytes;
    database->Close().Force();
    return holds ? 0 : 1;
}
