// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The catalogue queries of the child lists. $NAME is the owner's name, $PNAME
// its parent's, both as string literals.
//
// Each text named ...Since101 takes the place of its neighbour on engines from
// 1.1 on: the system schemas moved from the current catalogue to "system" (1.2),
// a same-named table of another catalogue would mix its rows in, and objects of
// temporary tables would be missing. $CATALOG is the catalogue that the owner
// belongs to, as an SQL expression. These texts join names by NUL, the one
// character that no name can hold; a line feed would cut some in two.
namespace Queries {

inline constexpr char Schemas[] = "SELECT oid, schema_name FROM duckdb_schemas() WHERE database_name = current_catalog()";

inline constexpr char SchemasSince101[] =
    "SELECT oid, schema_name FROM duckdb_schemas() WHERE database_name = current_catalog() UNION ALL "
    "SELECT oid, schema_name FROM duckdb_schemas() WHERE database_name = 'system' AND database_name <> current_catalog() "
    "AND schema_name IN ( 'information_schema', 'pg_catalog' ) AND NOT EXISTS ( SELECT 1 FROM duckdb_schemas() o "
    "WHERE o.database_name = current_catalog() AND o.schema_name IN ( 'information_schema', 'pg_catalog' ) )";

inline constexpr char Functions[] =
    "-- UPDATE LIST OF FUNCTIONS\nSELECT *, database_name = 'temp' as temporary, array_to_string( parameters, ', ' ) as "
    "args_names, array_length( parameters ) AS args_count FROM duckdb_functions()  WHERE schema_name = $NAME AND "
    "database_name IN ( current_catalog(), 'temp' ) AND (( internal AND schema_name in ( 'pg_catalog', "
    "'information_schema' ) ) OR NOT internal)";

inline constexpr char FunctionsSince101[] =
    "-- UPDATE LIST OF FUNCTIONS\nSELECT *, database_name = 'temp' as temporary, array_to_string( parameters, ', ' ) as "
    "args_names, array_length( parameters ) AS args_count FROM duckdb_functions()  WHERE schema_name = $NAME AND "
    "(( internal AND schema_name in ( 'pg_catalog', 'information_schema' ) AND database_name IN ( current_catalog(), "
    "'system' ) ) OR ( NOT internal AND database_name IN ( current_catalog(), 'temp' ) ) )";

inline constexpr char Links[] =
    "-- UPDATE LIST OF LINKS\nSELECT *, CONCAT( 'link_', regexp_extract( constraint_text, 'REFERENCES\\s+([^(]+)', 1), "
    "'_', table_name ) AS constraint_name FROM duckdb_constraints() WHERE database_name=current_catalog() AND "
    "schema_name=$NAME AND constraint_type = 'FOREIGN KEY'";

// The constraint's text is empty for a table that references itself, and holds
// names as they are, unquoted: the columns tell both exactly.
inline constexpr char LinksSince101[] =
    "-- UPDATE LIST OF LINKS\nSELECT *, CONCAT( 'link_', COALESCE( NULLIF( regexp_extract( constraint_text, "
    "'REFERENCES\\s+([^(]+)', 1), '' ), referenced_table ), '_', table_name ) AS constraint_name, "
    "database_name = 'temp' AS temporary, array_to_string( constraint_column_names, chr(0) ) AS link_names, "
    "array_to_string( referenced_column_names, chr(0) ) AS link_parent_names "
    "FROM duckdb_constraints() WHERE database_name IN ( current_catalog(), 'temp' ) AND "
    "schema_name=$NAME AND constraint_type = 'FOREIGN KEY'";

inline constexpr char Tables[] =
    "-- UPDATE LIST OF TABLES\nSELECT *, ( SELECT array_to_string( constraint_column_names, '\n' ) FROM "
    "duckdb_constraints() c WHERE c.constraint_type = 'PRIMARY KEY' AND c.table_name = t.table_name AND c.schema_name = "
    "t.schema_name ) primary_key FROM duckdb_tables() t WHERE schema_name = $NAME AND (( internal AND schema_name in ( "
    "'pg_catalog', 'information_schema' ) AND database_name = current_catalog() ) OR ( NOT internal AND database_name IN "
    "( current_catalog(), 'temp' ) ) )";

inline constexpr char TablesSince101[] =
    "-- UPDATE LIST OF TABLES\nSELECT *, ( SELECT array_to_string( constraint_column_names, chr(0) ) FROM "
    "duckdb_constraints() c WHERE c.constraint_type = 'PRIMARY KEY' AND c.table_name = t.table_name AND c.schema_name = "
    "t.schema_name AND c.database_name = t.database_name ) key_names FROM duckdb_tables() t WHERE schema_name = $NAME "
    "AND (( internal AND schema_name in ( 'pg_catalog', 'information_schema' ) AND database_name IN ( current_catalog(), "
    "'system' ) ) OR ( NOT internal AND database_name IN ( current_catalog(), 'temp' ) ) )";

inline constexpr char Views[] =
    "-- UPDATE LIST OF VIEWS\nSELECT * FROM duckdb_views() WHERE schema_name = $NAME AND (( internal AND schema_name in ( "
    "'pg_catalog', 'information_schema' ) AND database_name = current_catalog() ) OR ( NOT internal AND database_name IN "
    "( current_catalog(), 'temp' ) ) )";

// The engine calls its own views temporary.
inline constexpr char ViewsSince101[] =
    "-- UPDATE LIST OF VIEWS\nSELECT * REPLACE ( temporary AND NOT internal AS temporary ) FROM duckdb_views() WHERE schema_name = $NAME AND (( internal AND schema_name in ( "
    "'pg_catalog', 'information_schema' ) AND database_name IN ( current_catalog(), 'system' ) ) OR ( NOT internal AND "
    "database_name IN ( current_catalog(), 'temp' ) ) )";

inline constexpr char Sequences[] = "-- UPDATE LIST OF SEQUENCES\nSELECT * FROM duckdb_sequences() WHERE schema_name = $NAME";

inline constexpr char Checks[] =
    "-- UPDATE LIST OF CHECKS\nSELECT *, CONCAT( 'check', '_', array_to_string( constraint_column_names, '_' ) ) AS "
    "constraint_name FROM duckdb_constraints() WHERE database_name=current_catalog() AND schema_name = $PNAME AND "
    "table_name = $NAME AND constraint_type = 'CHECK'";

inline constexpr char ChecksSince101[] =
    "-- UPDATE LIST OF CHECKS\nSELECT *, CONCAT( 'check', '_', array_to_string( constraint_column_names, '_' ) ) AS "
    "constraint_name FROM duckdb_constraints() WHERE database_name=$CATALOG AND schema_name = $PNAME AND "
    "table_name = $NAME AND constraint_type = 'CHECK'";

inline constexpr char FieldsOfTable[] =
    "-- UPDATE LIST OF FIELDS\nSELECT * FROM duckdb_columns() WHERE table_name = $NAME AND schema_name = $PNAME AND ( "
    "database_name = current_catalog() OR ( database_name = 'temp' AND schema_name NOT IN ( 'pg_catalog', "
    "'information_schema' ) ) ) AND ( column_default IS NULL OR ( data_type = 'BOOLEAN' AND ( column_default IN ( "
    "'CAST(''t'' AS BOOLEAN)', 'CAST(''f'' AS BOOLEAN)' ) ) ) OR NOT ( starts_with( column_default, 'CAST(' ) AND "
    "ends_with( column_default, CONCAT( 'AS ', data_type, ')' ) ) ) )";

// A typed default looks like a generated column, and the cast of a generated
// one may name the type in quotes: the table's own text tells them apart, without
// its string literals, which may hold anything, and, where a name stands bare,
// without the names in quotes. Joined rather than looked up for each column, which
// takes the engine three times as long to plan. A join keeps no order of its own
// (1.1 turns it round).
#define ORBIS_NO_STRINGS(text)                                                                                            \
    "replace( regexp_replace( " text ", '(\"(?:[^\"]|\"\")*\")|''(?:[^'']|'''')*''', '\\1', 'g' ), '(', ' ' )"
#define ORBIS_NO_QUOTES(text) "regexp_replace( " ORBIS_NO_STRINGS(text) ", '\"(?:[^\"]|\"\")*\"', '\"\"', 'g' )"
#define ORBIS_COLUMNS_AND_TEXT                                                                                            \
    "SELECT c.* FROM duckdb_columns() c LEFT JOIN ( SELECT " ORBIS_NO_STRINGS("sql") " AS quoted, " ORBIS_NO_QUOTES("sql") \
    " AS bare FROM duckdb_tables() WHERE table_name = $NAME AND schema_name = $PNAME AND database_name = $CATALOG ) t "     \
    "ON true WHERE c.table_name = $NAME AND c.schema_name = $PNAME AND c.database_name = $CATALOG AND "
#define ORBIS_GENERATED_TEST                                                                                              \
    "( starts_with( coalesce( c.column_default, '' ), 'CAST(' ) AND coalesce( contains( t.bare, replace( ' ' || "           \
    "c.column_name || ' ', '(', ' ' ) || " ORBIS_NO_QUOTES("c.data_type") " || ' GENERATED ALWAYS AS ' ) OR "              \
    "contains( t.quoted, replace( ' \"' || replace( c.column_name, '\"', '\"\"' ) || '\" ', '(', ' ' ) || "                  \
    ORBIS_NO_STRINGS("c.data_type") " || ' GENERATED ALWAYS AS ' ), false ) )"

inline constexpr char FieldsOfTableSince101[] =
    "-- UPDATE LIST OF FIELDS\n" ORBIS_COLUMNS_AND_TEXT "NOT " ORBIS_GENERATED_TEST " ORDER BY c.column_index";

inline constexpr char Methods[] =
    "-- UPDATE LIST OF METHODS\nSELECT * FROM duckdb_columns() WHERE table_name = $NAME AND schema_name = $PNAME AND ( "
    "database_name = current_catalog() OR ( database_name = 'temp' AND schema_name NOT IN ( 'pg_catalog', "
    "'information_schema' ) ) ) AND ( starts_with( column_default, 'CAST(' ) AND ends_with( column_default, CONCAT( 'AS "
    "', data_type, ')' ) ) AND ( data_type <> 'BOOLEAN' OR column_default NOT IN ( 'CAST(''t'' AS BOOLEAN)' , "
    "'CAST(''f'' AS BOOLEAN)' ) ) )";

inline constexpr char MethodsSince101[] =
    "-- UPDATE LIST OF METHODS\n" ORBIS_COLUMNS_AND_TEXT ORBIS_GENERATED_TEST " ORDER BY c.column_index";

#undef ORBIS_GENERATED_TEST
#undef ORBIS_COLUMNS_AND_TEXT
#undef ORBIS_NO_QUOTES
#undef ORBIS_NO_STRINGS

inline constexpr char Indexes[] =
    "-- UPDATE LIST OF INDEXES\nSELECT * FROM duckdb_indexes() WHERE table_name = $NAME AND schema_name = $PNAME AND "
    "database_name = current_catalog()";

inline constexpr char IndexesSince101[] =
    "-- UPDATE LIST OF INDEXES\nSELECT * FROM duckdb_indexes() WHERE table_name = $NAME AND schema_name = $PNAME AND "
    "database_name = $CATALOG";

inline constexpr char Uniques[] =
    "-- UPDATE LIST OF UNIQUES\nSELECT *, CONCAT( 'unique_', array_to_string( constraint_column_names, '_' ) ) AS "
    "constraint_name, array_to_string( constraint_column_names, '\n' ) AS columns FROM duckdb_constraints() WHERE "
    "database_name=current_catalog() AND schema_name=$PNAME AND table_name=$NAME AND constraint_type = 'UNIQUE'";

inline constexpr char UniquesSince101[] =
    "-- UPDATE LIST OF UNIQUES\nSELECT *, CONCAT( 'unique_', array_to_string( constraint_column_names, '_' ) ) AS "
    "constraint_name, array_to_string( constraint_column_names, chr(0) ) AS unique_names FROM duckdb_constraints() WHERE "
    "database_name=$CATALOG AND schema_name=$PNAME AND table_name=$NAME AND constraint_type = 'UNIQUE'";

inline constexpr char FieldsOfView[] =
    "SELECT * FROM duckdb_columns() WHERE table_name = $NAME AND schema_name = $PNAME AND ( database_name = "
    "current_catalog() OR ( database_name = 'temp' AND schema_name NOT IN ( 'pg_catalog', 'information_schema' ) ) )";

inline constexpr char FieldsOfViewSince101[] =
    "SELECT * FROM duckdb_columns() WHERE table_name = $NAME AND schema_name = $PNAME AND database_name = $CATALOG "
    "ORDER BY column_index";

} // namespace Queries
