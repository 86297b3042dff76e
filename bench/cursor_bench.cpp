// SPDX-License-Identifier: GPL-3.0-or-later
// Reading a result into a cursor, against a bare scan of the same chunks through
// the C API in the same process: time as a ratio, memory by the cell. Prints
// one JSON object a line; ends with 1 when a bound does not hold.
#include "catalog/database.h"
#include "data/sql_query.h"
#include "engine/kernel_text.h"
#include "support/engine_connection.h"

#include <duckdb.h>

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Rounds = 7;
constexpr double TimeBound = 12;
constexpr double NumberBytes = 64;
constexpr double TextBytes = 136;

const char* const TableText =
    "CREATE TABLE t AS SELECT i::INTEGER AS a, (i * 7)::BIGINT AS b, (i % 1000)::SMALLINT AS c, i / 3.0::DOUBLE AS d, "
    "'text ' || (i % 100000) AS e, DATE '2000-01-01' + (i % 9000)::INTEGER AS f, i % 3 = 0 AS g, "
    "(i / 100.0)::DECIMAL(18,2) AS h FROM range(1000000) r(i)";

double Milliseconds(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Time of all threads on processors, which other programs disturb less.
double ProcessorMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

struct Times
{
    double wall = 1e9, processor = 1e9;

    template <class F>
    void Measure(F work)
    {
        const Clock::time_point start = Clock::now();
        const double before = ProcessorMilliseconds();
        work();
        wall = std::min(wall, Milliseconds(start));
        processor = std::min(processor, ProcessorMilliseconds() - before);
    }
};

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

/// The engine by its C API alone.
class BareEngine
{
public:
    BareEngine()
    {
        if (duckdb_open(nullptr, &m_database) != DuckDBSuccess || duckdb_connect(m_database, &m_connection) != DuckDBSuccess)
            std::abort();
        duckdb_query(m_connection, TableText, nullptr);
    }
    ~BareEngine()
    {
        duckdb_disconnect(&m_connection);
        duckdb_close(&m_database);
    }

    /// Reads every value once; the sum keeps the reads from being dropped.
    std::uint64_t Scan()
    {
        duckdb_prepared_statement statement = nullptr;
        duckdb_pending_result pending = nullptr;
        duckdb_result result;
        duckdb_prepare(m_connection, "SELECT * FROM t", &statement);
        duckdb_pending_prepared_streaming(statement, &pending);
        duckdb_execute_pending(pending, &result);
        std::uint64_t sum = 0;
        while (duckdb_data_chunk chunk = duckdb_fetch_chunk(result)) {
            const idx_t rows = duckdb_data_chunk_get_size(chunk);
            sum += Column<std::int32_t>(chunk, 0, rows) + Column<std::int64_t>(chunk, 1, rows)
                + Column<std::int16_t>(chunk, 2, rows) + Column<std::int64_t>(chunk, 3, rows) + Texts(chunk, 4, rows)
                + Column<std::int32_t>(chunk, 5, rows) + Column<std::uint8_t>(chunk, 6, rows)
                + Column<std::int64_t>(chunk, 7, rows);
            duckdb_destroy_data_chunk(&chunk);
        }
        duckdb_destroy_result(&result);
        duckdb_destroy_pending(&pending);
        duckdb_destroy_prepare(&statement);
        return sum;
    }

private:
    template <class T>
    static std::uint64_t Column(duckdb_data_chunk chunk, idx_t column, idx_t rows)
    {
        const duckdb_vector vector = duckdb_data_chunk_get_vector(chunk, column);
        const auto* values = static_cast<const T*>(duckdb_vector_get_data(vector));
        std::uint64_t* validity = duckdb_vector_get_validity(vector);
        std::uint64_t sum = 0;
        for (idx_t i = 0; i < rows; ++i)
            if (!validity || duckdb_validity_row_is_valid(validity, i))
                sum += static_cast<std::uint64_t>(values[i]);
        return sum;
    }
    static std::uint64_t Texts(duckdb_data_chunk chunk, idx_t column, idx_t rows)
    {
        auto* values = static_cast<duckdb_string_t*>(duckdb_vector_get_data(duckdb_data_chunk_get_vector(chunk, column)));
        std::uint64_t sum = 0;
        for (idx_t i = 0; i < rows; ++i) {
            const char* text = duckdb_string_t_data(&values[i]);
            for (std::uint32_t n = duckdb_string_t_length(values[i]); n; --n)
                sum += static_cast<unsigned char>(text[n - 1]);
        }
        return sum;
    }

    duckdb_database m_database = nullptr;
    duckdb_connection m_connection = nullptr;
};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    bool holds = true;

    auto engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(QStringLiteral(":memory:")));
    engine->Create();
    engine->SqlExecute(nub::String::FromUtf8(TableText), {});
    const auto connection = rc::make<support::EngineConnection>();
    const auto database =
        rc::make<orbDuckDB_Database>(rc::Ref<HF::I_LConnection>(connection), engine,
                                     orbDuckDB_Database::EngineLazy(engine), 1, QStringLiteral(":memory:"));
    const auto query = database->MakeSqlQuery();
    const auto read = [&](const char* text) { return query->Execute(QString::fromUtf8(text), HF::QUERY_NO_LOG, {}); };

    // Memory first, before the allocators hold anything back.
    struct Cells
    {
        const char* column;
        double bound;
    };
    for (const Cells& each : {Cells{"a", NumberBytes}, Cells{"b", NumberBytes}, Cells{"c", NumberBytes},
                              Cells{"d", NumberBytes}, Cells{"g", NumberBytes}, Cells{"e", TextBytes},
                              Cells{"f", TextBytes}, Cells{"h", TextBytes}}) {
        char text[64];
        std::snprintf(text, sizeof text, "SELECT %s FROM t", each.column);
        malloc_trim(0);
        const double before = ResidentBytes();
        const QList<HF::LQueryResult> results = read(text);
        const double bytes = (ResidentBytes() - before) / double(results.first().Cursor->get_RecordCount().Force());
        std::printf("{\"name\":\"memory\",\"column\":\"%s\",\"bytes_per_cell\":%.1f,\"bound\":%.0f}\n", each.column, bytes,
                    each.bound);
        holds = holds && bytes <= each.bound;
    }

    BareEngine bare;
    std::uint64_t sum = 0;
    const auto readKernelRows = [&] {
        const auto rows = nub::smart_ptr<nub::orbsql::I_Cursor>::adopt(engine->SqlSelect(u"SELECT * FROM t", 1, {}));
        const int columns = rows->get_ColumnCount();
        while (rows->NextRow())
            for (int i = 0; i < columns; ++i)
                rows->PeekValue(i);
    };
    Times scan, kernel, cursor;
    for (int i = 0; i < Rounds; ++i) {
        scan.Measure([&] { sum += bare.Scan(); });
        kernel.Measure(readKernelRows);
        QList<HF::LQueryResult> results;
        cursor.Measure([&] { results = read("SELECT * FROM t"); });
        sum += results.first().Cursor->get_RecordCount().Force();
    }
    const double ratio = cursor.wall / scan.wall;
    std::printf("{\"name\":\"time\",\"scan_ms\":%.1f,\"kernel_ms\":%.1f,\"cursor_ms\":%.1f,\"ratio\":%.2f,"
                "\"scan_processor_ms\":%.1f,\"processor_ratio\":%.2f,\"bound\":%.0f,\"check\":%llu}\n",
                scan.wall, kernel.wall, cursor.wall, ratio, scan.processor, cursor.processor / scan.processor, TimeBound,
                static_cast<unsigned long long>(sum));
    holds = holds && ratio <= TimeBound;
    database->Close().Force();
    return holds ? 0 : 1;
}
