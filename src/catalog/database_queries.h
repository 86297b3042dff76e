// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Queries and commands of the database itself.
namespace Queries {

// Names for completion: a path of names, each on a line, and the kind of the
// last one.
inline constexpr char Idents[] =
    "( SELECT schema_name as fld_ident, 2 AS fld_kind FROM duckdb_schemas() WHERE database_name = "
    "current_catalog() AND schema_name NOT IN ( 'information_schema', 'pg_catalog' ) ) UNION ( SELECT table_name "
    "AS fld_ident, 1 AS fld_kind FROM duckdb_tables() WHERE NOT internal AND database_name IN ( "
    "current_catalog(), 'temp' ) AND schema_name NOT IN ( 'information_schema', 'pg_catalog' ) ) UNION ( SELECT "
    "c.table_name || '\n' || column_name AS fld_ident, 3 AS fld_kind FROM duckdb_columns() c INNER JOIN "
    "duckdb_tables() t ON c.table_oid = t.table_oid WHERE NOT t.internal AND c.database_name IN ( "
    "current_catalog(), 'temp' ) ) UNION ( SELECT schema_name || '\n' || table_name AS fld_ident, 1 AS fld_kind "
    "FROM duckdb_tables() WHERE NOT internal AND database_name IN ( current_catalog(), 'temp' ) AND schema_name "
    "NOT IN ( 'information_schema', 'pg_catalog' ) ) UNION ( SELECT c.schema_name || '\n' || c.table_name || "
    "'\n' || column_name AS fld_ident, 3 AS fld_kind  FROM duckdb_columns() c INNER JOIN duckdb_tables() t ON "
    "c.table_oid = t.table_oid WHERE NOT t.internal AND c.database_name IN ( current_catalog(), 'temp' ) ) UNION "
    "( SELECT view_name AS fld_ident, 15 AS fld_kind FROM duckdb_views() WHERE NOT internal AND database_name IN "
    "( current_catalog(), 'temp' ) ) UNION ( SELECT schema_name || '\n' || view_name AS fld_ident, 15 AS "
    "fld_kind FROM duckdb_views() WHERE NOT internal AND database_name IN ( current_catalog(), 'temp' ) ) UNION "
    "( SELECT column_name AS fld_ident, 3 AS fld_kind FROM duckdb_columns() c INNER JOIN duckdb_tables() t ON "
    "c.table_oid = t.table_oid WHERE NOT c.internal AND c.database_name IN ( current_catalog(), 'temp' ) ) UNION "
    "( SELECT index_name AS fld_ident, 16 AS fld_kind FROM duckdb_indexes() WHERE database_name IN ( "
    "current_catalog(), 'temp' ) AND schema_name NOT IN ( 'information_schema', 'pg_catalog' ) ) UNION ( SELECT "
    "function_name AS fld_ident, 9 AS fld_kind FROM duckdb_functions() WHERE NOT internal AND database_name IN ( "
    "current_catalog(), 'temp' ) AND schema_name NOT IN ( 'information_schema', 'pg_catalog' ) ) UNION ( SELECT "
    "type_name AS fld_ident, 24 AS fld_kind FROM duckdb_types() WHERE NOT internal AND database_name IN ( "
    "current_catalog(), 'temp' ) AND schema_name NOT IN ( 'information_schema', 'pg_catalog' ) ) UNION ( SELECT "
    "schema_name || '\n' || type_name AS fld_ident, 24 AS fld_kind FROM duckdb_types() WHERE NOT internal AND "
    "database_name IN ( current_catalog(), 'temp' ) AND schema_name NOT IN ( 'information_schema', 'pg_catalog' "
    ") ) UNION ( SELECT schema_name || '\n' || function_name AS fld_ident, 9 AS fld_kind FROM duckdb_functions() "
    "WHERE NOT internal AND database_name IN ( current_catalog(), 'temp' ) AND schema_name NOT IN ( "
    "'information_schema', 'pg_catalog' ) ) UNION ( SELECT sequence_name AS fld_ident, 19 AS fld_kind FROM "
    "duckdb_sequences() WHERE database_name IN ( current_catalog(), 'temp' ) AND schema_name NOT IN ( "
    "'information_schema', 'pg_catalog' ) ) UNION ( SELECT schema_name || '\n' || sequence_name AS fld_ident, 19 "
    "AS fld_kind FROM duckdb_sequences() WHERE database_name IN ( current_catalog(), 'temp' ) AND schema_name "
    "NOT IN ( 'information_schema', 'pg_catalog' ) );";

inline constexpr char SystemIdents[] =
    "( SELECT schema_name as fld_ident, 2 AS fld_kind FROM duckdb_schemas() WHERE database_name = "
    "current_catalog() AND NOT internal ) UNION ( SELECT view_name AS fld_ident, 15 AS fld_kind FROM "
    "duckdb_views() WHERE internal AND database_name IN ( current_catalog(), 'temp' ) ) UNION ( SELECT "
    "schema_name || '\n' || view_name AS fld_ident, 15 AS fld_kind FROM duckdb_views() WHERE  internal AND "
    "database_name IN ( current_catalog(), 'temp' ) ) ";

// The system's schemas moved to a catalogue of their own in 1.2.
inline constexpr char SystemIdentsSince102[] =
    "( SELECT schema_name as fld_ident, 2 AS fld_kind FROM duckdb_schemas() WHERE database_name = "
    "current_catalog() AND NOT internal ) UNION ( SELECT view_name AS fld_ident, 15 AS fld_kind FROM "
    "duckdb_views() WHERE internal AND database_name IN ( current_catalog(), 'temp', 'system' ) ) UNION ( SELECT "
    "schema_name || '\n' || view_name AS fld_ident, 15 AS fld_kind FROM duckdb_views() WHERE  internal AND "
    "database_name IN ( current_catalog(), 'temp', 'system' ) ) ";

inline constexpr char AnyColumn[] = "SELECT 1 FROM duckdb_columns() LIMIT 1";
inline constexpr char CurrentCatalog[] = "SELECT current_catalog()";
// The session's path, and one that goes on through all schemas.
inline constexpr char WidePath[] =
    "SELECT current_setting('search_path'), coalesce( nullif( current_setting('search_path'), '' ), 'main' ) || ( SELECT "
    "coalesce( string_agg( ',\"' || replace( database_name, '\"', '\"\"' ) || '\".\"' || replace( schema_name, '\"', '\"\"' ) || "
    "'\"', '' ORDER BY schema_name ), '' ) FROM duckdb_schemas() WHERE database_name = current_catalog() AND NOT internal )";
inline constexpr char SearchPath[] = "SELECT current_setting('search_path')";

// The engine knows no such pragma, and did not in any version from 1.1 on;
// its own word for it is a statement.
inline constexpr char Checkpoint[] = "PRAGMA wal_checkpoint";
inline constexpr char CheckpointSince101[] = "CHECKPOINT";

} // namespace Queries
