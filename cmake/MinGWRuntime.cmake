# Lays the compiler's run-time libraries beside the programs, where Windows looks for them first.
set(RVUTILS_COMPILER_LIBRARIES)
foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
                  OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
  # The compiler gives the bare name back where it does not know the file.
  if(NOT IS_ABSOLUTE "${path}")
    find_file(path_of_${name} ${name} PATHS /usr/x86_64-w64-mingw32/lib /usr/x86_64-w64-mingw32/bin
              NO_DEFAULT_PATH REQUIRED)
    set(path ${path_of_${name}})
  endif()
  file(COPY ${path} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY} FOLLOW_SYMLINK_CHAIN)
  list(APPEND RVUTILS_COMPILER_LIBRARIES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
endforeach()
