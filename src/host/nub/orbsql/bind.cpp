// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/bind.h"

#include <vector>

namespace nub::orbsql {

namespace {

duckdb_state bind_bytes(duckdb_prepared_statement statement, idx_t index, I_Value& value)
{
    const auto* raw = static_cast<I_RawData*>(value.QueryInterface(InterfaceId_RawData));
    // One byte more: the address of no bytes at all must not be null.
    std::vector<unsigned char> bytes((raw ? raw->get_Length() : 0) + std::size_t{1});
    if (raw)
        raw->CopyTo(bytes.data(), raw->get_Length());
    return duckdb_bind_blob(statement, index, bytes.data(), bytes.size() - 1);
}

duckdb_state bind_text(duckdb_prepared_statement statement, idx_t index, const I_Value& value)
{
    const std::string text = value.get_String().ToUtf8();
    return duckdb_bind_varchar_length(statement, index, text.data(), text.size());
}

duckdb_state bind_value(duckdb_prepared_statement statement, idx_t index, I_Value& value)
{
    if (value.get_IsNull())
        return duckdb_bind_null(statement, index);
    switch (value.get_Type()) {
    case ValueType_Boolean:
        return duckdb_bind_boolean(statement, index, value.get_Boolean());
    case ValueType_Byte:
        return duckdb_bind_uint8(statement, index, static_cast<std::uint8_t>(value.get_ULLong()));
    case ValueType_Short:
        return duckdb_bind_int16(statement, index, static_cast<std::int16_t>(value.get_LLong()));
    case ValueType_UShort:
        return duckdb_bind_uint16(statement, index, static_cast<std::uint16_t>(value.get_ULLong()));
    case ValueType_Medium:
    case ValueType_Long:
        return duckdb_bind_int32(statement, index, static_cast<std::int32_t>(value.get_LLong()));
    case ValueType_UMedium:
    case ValueType_ULong:
        return duckdb_bind_uint32(statement, index, static_cast<std::uint32_t>(value.get_ULLong()));
    case ValueType_LLong:
        return duckdb_bind_int64(statement, index, value.get_LLong());
    case ValueType_ULLong:
        return duckdb_bind_uint64(statement, index, value.get_ULLong());
    case ValueType_Float:
        return duckdb_bind_float(statement, index, static_cast<float>(value.get_Double()));
    case ValueType_Double:
        return duckdb_bind_double(statement, index, value.get_Double());
    case ValueType_VarBinary:
        return bind_bytes(statement, index, value);
    default:
        return bind_text(statement, index, value);
    }
}

/// Numbers may have gaps: "$2" alone is one parameter, of number 2.
bool has_parameter(duckdb_prepared_statement statement, idx_t index)
{
    const EngineMemory<char> name(const_cast<char*>(duckdb_parameter_name(statement, index)));
    return name != nullptr;
}

} // namespace

std::string BindParameters(const PreparedHandle& statement, const ValueArray& values, BindExtent extent)
{
    for (std::size_t i = 0; i < values.get_Count(); ++i) {
        const smart_ptr<I_Value>& value = values.get_Item(i);
        const idx_t index = i + 1;
        const bool inRange = index <= duckdb_nparams(statement.get());
        if (!value || (!has_parameter(statement.get(), index) && (extent == BindExtent::Own || inRange)))
            continue;
        if (bind_value(statement.get(), index, *value) == DuckDBError) {
            const char* error = duckdb_prepare_error(statement.get());
            return error && *error ? error
                                   : "Invalid Input Error: Can not bind to parameter number " + std::to_string(index)
                    + ", statement only has " + std::to_string(duckdb_nparams(statement.get())) + " parameter(s)";
        }
    }
    return {};
}

} // namespace nub::orbsql
