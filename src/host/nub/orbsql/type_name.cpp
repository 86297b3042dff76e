// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/type_name.h"

#include "nub/orbsql/handle.h"

#include <string_view>

namespace nub::orbsql {
namespace {

const char* PlainName(duckdb_type id)
{
    switch (id) {
    case DUCKDB_TYPE_BOOLEAN: return "BOOLEAN";
    case DUCKDB_TYPE_TINYINT: return "TINYINT";
    case DUCKDB_TYPE_SMALLINT: return "SMALLINT";
    case DUCKDB_TYPE_INTEGER: return "INTEGER";
    case DUCKDB_TYPE_BIGINT: return "BIGINT";
    case DUCKDB_TYPE_UTINYINT: return "UTINYINT";
    case DUCKDB_TYPE_USMALLINT: return "USMALLINT";
    case DUCKDB_TYPE_UINTEGER: return "UINTEGER";
    case DUCKDB_TYPE_UBIGINT: return "UBIGINT";
    case DUCKDB_TYPE_HUGEINT: return "HUGEINT";
    case DUCKDB_TYPE_UHUGEINT: return "UHUGEINT";
    case DUCKDB_TYPE_FLOAT: return "FLOAT";
    case DUCKDB_TYPE_DOUBLE: return "DOUBLE";
    case DUCKDB_TYPE_TIMESTAMP: return "TIMESTAMP";
    case DUCKDB_TYPE_TIMESTAMP_S: return "TIMESTAMP_S";
    case DUCKDB_TYPE_TIMESTAMP_MS: return "TIMESTAMP_MS";
    case DUCKDB_TYPE_TIMESTAMP_NS: return "TIMESTAMP_NS";
    case DUCKDB_TYPE_TIMESTAMP_TZ: return "TIMESTAMP WITH TIME ZONE";
    case DUCKDB_TYPE_DATE: return "DATE";
    case DUCKDB_TYPE_TIME: return "TIME";
    case DUCKDB_TYPE_TIME_TZ: return "TIME WITH TIME ZONE";
    case DUCKDB_TYPE_INTERVAL: return "INTERVAL";
    case DUCKDB_TYPE_VARCHAR: return "VARCHAR";
    case DUCKDB_TYPE_BLOB: return "BLOB";
    case DUCKDB_TYPE_BIT: return "BIT";
    case DUCKDB_TYPE_UUID: return "UUID";
    default: return nullptr;
    }
}

bool AppendEnum(std::string& out, duckdb_logical_type type)
{
    out += "ENUM(";
    const std::uint32_t count = duckdb_enum_dictionary_size(type);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (i)
            out += ", ";
        const EngineMemory<char> word(duckdb_enum_dictionary_value(type, i));
        AppendQuoted(out, word.get(), '\'');
    }
    out += ')';
    return true;
}

bool AppendMap(std::string& out, duckdb_logical_type type)
{
    const TypeHandle key(duckdb_map_type_key_type(type)), value(duckdb_map_type_value_type(type));
    out += "MAP(";
    if (!AppendTypeName(out, key.get()))
        return false;
    out += ", ";
    if (!AppendTypeName(out, value.get()))
        return false;
    out += ')';
    return true;
}

bool Append(std::string& out, duckdb_logical_type type)
{
    if (const EngineMemory<char> alias(duckdb_logical_type_get_alias(type)); alias && *alias) {
        // A name of its own; beyond this one it may carry parameters.
        if (std::string_view(alias.get()) != "JSON")
            return false;
        out += "JSON";
        return true;
    }
    const duckdb_type id = duckdb_get_type_id(type);
    if (const char* name = PlainName(id)) {
        out += name;
        return true;
    }
    switch (id) {
    case DUCKDB_TYPE_DECIMAL:
        out += "DECIMAL(" + std::to_string(duckdb_decimal_width(type)) + ','
            + std::to_string(duckdb_decimal_scale(type)) + ')';
        return true;
    case DUCKDB_TYPE_ENUM:
        return AppendEnum(out, type);
    case DUCKDB_TYPE_LIST: {
        const TypeHandle child(duckdb_list_type_child_type(type));
        if (!AppendTypeName(out, child.get()))
            return false;
        out += "[]";
        return true;
    }
    case DUCKDB_TYPE_ARRAY: {
        const TypeHandle child(duckdb_array_type_child_type(type));
        if (!AppendTypeName(out, child.get()))
            return false;
        out += '[' + std::to_string(duckdb_array_type_array_size(type)) + ']';
        return true;
    }
    case DUCKDB_TYPE_MAP:
        return AppendMap(out, type);
    default:
        return false;
    }
}

} // namespace

bool AppendTypeName(std::string& out, duckdb_logical_type type)
{
    const std::size_t start = out.size();
    if (Append(out, type))
        return true;
    out.resize(start);
    return false;
}

void AppendQuoted(std::string& out, const char* text, char quote)
{
    out += quote;
    for (; *text; ++text) {
        if (*text == quote)
            out += quote;
        out += *text;
    }
    out += quote;
}

} // namespace nub::orbsql
