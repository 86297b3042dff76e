// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/engine_api.h"

#include <dlfcn.h>
#include <type_traits>

namespace nub::orbsql {
namespace {

NewerFunctions LookUp()
{
    // The engine may have been loaded with local scope, beneath a plug-in.
    Dl_info place{};
    void* engine = nullptr;
    if (dladdr(reinterpret_cast<void*>(&duckdb_library_version), &place) && place.dli_fname)
        engine = dlopen(place.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    const auto find = [engine](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(engine ? dlsym(engine, name) : nullptr);
    };
    NewerFunctions functions;
    find(functions.createInstanceCache, "duckdb_create_instance_cache");
    find(functions.destroyInstanceCache, "duckdb_destroy_instance_cache");
    find(functions.getOrCreateFromCache, "duckdb_get_or_create_from_cache");
    find(functions.vectorReferenceVector, "duckdb_vector_reference_vector");
    return functions;
}

} // namespace

const NewerFunctions& Newer()
{
    static const NewerFunctions functions = LookUp();
    return functions;
}

} // namespace nub::orbsql
