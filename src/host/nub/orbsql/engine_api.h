// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <duckdb.h>

// Functions that older engines lack are weak, so that the library loads there;
// test each for null before calling it. (1.1 lacks all of these.)
#pragma weak duckdb_connection_get_client_context
#pragma weak duckdb_create_error_data
#pragma weak duckdb_create_instance_cache
#pragma weak duckdb_destroy_client_context
#pragma weak duckdb_destroy_error_data
#pragma weak duckdb_destroy_instance_cache
#pragma weak duckdb_error_data_has_error
#pragma weak duckdb_error_data_message
#pragma weak duckdb_get_or_create_from_cache
#pragma weak duckdb_get_table_names
#pragma weak duckdb_prepared_statement_column_count
#pragma weak duckdb_prepared_statement_column_logical_type
#pragma weak duckdb_prepared_statement_column_name
#pragma weak duckdb_prepared_statement_column_type
#pragma weak duckdb_vector_reference_vector
