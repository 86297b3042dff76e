# SPDX-License-Identifier: GPL-3.0-or-later
# The engine: an imported target orbis::duckdb. DUCKDB_ROOT names a folder with
# libduckdb.so and duckdb.h; without it the pinned packages are fetched once
# into the user's cache (scripts/fetch-engine).

set(DUCKDB_VERSION 1.5.6 CACHE STRING "Engine version to fetch")
if(NOT DUCKDB_ROOT AND DEFINED ENV{DUCKDB_ROOT})
  set(DUCKDB_ROOT $ENV{DUCKDB_ROOT})
endif()
if(NOT DUCKDB_ROOT)
  execute_process(
    COMMAND ${CMAKE_SOURCE_DIR}/scripts/fetch-engine ${DUCKDB_VERSION}
    OUTPUT_VARIABLE DUCKDB_ROOT OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "The engine could not be fetched; set DUCKDB_ROOT to a folder with libduckdb.so and duckdb.h")
  endif()
endif()
foreach(file libduckdb.so duckdb.h)
  if(NOT EXISTS ${DUCKDB_ROOT}/${file})
    message(FATAL_ERROR "DUCKDB_ROOT=${DUCKDB_ROOT} holds no ${file}")
  endif()
endforeach()

add_library(orbis::duckdb SHARED IMPORTED GLOBAL)
set_target_properties(orbis::duckdb PROPERTIES
  IMPORTED_LOCATION ${DUCKDB_ROOT}/libduckdb.so
  INTERFACE_INCLUDE_DIRECTORIES ${DUCKDB_ROOT})

# The engine stands beside the kernel, so that the tree can be moved as a whole.
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/bin/lib)
file(COPY ${DUCKDB_ROOT}/libduckdb.so DESTINATION ${CMAKE_BINARY_DIR}/bin/lib FOLLOW_SYMLINK_CHAIN)
