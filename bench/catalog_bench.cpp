// SPDX-License-Identifier: GPL-3.0-or-later
// The catalogue of 10,000 tables with ten columns each: the list of tables and
// the names for completion, against their own queries run bare through the C API
// in the same process. Prints one JSON object a line; ends with 1 when a bound
// does not hold.
#include "catalog/database.h"
#include "catalog/database_queries.h"
#include "catalog/queries.h"
#include "engine/kernel_text.h"
#include "hf/schema_item_list.h"
#include "support/engine_connection.h"

#include <duckdb.h>

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Tables = 10000;
constexpr int Rounds = 7;
constexpr double Bound = 1.5;

/// Every table has a key, so that the query's look-up of keys has work to do.
std::string CatalogueText()
{
    std::string text = "BEGIN;";
    for (int i = 0; i < Tables; ++i)
        text += "CREATE TABLE table_number_" + std::to_string(i)
              + "(id INTEGER PRIMARY KEY, first_name VARCHAR, last_name VARCHAR NOT NULL, born DATE, height DOUBLE, "
                "weight DECIMAL(10,2) DEFAULT 0, active BOOLEAN, tags VARCHAR[], place STRUCT(x INTEGER, y INTEGER), "
                "noted TIMESTAMP);";
    return text + "COMMIT;";
}

/// Time of all threads on processors, which other programs disturb less.
double ProcessorMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

/// The fastest run of some work, and its rows.
struct Runs
{
    double wall = 1e9, processor = 1e9;
    idx_t rows = 0;

    template <class F>
    void Measure(F work)
    {
        const Clock::time_point start = Clock::now();
        const double before = ProcessorMilliseconds();
        rows = work();
        wall = std::min(wall, std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        processor = std::min(processor, ProcessorMilliseconds() - before);
    }
};

/// The engine by its C API alone, on a catalogue of its own.
class BareEngine
{
public:
    explicit BareEngine(const std::string& catalogue)
    {
        if (duckdb_open(nullptr, &m_database) != DuckDBSuccess || duckdb_connect(m_database, &m_connection) != DuckDBSuccess
            || duckdb_query(m_connection, catalogue.c_str(), nullptr) != DuckDBSuccess)
            std::abort();
    }
    ~BareEngine()
    {
        duckdb_disconnect(&m_connection);
        duckdb_close(&m_database);
    }

    /// Runs the query and takes every chunk; the number of rows.
    idx_t Run(const QByteArray& text)
    {
        duckdb_result result;
        if (duckdb_query(m_connection, text.constData(), &result) != DuckDBSuccess) {
            std::fprintf(stderr, "%s\n", duckdb_result_error(&result));
            std::abort();
        }
        idx_t rows = 0;
        while (duckdb_data_chunk chunk = duckdb_fetch_chunk(result)) {
            rows += duckdb_data_chunk_get_size(chunk);
            duckdb_destroy_data_chunk(&chunk);
        }
        duckdb_destroy_result(&result);
        return rows;
    }

private:
    duckdb_database m_database = nullptr;
    duckdb_connection m_connection = nullptr;
};

bool Report(const char* name, const Runs& bare, const Runs& list)
{
    const double ratio = list.wall / bare.wall;
    std::printf("{\"name\":\"%s\",\"rows\":%llu,\"bare_ms\":%.1f,\"list_ms\":%.1f,\"ratio\":%.2f,"
                "\"bare_processor_ms\":%.1f,\"processor_ratio\":%.2f,\"bound\":%.1f}\n",
                name, static_cast<unsigned long long>(list.rows), bare.wall, list.wall, ratio, bare.processor,
                list.processor / bare.processor, Bound);
    if (list.rows != bare.rows)
        std::fprintf(stderr, "%s: the query has %llu rows\n", name, static_cast<unsigned long long>(bare.rows));
    return ratio <= Bound && list.rows == bare.rows;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const std::string catalogue = CatalogueText();
    BareEngine bare(catalogue);
    auto engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(QStringLiteral(":memory:")));
    engine->Create();
    engine->SqlExecute(nub::String::FromUtf8(catalogue.c_str()), {});
    const auto connection = rc::make<support::EngineConnection>();
    const auto database =
        rc::make<orbDuckDB_Database>(rc::Ref<HF::I_LConnection>(connection), engine,
                                     orbDuckDB_Database::EngineLazy(engine), 1, QStringLiteral(":memory:"));
    const auto schemas = database->get_ChildList(HF::TYPE_SCHEMA);
    schemas->BuildList();
    const auto tables =
        rc::cast<HF::LDatabaseObject_Impl>(schemas->get_ChildItem(QStringLiteral("main")))->get_ChildList(HF::TYPE_TABLE);

    const QByteArray tablesText =
        HF::SubstituteNames(QString::fromLatin1(Queries::TablesSince101), QStringLiteral("main"), {}).toUtf8();
    const QByteArray identsText(Queries::Idents);
    Runs bareTables, listTables, bareIdents, listIdents;
    for (int i = 0; i < Rounds; ++i) {
        bareTables.Measure([&] { return bare.Run(tablesText); });
        listTables.Measure([&] {
            tables->ReloadObjects();
            return static_cast<idx_t>(tables->get_Count());
        });
        bareIdents.Measure([&] { return bare.Run(identsText); });
        database->InvalidateIdents();
        listIdents.Measure([&] {
            return static_cast<idx_t>(database->get_Idents().Force().size());
        });
    }
    const bool tablesHold = Report("tables", bareTables, listTables);
    const bool identsHold = Report("idents", bareIdents, listIdents);
    database->Close().Force();
    return tablesHold && identsHold ? 0 : 1;
}
