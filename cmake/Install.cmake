# Install rules, the CMake package and the SDK archive.
#
#   bin/                    the four package DLLs and the form compiler, formc.exe
#   lib/                    their import libraries
#   lib/cmake/Velkin/       find_package(Velkin 1.0 CONFIG): the targets, velkin_add_forms,
#                           velkin_utf8_manifest
#   include/platform/...    public headers, at the paths the code includes them by
#   include/velkin/...
#   cmake/, tools/winerun   the toolchain file and the Wine wrapper it runs programs with
#   docs/                   the API reference (api/, made by make docs), the reference of
#                           the classes a form text can name, the README's pictures
#   examples/               the examples that build against the SDK, as sources
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(VELKIN_PACKAGES ostrel vcl pellum velkin)
install(TARGETS ${VELKIN_PACKAGES} formc EXPORT VelkinTargets
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
              ${PROJECT_SOURCE_DIR}/cmake/VelkinForms.cmake ${PROJECT_SOURCE_DIR}/cmake/VelkinManifest.cmake
        DESTINATION ${VELKIN_CMAKE_DIR})
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION .)

# The toolchain file runs programs through ../tools/winerun: the same layout
# as in a checkout, so the README's commands work with either.
install(FILES ${PROJECT_SOURCE_DIR}/cmake/mingw-w64-x86_64.cmake DESTINATION cmake)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/tools/winerun DESTINATION tools)

file(GLOB pictures CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.png)
install(FILES ${pictures} DESTINATION docs)
if(VELKIN_REFERENCE)
  install(FILES ${VELKIN_CLASS_REFERENCE} DESTINATION docs)
endif()
# Made by make docs (tools/docs.sh), which reads the installed headers.
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/html/ DESTINATION docs/api OPTIONAL)

install(FILES ${PROJECT_SOURCE_DIR}/examples/CMakeLists.txt DESTINATION examples)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/hello ${PROJECT_SOURCE_DIR}/examples/designed_form
                  ${PROJECT_SOURCE_DIR}/examples/contacts ${PROJECT_SOURCE_DIR}/examples/consumer
        DESTINATION examples)

# make package: the SDK as one ZIP, Velkin-<version>-win64.zip.
set(CPACK_PACKAGE_NAME Velkin)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_SYSTEM_NAME win64)
set(CPACK_GENERATOR ZIP)
# Every entry under one folder named as the archive is: Velkin-<version>-win64/.
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
include(CPack)
