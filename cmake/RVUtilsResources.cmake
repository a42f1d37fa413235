# Resources on every platform, for the library and for applications alike.

if(WIN32)
  enable_language(RC)
endif()

# Where a cross build cannot run the resource compiler that it makes, this one serves.
set(RVUTILS_RESOURCE_COMPILER "" CACHE FILEPATH "Resource compiler of the build machine")

# rvutils_add_resources(target script.rc): gives a program or a shared library the strings, bitmaps,
# icons and cursors of one resource script, which is UTF-8. The module's HINSTANCE then finds them.
#
# On Windows the system's resource compiler takes the script. Elsewhere our own does, behind the C
# preprocessor, with the include directories and definitions of the target; what it knows of the
# language, tools/rvrc/script.h tells. The rest goes between #ifdef _WIN32 and #endif.
function(rvutils_add_resources target script)
  cmake_path(ABSOLUTE_PATH script BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
  get_target_property(home ${target} SOURCE_DIR)
  if(NOT home STREQUAL CMAKE_CURRENT_SOURCE_DIR)
    message(FATAL_ERROR "rvutils_add_resources(${target}) belongs into ${home}, beside the target")
  endif()
  if(WIN32)
    rvutils_compile_resources_on_windows(${target} ${script})
    return()
  endif()
  cmake_path(GET script FILENAME name)
  set(table ${CMAKE_CURRENT_BINARY_DIR}/${target}.resources/${name})
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${target}.resources)
  set(includes "$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>")
  set(definitions "$<TARGET_PROPERTY:${target},COMPILE_DEFINITIONS>")
  if(RVUTILS_RESOURCE_COMPILER)
    set(compiler ${RVUTILS_RESOURCE_COMPILER})
  else()
    set(compiler RVUtils::rvrc)
  endif()
  add_custom_command(
    OUTPUT ${table}.cpp
    COMMAND ${CMAKE_CXX_COMPILER} -E -x c -DRC_INVOKED
            "$<$<BOOL:${definitions}>:-D$<JOIN:${definitions},;-D>>"
            "$<$<BOOL:${includes}>:-I$<JOIN:${includes},;-I>>"
            ${script} -o ${table}.i
    COMMAND ${compiler} ${table}.i ${script} ${table}.cpp ${table}.d
    DEPENDS ${script} ${compiler}
    DEPFILE ${table}.d
    COMMENT "Compiling resources ${name}"
    COMMAND_EXPAND_LISTS VERBATIM)
  target_sources(${target} PRIVATE ${table}.cpp)
endfunction()

function(rvutils_compile_resources_on_windows target script)
  cmake_path(GET script PARENT_PATH folder)
  # CMake knows of no file behind a script; those that it names stand beside it.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${script})
  file(STRINGS ${script} images REGEX "\"[^\"]+\\.([bB][mM][pP]|[iI][cC][oO]|[cC][uU][rR])\"")
  list(TRANSFORM images REPLACE "^[^\"]*\"([^\"]+)\".*" "${folder}/\\1")
  set_source_files_properties(${script} PROPERTIES COMPILE_OPTIONS --codepage=65001
                              OBJECT_DEPENDS "${images}")
  target_sources(${target} PRIVATE ${script})
endfunction()
