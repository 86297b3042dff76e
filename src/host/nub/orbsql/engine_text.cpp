// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/engine_text.h"

#include "nub/exception.h"
#include "nub/orbsql/row_reader.h"
#include "nub/orbsql/type_name.h"

#include <atomic>
#include <mutex>

namespace nub::orbsql {
namespace {

constexpr char FunctionName[] = "orb_vectors";

[[noreturn]] void Fail(const char* text)
{
    throw xException(text && *text ? text : "The engine gave no text of a value");
}

std::string ColumnName(std::size_t index)
{
    return 'c' + std::to_string(index);
}

std::string CastList(const std::vector<int>& columns)
{
    std::string list;
    for (int column : columns) {
        if (!list.empty())
            list += ", ";
        list += "CAST(" + ColumnName(static_cast<std::size_t>(column)) + " AS VARCHAR)";
    }
    return list;
}

} // namespace

/// What the table function shows: the vectors of one chunk, once.
struct EngineText::Job
{
    std::shared_ptr<const TypeList> list;
    duckdb_data_chunk chunk = nullptr;

    static void Bind(duckdb_bind_info info)
    {
        const ValueHandle address(duckdb_bind_get_parameter(info, 0));
        // The statement is this class's own and runs while the job lives.
        auto* job = reinterpret_cast<Job*>(static_cast<std::intptr_t>(duckdb_get_int64(address.get())));
        for (std::size_t i = 0; i < job->list->size(); ++i)
            duckdb_bind_add_result_column(info, ColumnName(i).c_str(), (*job->list)[i].get());
        duckdb_bind_set_bind_data(info, job, nullptr);
    }
    static void Init(duckdb_init_info info) { duckdb_init_set_max_threads(info, 1); }
    static void Emit(duckdb_function_info info, duckdb_data_chunk output)
    {
        auto* job = static_cast<Job*>(duckdb_function_get_bind_data(info));
        const duckdb_data_chunk chunk = std::exchange(job->chunk, nullptr);
        if (!chunk) {
            duckdb_data_chunk_set_size(output, 0);
            return;
        }
        for (idx_t i = 0; i < job->list->size(); ++i)
            Newer().vectorReferenceVector(duckdb_data_chunk_get_vector(output, i),
                                          duckdb_data_chunk_get_vector(chunk, i));
        duckdb_data_chunk_set_size(output, duckdb_data_chunk_get_size(chunk));
    }
};

/// The private database with the table function.
class EngineText::Service
{
public:
    static std::shared_ptr<Service> Get()
    {
        static std::mutex guard;
        // Never destroyed: the engine must not close a database once the thread's
        // own data is gone, and that goes before the statics do.
        static auto& service = *new std::shared_ptr<Service>;
        const std::lock_guard lock(guard);
        if (!service)
            service = std::make_shared<Service>();
        return service;
    }
    Service()
    {
        ConfigHandle config;
        if (duckdb_create_config(config.out()) == DuckDBSuccess) {
            // Each caller's thread does its own work, and nothing is fetched.
            duckdb_set_config(config.get(), "threads", "1");
            duckdb_set_config(config.get(), "autoinstall_known_extensions", "false");
        }
        char* error = nullptr;
        const duckdb_state state = duckdb_open_ext(nullptr, m_database.out(), config.get(), &error);
        const EngineMemory<char> message(error);
        if (state != DuckDBSuccess)
            Fail(message.get());
        const ConnectionHandle connection = Connect();
        duckdb_table_function function = duckdb_create_table_function();
        const TypeHandle address(duckdb_create_logical_type(DUCKDB_TYPE_BIGINT));
        duckdb_table_function_set_name(function, FunctionName);
        duckdb_table_function_add_parameter(function, address.get());
        duckdb_table_function_set_bind(function, &Job::Bind);
        duckdb_table_function_set_init(function, &Job::Init);
        duckdb_table_function_set_function(function, &Job::Emit);
        const duckdb_state registered = duckdb_register_table_function(connection.get(), function);
        duckdb_destroy_table_function(&function);
        if (registered != DuckDBSuccess)
            Fail(nullptr);
    }
    ConnectionHandle Connect()
    {
        ConnectionHandle connection;
        if (duckdb_connect(m_database.get(), connection.out()) != DuckDBSuccess)
            Fail(nullptr);
        return connection;
    }

private:
    DatabaseHandle m_database;
};

EngineText::EngineText(std::shared_ptr<const TypeList> types, const SessionSettings& settings)
    : m_service(Service::Get()), m_connection(m_service->Connect()), m_job(std::make_unique<Job>())
{
    m_job->list = std::move(types);
    const SessionSettings plain;
    const auto set = [this](const char* name, const std::string& value) {
        std::string sql = std::string("SET ") + name + " = ";
        AppendQuoted(sql, value.c_str(), '\'');
        Execute(sql);
    };
    // The private database starts with the machine's own zone.
    if (!settings.timeZone.empty())
        set("TimeZone", settings.timeZone);
    if (settings.calendar != plain.calendar && !settings.calendar.empty())
        set("Calendar", settings.calendar);
}

EngineText::~EngineText()
{
    if (!m_table.empty())
        duckdb_query(m_connection.get(), ("DROP TABLE IF EXISTS " + m_table).c_str(), nullptr);
}

void EngineText::Execute(const std::string& sql)
{
    ResultHandle result;
    if (duckdb_query(m_connection.get(), sql.c_str(), result.out()) != DuckDBSuccess)
        Fail(duckdb_result_error(&result.get()));
}

/// The call of the table function for this object's job.
std::string EngineText::Source() const
{
    return FunctionName + ('(' + std::to_string(reinterpret_cast<std::intptr_t>(m_job.get()))) + ')';
}

std::vector<std::string> EngineText::TypeNames()
{
    const std::string sql = "SELECT column_type FROM (DESCRIBE SELECT * FROM " + Source() + ')';
    ResultHandle result;
    if (duckdb_query(m_connection.get(), sql.c_str(), result.out()) != DuckDBSuccess)
        Fail(duckdb_result_error(&result.get()));
    std::vector<std::string> names;
    for (;;) {
        const ChunkHandle chunk(duckdb_fetch_chunk(result.get()));
        if (!chunk)
            break;
        auto* data = static_cast<duckdb_string_t*>(
            duckdb_vector_get_data(duckdb_data_chunk_get_vector(chunk.get(), 0)));
        for (idx_t row = 0, rows = duckdb_data_chunk_get_size(chunk.get()); row < rows; ++row)
            names.emplace_back(duckdb_string_t_data(&data[row]), duckdb_string_t_length(data[row]));
    }
    if (names.size() != m_job->list->size())
        Fail(nullptr);
    return names;
}

void EngineText::Format(duckdb_data_chunk chunk, const std::vector<int>& columns)
{
    m_texts.reset();
    m_vectors.clear();
    if (Newer().vectorReferenceVector)
        Run(chunk, columns);
    else
        RunThroughTable(chunk, columns);
    KeepTexts(columns.size(), duckdb_data_chunk_get_size(chunk));
}

void EngineText::Run(duckdb_data_chunk chunk, const std::vector<int>& columns)
{
    if (!m_statement || m_prepared != columns) {
        const std::string sql = "SELECT " + CastList(columns) + " FROM " + Source();
        if (duckdb_prepare(m_connection.get(), sql.c_str(), m_statement.out()) != DuckDBSuccess)
            Fail(duckdb_prepare_error(m_statement.get()));
        m_prepared = columns;
    }
    m_job->chunk = chunk;
    const duckdb_state state = duckdb_execute_prepared(m_statement.get(), m_result.out());
    m_job->chunk = nullptr;
    if (state != DuckDBSuccess)
        Fail(duckdb_result_error(&m_result.get()));
}

/// Without the reference the chunk is copied into a table of the same types.
void EngineText::RunThroughTable(duckdb_data_chunk chunk, const std::vector<int>& columns)
{
    static std::atomic<unsigned> number{0};
    if (m_table.empty())
        m_table = "orb_rows_" + std::to_string(++number);
    Execute("CREATE OR REPLACE TABLE " + m_table + " AS SELECT * FROM " + Source());
    AppenderHandle appender;
    if (duckdb_appender_create(m_connection.get(), nullptr, m_table.c_str(), appender.out()) != DuckDBSuccess
        || duckdb_append_data_chunk(appender.get(), chunk) != DuckDBSuccess
        || duckdb_appender_flush(appender.get()) != DuckDBSuccess)
        Fail(duckdb_appender_error(appender.get()));
    appender.reset();
    const std::string sql = "SELECT " + CastList(columns) + " FROM " + m_table;
    if (duckdb_query(m_connection.get(), sql.c_str(), m_result.out()) != DuckDBSuccess)
        Fail(duckdb_result_error(&m_result.get()));
}

void EngineText::KeepTexts(std::size_t columns, idx_t rows)
{
    m_texts = ChunkHandle(duckdb_fetch_chunk(m_result.get()));
    if (!m_texts || duckdb_data_chunk_get_size(m_texts.get()) != rows)
        Fail(nullptr);
    for (std::size_t i = 0; i < columns; ++i) {
        const duckdb_vector vector = duckdb_data_chunk_get_vector(m_texts.get(), i);
        m_vectors.push_back({static_cast<const duckdb_string_t*>(duckdb_vector_get_data(vector)),
                             duckdb_vector_get_validity(vector)});
    }
}

bool EngineText::Text(std::size_t index, idx_t row, std::string_view& text) const
{
    const Vector& vector = m_vectors[index];
    if (vector.validity && !(vector.validity[row / 64] >> (row % 64) & 1))
        return false;
    const duckdb_string_t& string = vector.data[row];
    const std::size_t length = string.value.inlined.length;
    text = {length <= sizeof string.value.inlined.inlined ? string.value.inlined.inlined : string.value.pointer.ptr,
            length};
    return true;
}

} // namespace nub::orbsql
