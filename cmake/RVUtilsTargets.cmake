# How this project makes its libraries and lays out their public headers.

add_library(rvutils_warnings INTERFACE)
target_compile_options(rvutils_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${RVUTILS_WERROR}>:-Werror>)

set(RVUTILS_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)

# A shared library of the house, also known as RVUtils::<name>.
function(rvutils_add_library name)
  add_library(${name} SHARED)
  add_library(RVUtils::${name} ALIAS ${name})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PRIVATE rvutils_warnings)
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${RVUTILS_INCLUDE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH $ORIGIN)
  set_property(GLOBAL APPEND PROPERTY RVUTILS_LIBRARIES ${name})
  if(WIN32)
    # One file name on every platform: RVUtils.dll, not libRVUtils.dll.
    set_target_properties(${name} PROPERTIES PREFIX "")
  else()
    # A call inside the library is a call, as on Windows: nothing takes the place of its names.
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
  endif()
endfunction()

# Publishes headers of the rooms as <RVUtils/name.h>: a forwarder a header, so that the headers
# themselves stay in their rooms and include each other by relative path.
function(rvutils_public_headers target)
  foreach(header IN LISTS ARGN)
    cmake_path(ABSOLUTE_PATH header BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    cmake_path(GET header FILENAME name)
    file(CONFIGURE OUTPUT ${RVUTILS_INCLUDE_DIR}/RVUtils/${name}
         CONTENT "#pragma once\n#include \"${header}\"\n")
    set_property(TARGET ${target} APPEND PROPERTY RVUTILS_PUBLIC_HEADERS ${header})
  endforeach()
endfunction()

# Writes <RVUtils/RVUtils.h>, which includes every public header of the target.
function(rvutils_umbrella_header target)
  get_property(headers TARGET ${target} PROPERTY RVUTILS_PUBLIC_HEADERS)
  set(content "#pragma once\n")
  foreach(header IN LISTS headers)
    cmake_path(GET header FILENAME name)
    string(APPEND content "#include \"${name}\"\n")
  endforeach()
  file(CONFIGURE OUTPUT ${RVUTILS_INCLUDE_DIR}/RVUtils/RVUtils.h CONTENT "${content}")
endfunction()
