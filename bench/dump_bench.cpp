// SPDX-License-Identifier: GPL-3.0-or-later
// A dump against the engine's own reading and casting of the same rows to text,
// and a load against handing the same statements to the engine through the C API,
// in one process. Prints one JSON object a line; ends with 1 when a bound does
// not hold. Arguments: rows to dump, rows to load.
#include "catalog/database.h"
#include "catalog/makers.h"
#include "dump/task_make_dump.h"
#include "engine/kernel_text.h"
#include "hf/statement_splitter.h"
#include "hf/task_load_dump.h"
#include "support/engine_connection.h"

#include <duckdb.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int DumpRounds = 7;
constexpr int LoadRounds = 7;
constexpr double DumpBound = 0.5;
constexpr double LoadBound = 0.9;

const char* const TableText =
    "CREATE TABLE t AS SELECT i::INTEGER AS a, (i * 7)::BIGINT AS b, (i % 1000)::SMALLINT AS c, i / 3.0::DOUBLE AS d, "
    "'text ' || (i % 100000) AS e, DATE '2000-01-01' + (i % 9000)::INTEGER AS f, i % 3 = 0 AS g, "
    "(i / 100.0)::DECIMAL(18,2) AS h FROM range(%ld) r(i)";
const char* const CastText =
    "SELECT a::VARCHAR, b::VARCHAR, c::VARCHAR, d::VARCHAR, e::VARCHAR, f::VARCHAR, g::VARCHAR, h::VARCHAR FROM t";

template <class F>
double Seconds(F work)
{
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A database of the C API, apart from the kernel.
class Plain
{
public:
    explicit Plain(const QString& path)
    {
        if (duckdb_open(path.toUtf8().constData(), &m_database) != DuckDBSuccess
            || duckdb_connect(m_database, &m_connection) != DuckDBSuccess)
            std::exit(2);
    }
    ~Plain()
    {
        duckdb_disconnect(&m_connection);
        duckdb_close(&m_database);
    }
    void Run(const char* text)
    {
        duckdb_result result;
        if (duckdb_query(m_connection, text, &result) != DuckDBSuccess) {
            std::fprintf(stderr, "%s\n", duckdb_result_error(&result));
            std::exit(2);
        }
        duckdb_destroy_result(&result);
    }
    /// Reads all rows of a query as a stream.
    void Scan(const char* text)
    {
        duckdb_prepared_statement statement = nullptr;
        duckdb_pending_result pending = nullptr;
        duckdb_result result;
        if (duckdb_prepare(m_connection, text, &statement) != DuckDBSuccess
            || duckdb_pending_prepared_streaming(statement, &pending) != DuckDBSuccess
            || duckdb_execute_pending(pending, &result) != DuckDBSuccess)
            std::exit(2);
        while (duckdb_data_chunk chunk = duckdb_fetch_chunk(result))
            duckdb_destroy_data_chunk(&chunk);
        duckdb_destroy_result(&result);
        duckdb_destroy_pending(&pending);
        duckdb_destroy_prepare(&statement);
    }

private:
    duckdb_database m_database = nullptr;
    duckdb_connection m_connection = nullptr;
};

rc::Ref<orbDuckDB_Database> Open(const rc::Ref<support::EngineConnection>& connection, const QString& path)
{
    orbDuckDB_Database::Engine engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(path));
    engine->Create();
    return rc::make<orbDuckDB_Database>(rc::Ref<HF::I_LConnection>(connection), engine,
                                        orbDuckDB_Database::EngineLazy(engine), 0, path);
}

