# SPDX-License-Identifier: GPL-3.0-or-later
file(REMOVE ${OUT})
execute_process(COMMAND ${PYTHON} ${SOURCE}/src/bridge/generate.py docs ${SOURCE}/src/bridge/tables ${OUT}
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${OUT} ${SOURCE}/docs/script-classes.md RESULT_VARIABLE differs)
if(differs)
  message(FATAL_ERROR "docs/script-classes.md is not what src/bridge/generate.py writes; run it with \"docs\"")
endif()
