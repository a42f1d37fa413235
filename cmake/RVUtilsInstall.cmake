# What an installation holds, and the packages of it: one to run programs with, one to build them.
include(CMakePackageConfigHelpers)

set(RVUTILS_CONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/RVUtils)
get_property(libraries GLOBAL PROPERTY RVUTILS_LIBRARIES)

install(TARGETS ${libraries} EXPORT RVUtilsTargets
  RUNTIME COMPONENT RVUtils_Runtime
  LIBRARY COMPONENT RVUtils_Runtime NAMELINK_COMPONENT RVUtils_Development
  ARCHIVE COMPONENT RVUtils_Development)
if(TARGET rvrc)
  install(TARGETS rvrc EXPORT RVUtilsTargets RUNTIME COMPONENT RVUtils_Development)
endif()
if(RVUTILS_COMPILER_LIBRARIES)
  install(FILES ${RVUTILS_COMPILER_LIBRARIES} TYPE BIN COMPONENT RVUtils_Runtime)
endif()

# The headers, in the folders that they have here, with all that they include.
set(headers)
foreach(library IN LISTS libraries)
  get_property(published TARGET ${library} PROPERTY RVUTILS_PUBLIC_HEADERS)
  list(APPEND headers ${published})
endforeach()
# Where the system has the platform's names, the layer of them is not asked for.
install(CODE "
  set(headers \"${headers}\")
  set(source \"${PROJECT_SOURCE_DIR}\")
  set(umbrella \"${RVUTILS_INCLUDE_DIR}/RVUtils/RVUtils.h\")
  set(forwarders \"${PROJECT_BINARY_DIR}/forwarders\")
  set(include_dir \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_INCLUDEDIR}/RVUtils\")
  set(left_out \"$<$<BOOL:${WIN32}>:platform/win32>\")
  include(\"${PROJECT_SOURCE_DIR}/cmake/InstallHeaders.cmake\")"
  COMPONENT RVUtils_Development)

# What debuggers show of values. gdb loads by itself what stands in this folder of its own for a
# library, by the path that packages give it; anywhere else, `source` does it.
install(FILES tools/debug/rvutils_gdb.py tools/debug/rvutils.natvis
        DESTINATION ${CMAKE_INSTALL_DATADIR}/RVUtils COMPONENT RVUtils_Development)
if(NOT WIN32)
  install(FILES tools/debug/rvutils_gdb.py
    DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}
    RENAME libRVPlatform.so.${PROJECT_VERSION}-gdb.py
    COMPONENT RVUtils_Development EXCLUDE_FROM_ALL)
endif()

# find_package(RVUtils), and pkg-config rvutils.
install(EXPORT RVUtilsTargets NAMESPACE RVUtils:: DESTINATION ${RVUTILS_CONFIG_DIR}
  COMPONENT RVUtils_Development)
configure_package_config_file(cmake/RVUtilsConfig.cmake.in RVUtilsConfig.cmake
  INSTALL_DESTINATION ${RVUTILS_CONFIG_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(RVUtilsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
list(TRANSFORM libraries PREPEND "-l" OUTPUT_VARIABLE link_options)
list(JOIN link_options " " RVUTILS_LINK_OPTIONS)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir}
           OUTPUT_VARIABLE RVUTILS_PREFIX_FROM_PKGCONFIG)
configure_file(cmake/rvutils.pc.in rvutils.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/RVUtilsConfig.cmake
              ${PROJECT_BINARY_DIR}/RVUtilsConfigVersion.cmake cmake/RVUtilsResources.cmake
        DESTINATION ${RVUTILS_CONFIG_DIR} COMPONENT RVUtils_Development)
install(FILES ${PROJECT_BINARY_DIR}/rvutils.pc DESTINATION ${pkgconfig_dir}
        COMPONENT RVUtils_Development)

# cpack: two Debian packages, or one archive for Windows.
set(CPACK_PACKAGE_VENDOR "RVUtils")
set(CPACK_PACKAGE_CONTACT "RVUtils developers <developers@rvutils.invalid>")
set(CPACK_COMPONENTS_ALL RVUtils_Runtime RVUtils_Development)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # The libraries need each other, and that is no package's affair.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(runtime_package librvutils${PROJECT_VERSION_MAJOR})
  set(CPACK_DEBIAN_RVUTILS_RUNTIME_PACKAGE_NAME ${runtime_package})
  set(CPACK_DEBIAN_RVUTILS_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_RVUTILS_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION}")
  set(CPACK_DEBIAN_RVUTILS_DEVELOPMENT_PACKAGE_NAME librvutils-dev)
  set(CPACK_DEBIAN_RVUTILS_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_RVUTILS_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
  set(CPACK_DEBIAN_RVUTILS_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION} (to build with)")
endif()
include(CPack)