/// Times of the two, taken in turn.
struct Times
{
    std::vector<double> references;
    std::vector<double> measured;
};

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// The machine's speed drifts: what counts is the middle one of the rounds' own ratios.
bool Report(const char* name, const Times& times, double bound, long rows)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < times.measured.size(); ++i)
        ratios.push_back(times.references[i] / times.measured[i]);
    const double ratio = Median(ratios), reference = Median(times.references), measured = Median(times.measured);
    std::printf("{\"name\": \"%s\", \"rows\": %ld, \"reference_s\": %.3f, \"measured_s\": %.3f, \"rows_per_s\": %.0f, "
                "\"ratio\": %.3f, \"bound\": %.2f, \"holds\": %s}\n",
                name, rows, reference, measured, double(rows) / measured, ratio, bound, ratio >= bound ? "true" : "false");
    std::fflush(stdout);
    return ratio >= bound;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const long rows = argc > 1 ? std::atol(argv[1]) : 2000000;
    const long loadRows = std::min(rows, argc > 2 ? std::atol(argv[2]) : 40000);
    const QTemporaryDir folder;
    const QString source = folder.filePath(QStringLiteral("source.duckdb"));
    const QString dump = folder.filePath(QStringLiteral("dump.sql"));
    char create[1024];
    std::snprintf(create, sizeof create, TableText, rows);
    Plain(source).Run(create);

    Times dumping, loading;
    const auto connection = rc::make<support::EngineConnection>();
    for (int round = 0; round < DumpRounds; ++round) {
        {
            Plain plain(source);
            plain.Scan("SELECT count(*) FROM t");
            dumping.references.push_back(Seconds([&] { plain.Scan(CastText); }));
        }
        const auto database = Open(connection, source);
        const RcList<HF::LTreeItem> everything;
        CatalogMakers().dumpTask = [](const orbDuckDB_DumpRequest& request) -> rc::Ptr<HF::LTask> {
            orbDuckDB_DumpRequest usual = request;
            usual.options = {.Transaction = true, .MultiRowInsert = true, .InsertLimitRows = 250, .InsertLimitData = 250};
            return rc::make<orbDuckDB_TaskMakeDump>(usual);
        };
        const auto task = database->MakeDump(dump, HF::DUMP_KIND_SQL, HF::DUMP_BOTH, QStringLiteral("UTF-8"), nullptr,
                                             everything, {});
        dumping.measured.push_back(Seconds([&] { task->run(); }));
        if (task->get_State() != HF::TASK_DONE)
            return 2;
        database->Close().Force();
    }
    bool holds = Report("dump", dumping, DumpBound, rows);

    // Loading is slower by far: some rows are enough.
    {
        const auto database = Open(connection, source);
        database->SqlExecute(QStringLiteral("CREATE OR REPLACE TABLE t AS FROM t LIMIT %1").arg(loadRows));
        const auto task = database->MakeDump(dump, HF::DUMP_KIND_SQL, HF::DUMP_BOTH, QStringLiteral("UTF-8"), nullptr,
                                             RcList<HF::LTreeItem>(), {});
        task->run();
        database->Close().Force();
    }
    std::vector<QByteArray> statements;
    {
        QFile file(dump);
        if (!file.open(QIODevice::ReadOnly))
            return 2;
        HF::LStatementSplitter splitter;
        splitter.Feed(QString::fromUtf8(file.readAll()));
        splitter.Finish();
        while (auto statement = splitter.Next())
            statements.push_back(statement->Text.toUtf8());
    }
    for (int round = 0; round < LoadRounds; ++round) {
        const QString one = folder.filePath(QStringLiteral("plain%1.duckdb").arg(round));
        const QString other = folder.filePath(QStringLiteral("loaded%1.duckdb").arg(round));
        loading.references.push_back(Seconds([&] {
            Plain plain(one);
            for (const QByteArray& statement : statements)
                plain.Run(statement.constData());
            plain.Run("CHECKPOINT");
        }));
        loading.measured.push_back(Seconds([&] {
            const auto database = Open(connection, other);
            const auto task = rc::make<HF::LTask_LoadDumpSQL>(rc::Ref<HF::LTreeItem>(database), dump,
                                                              QStringLiteral("UTF-8"), true, false, HF::LLoadProgress());
            task->run();
            if (task->get_ErrorCount())
                std::exit(2);
            database->Close().Force();
        }));
        QFile::remove(one);
        QFile::remove(other);
    }
    holds = Report("load", loading, LoadBound, loadRows) && holds;
    struct rusage usage;
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("{\"name\": \"memory\", \"peak_kib\": %ld}\n", usage.ru_maxrss);
    return holds ? 0 : 1;
}
