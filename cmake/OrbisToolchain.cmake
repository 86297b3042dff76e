# SPDX-License-Identifier: GPL-3.0-or-later
# Compiler cache, linker and flags that every target of the project shares.

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(ORBIS_CCACHE ccache)
if(ORBIS_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Precompiled headers only hit the cache with these settings. A base directory
  # of the user's own would hand this tree the header that another tree has
  # compiled, and with it that tree's paths: classes then stand twice.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR= ${ORBIS_CCACHE})
  if(ORBIS_PCH)
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
  endif()
endif()

add_compile_options(
  -Wall -Wextra -Wpedantic -Wno-unused-parameter -Wnon-virtual-dtor
  # g++ 12 reports overlaps in std::string that cannot happen (GCC bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # ... and writes through null pointers on paths that test for them.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
  # Counted objects keep their counts readable between the end of the
  # destructor and the last weak reference (see rc/ref_counted.h).
  $<$<CXX_COMPILER_ID:GNU>:-fno-lifetime-dse>)

if(ORBIS_SANITIZE)
  add_compile_options(-fsanitize=${ORBIS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ORBIS_SANITIZE})
  # vptr checks need typeinfo of the object across shared objects that hide it.
  if(ORBIS_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize=vptr)
  endif()
endif()
