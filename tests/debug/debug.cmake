# Takes a core file of the program, and compares what is shown of it with what is expected.
set(gdb ${GDB} -nx -batch -iex "set debuginfod enabled off")
execute_process(
  COMMAND ${gdb} -ex "break Stop" -ex run -ex "generate-core-file ${CORE}" -ex kill ${PROGRAM}
  OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT EXISTS ${CORE})
  message(FATAL_ERROR "${output}")
endif()
execute_process(
  COMMAND ${gdb} -ex "source ${VIEWS}/rvutils_gdb.py" -ex up
          -ex "set $natvis_file = \"${VIEWS}/rvutils.natvis\""
          -x ${CMAKE_CURRENT_LIST_DIR}/views.py ${PROGRAM} ${CORE}
  OUTPUT_VARIABLE output ERROR_VARIABLE output)
file(REMOVE ${CORE})
if(NOT output MATCHES "\n0 views are wrong")
  message(FATAL_ERROR "${output}")
endif()
