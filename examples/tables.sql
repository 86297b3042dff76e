-- The tables and views of the sample with their sizes.
SELECT schema_name AS "schema", table_name AS "table", 'table' AS kind, column_count AS columns,
       estimated_size AS "rows", comment
FROM duckdb_tables()
WHERE NOT internal
UNION ALL
SELECT schema_name, view_name, 'view', column_count, NULL, comment
FROM duckdb_views()
WHERE NOT internal
ORDER BY ALL;
