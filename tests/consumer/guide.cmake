# Runs the program of a guide in an empty directory, and compares what it prints.
#
#     cmake -DEMULATOR=... -DPROGRAM=... -DEXPECTED=FILE -P guide.cmake

set(place ${EXPECTED}.run)
file(REMOVE_RECURSE ${place})
file(MAKE_DIRECTORY ${place})
# Data and registry of a user of its own.
set(ENV{RVUTILS_APPDATA} ${place})
set(ENV{RVUTILS_REGISTRY} ${place}/registry.reg)
execute_process(COMMAND ${EMULATOR} ${PROGRAM} WORKING_DIRECTORY ${place}
  OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r" "" printed "${printed}")
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "the program prints\n${printed}and not\n${expected}")
endif()
