# Holds the names that a library exports against a list of them, demangled and in order.
#
#     cmake -DLIBRARY=... -DLIST=... -DPROMISED=name;... -DNM=... -DOBJDUMP=... -DCXXFILT=...
#           -P exports.cmake
#
# With RVUTILS_RENEW_EXPORTS in the environment, the list is written anew instead.

function(read_elf names)
  execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE listing
                  COMMAND_ERROR_IS_FATAL ANY)
  # Weak names are instances of the standard library's templates.
  string(REGEX MATCHALL "[0-9a-f]+ [TDBR] [^\n]+" found "${listing}")
  list(TRANSFORM found REPLACE "^[0-9a-f]+ [TDBR] " "")
  set(${names} ${found} PARENT_SCOPE)
endfunction()

function(read_dll names)
  execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE listing
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE ".*\\[Ordinal/Name Pointer\\] Table" "" listing "${listing}")
  # A bracket would hold a list of CMake's together.
  string(REPLACE "]" "|" listing "${listing}")
  string(REGEX REPLACE "\n\n.*" "" listing "${listing}")
  string(REGEX MATCHALL "[|] [A-Za-z0-9_?@$]+" found "${listing}")
  list(TRANSFORM found REPLACE "^[|] " "")
  set(${names} ${found} PARENT_SCOPE)
endfunction()

if(LIBRARY MATCHES "\\.dll$")
  read_dll(names)
else()
  read_elf(names)
endif()
if(NOT names)
  message(FATAL_ERROR "no exported name was found in ${LIBRARY}")
endif()

cmake_path(GET LIBRARY FILENAME library)
set(mangled ${CMAKE_CURRENT_BINARY_DIR}/${library}.names)
list(JOIN names "\n" lines)
file(WRITE ${mangled} "${lines}\n")
execute_process(COMMAND ${CXXFILT} INPUT_FILE ${mangled} OUTPUT_VARIABLE plain
                COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE ${mangled})
# Two constructors of one class have one name each for the object and for the base of another.
string(REGEX MATCHALL "[^\n]+" exported "${plain}")
list(REMOVE_DUPLICATES exported)
list(SORT exported)

if(DEFINED ENV{RVUTILS_RENEW_EXPORTS})
  list(JOIN exported "\n" lines)
  file(WRITE ${LIST} "${lines}\n")
  message(STATUS "${LIST} is new")
endif()

file(STRINGS ${LIST} listed)
set(gone ${listed})
list(REMOVE_ITEM gone ${exported})
list(REMOVE_ITEM exported ${listed})
foreach(name IN LISTS gone)
  message(SEND_ERROR "exported no longer: ${name}")
endforeach()
foreach(name IN LISTS exported)
  message(SEND_ERROR "exported, but not listed: ${name}")
endforeach()
if(gone OR exported)
  message(SEND_ERROR
    "If that is meant, say so in CHANGELOG.md and run the test once with RVUTILS_RENEW_EXPORTS=1.")
endif()
foreach(name IN LISTS PROMISED)
  if(NOT listed MATCHES "(^|;|[ &])${name}[(:<]")
    message(SEND_ERROR "promised, but not exported: ${name}")
  endif()
endforeach()
list(LENGTH listed count)
message(STATUS "${count} exported names")
