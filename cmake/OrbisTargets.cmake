# SPDX-License-Identifier: GPL-3.0-or-later
# One function for each kind of target. A leaf file only lists its sources.

# The sanitizers' own functions come with the program only.
if(NOT ORBIS_SANITIZE)
  set(ORBIS_NO_UNDEFINED -Wl,--no-undefined)
endif()

# orbis_folder(NAME SOURCES ... [LINK ...] [DEFINE ...] [PCH header] [MOC])
# An object library of one folder.
function(orbis_folder name)
  cmake_parse_arguments(A "MOC" "PCH" "SOURCES;LINK;DEFINE" ${ARGN})
  add_library(${name} OBJECT ${A_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/src/host)
  target_link_libraries(${name} PUBLIC ${A_LINK})
  if(A_DEFINE)
    target_compile_definitions(${name} PRIVATE ${A_DEFINE})
  endif()
  if(A_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  if(A_PCH AND ORBIS_PCH)
    target_precompile_headers(${name} PRIVATE ${CMAKE_SOURCE_DIR}/src/${A_PCH})
  endif()
endfunction()

# orbis_library(NAME OUTPUT name FOLDERS ... [LINK ...] [PRIVATE ...])
# A shared library of the host, made of whole folders.
function(orbis_library name)
  cmake_parse_arguments(A "" "OUTPUT" "FOLDERS;LINK;PRIVATE" ${ARGN})
  add_library(${name} SHARED)
  foreach(folder IN LISTS A_FOLDERS)
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${folder}>)
  endforeach()
  target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/src/host)
  target_link_libraries(${name} PUBLIC ${A_LINK} PRIVATE ${A_PRIVATE})
  target_link_options(${name} PRIVATE ${ORBIS_NO_UNDEFINED})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${A_OUTPUT} LINKER_LANGUAGE CXX
    BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN")
endfunction()

# orbis_plugin(NAME OUTPUT name FOLDERS ... LINK ... [NEEDED ...] EXPORTS file)
# NEEDED: targets that the plug-in names as needed libraries whether or not it
# calls them.
function(orbis_plugin name)
  cmake_parse_arguments(A "" "OUTPUT;EXPORTS" "FOLDERS;LINK;NEEDED" ${ARGN})
  add_library(${name} MODULE)
  foreach(folder IN LISTS A_FOLDERS)
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${folder}>)
  endforeach()
  target_link_libraries(${name} PRIVATE ${A_LINK})
  foreach(library IN LISTS A_NEEDED)
    target_link_libraries(${name} PRIVATE -Wl,--push-state,--no-as-needed $<TARGET_FILE:${library}> -Wl,--pop-state)
  endforeach()
  target_link_options(${name} PRIVATE
    -Wl,--as-needed -Wl,--version-script=${A_EXPORTS}
    ${ORBIS_NO_UNDEFINED})
  set_target_properties(${name} PROPERTIES
    PREFIX "" OUTPUT_NAME ${A_OUTPUT} LINK_DEPENDS ${A_EXPORTS} LINKER_LANGUAGE CXX
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin
    BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN;$ORIGIN/lib;$ORIGIN/orbcomponents")
endfunction()

# orbis_program(NAME SOURCES ... LINK ... [MOC])
function(orbis_program name)
  cmake_parse_arguments(A "MOC" "OUTPUT" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${A_SOURCES})
  target_link_libraries(${name} PRIVATE ${A_LINK})
  set_target_properties(${name} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN/lib")
  if(A_OUTPUT)
    set_target_properties(${name} PROPERTIES OUTPUT_NAME ${A_OUTPUT})
  endif()
  if(A_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
endfunction()

# orbis_test(NAME SOURCES ... LINK ... [LABELS ...] [TIMEOUT s] [ENVIRONMENT ...] [MAIN])
# One GoogleTest program. MAIN: the sources bring their own main().
function(orbis_test name)
  cmake_parse_arguments(A "MAIN;MOC" "TIMEOUT" "SOURCES;LINK;LABELS;ENVIRONMENT;DEFINE" ${ARGN})
  if(NOT A_MAIN)
    list(APPEND A_SOURCES ${CMAKE_SOURCE_DIR}/tests/support/qt_main.cpp)
    list(APPEND A_LINK Qt6::Core)
  endif()
  add_executable(${name} ${A_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${A_LINK} GTest::gtest)
  target_compile_definitions(${name} PRIVATE ${A_DEFINE})
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN/../bin/lib")
  if(A_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  if(NOT A_TIMEOUT)
    set(A_TIMEOUT 600)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${A_TIMEOUT} LABELS "${A_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ORBIS_LANGUAGE=C;ORBIS_BIN=${CMAKE_BINARY_DIR}/bin;${A_ENVIRONMENT}")
endfunction()

# orbis_bench(NAME SOURCES ... LINK ...)
function(orbis_bench name)
  cmake_parse_arguments(A "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${A_SOURCES})
  target_link_libraries(${name} PRIVATE ${A_LINK} benchmark::benchmark)
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN/../bin/lib")
endfunction()
