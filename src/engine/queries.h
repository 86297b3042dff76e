// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What the engine tells of itself.
namespace EngineQueries {

inline constexpr char Keywords[] = "SELECT keyword_name FROM duckdb_keywords()";

inline constexpr char Functions[] =
    "SELECT function_name, array_to_string( parameter_types, ', ' ) parameter_types, return_type, function_type, "
    "description, example FROM duckdb_functions() WHERE internal and database_oid = 0 AND LEFT( function_name, 1 ) "
    "NOT IN ( '+', '-', '*', '/', '<', '>', '^', '!', '@', '&', '~', '|', '%' )";

/// Since 1.2 the column is called `examples` and holds a list.
inline constexpr int FunctionExamplesSince = 10200;
inline constexpr char FunctionsWithExamples[] =
    "SELECT function_name, array_to_string( parameter_types, ', ' ) parameter_types, return_type, function_type, "
    "description, array_to_string( examples, chr(10) ) example FROM duckdb_functions() WHERE internal and "
    "database_oid = 0 AND LEFT( function_name, 1 ) "
    "NOT IN ( '+', '-', '*', '/', '<', '>', '^', '!', '@', '&', '~', '|', '%' )";

} // namespace EngineQueries
