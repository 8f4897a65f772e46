# Install rules, the CMake package and the SDK archive.
#
#   bin/                    the four package DLLs
#   lib/                    their import libraries
#   include/platform/...    public headers, at the paths the code includes them by
#   include/velkin/...
#   lib/cmake/Velkin/       VelkinConfig.cmake: find_package(Velkin 1.0 CONFIG)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(VELKIN_PACKAGES ostrel vcl pellum velkin)
install(TARGETS ${VELKIN_PACKAGES} EXPORT VelkinTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

# Public headers only: *_impl.h are the packages' private headers.
foreach(dir platform/ostrel platform/vcl platform/pellum velkin)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${dir}
          FILES_MATCHING PATTERN "*.h" PATTERN "*_impl.h" EXCLUDE PATTERN "resources" EXCLUDE)
endforeach()

set(VELKIN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Velkin)
install(EXPORT VelkinTargets NAMESPACE Velkin:: DESTINATION ${VELKIN_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VelkinConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/VelkinConfig.cmake INSTALL_DESTINATION ${VELKIN_CMAKE_DIR}
                              PATH_VARS CMAKE_INSTALL_BINDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VelkinConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VelkinConfig.cmake ${PROJECT_BINARY_DIR}/VelkinConfigVersion.cmake
        DESTINATION ${VELKIN_CMAKE_DIR})
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION .)

# make package: the SDK as one ZIP, Velkin-<version>-win64.zip.
set(CPACK_PACKAGE_NAME Velkin)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_SYSTEM_NAME win64)
set(CPACK_GENERATOR ZIP)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
include(CPack)
