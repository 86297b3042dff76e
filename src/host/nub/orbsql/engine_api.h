// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <duckdb.h>

namespace nub::orbsql {

/// Functions of the engine that the kernel uses where they exist; null in an
/// engine that lacks them. They are looked up by name, since not every linker
/// keeps a weak reference weak when it has seen the definition.
struct NewerFunctions
{
    decltype(&duckdb_create_instance_cache) createInstanceCache;         // 1.2
    decltype(&duckdb_destroy_instance_cache) destroyInstanceCache;       // 1.2
    decltype(&duckdb_get_or_create_from_cache) getOrCreateFromCache;     // 1.2
    decltype(&duckdb_vector_reference_vector) vectorReferenceVector;     // 1.3
};

const NewerFunctions& Newer();

} // namespace nub::orbsql

// A direct call would keep the library from loading beside an older engine.
#pragma GCC poison duckdb_create_instance_cache
#pragma GCC poison duckdb_destroy_instance_cache
#pragma GCC poison duckdb_get_or_create_from_cache
#pragma GCC poison duckdb_vector_reference_vector
