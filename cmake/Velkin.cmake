# Helpers shared by every package, test and benchmark.

# Flags for our own code: warnings on, every module linked statically so that it
# imports only Windows system DLLs and our own packages.
function(velkin_code_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  target_compile_definitions(${target} PRIVATE WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
  target_link_options(${target} PRIVATE -static)
endfunction()

# A package DLL: velkin_package(NAME SOURCES... [LIBS ...] [DESCRIPTION text]);
# NAME_BUILD is defined while its own sources compile (for the export macro).
# What a user of the package needs travels with the target: the include
# directory, C++20, NOMINMAX (the headers use std::min/max) and -static for
# the programs that link it. Velkin::NAME names it as the installed package does.
function(velkin_package name)
  cmake_parse_arguments(P "" "DESCRIPTION" "SOURCES;LIBS" ${ARGN})
  if(NOT P_DESCRIPTION)
    set(P_DESCRIPTION "${name} package")
  endif()
  set(VELKIN_FILE_NAME "${name}.dll")
  set(VELKIN_FILE_DESCRIPTION "${P_DESCRIPTION}")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}_version.rc @ONLY)
  add_library(${name} SHARED ${P_SOURCES} ${CMAKE_CURRENT_BINARY_DIR}/${name}_version.rc)
  add_library(Velkin::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES PREFIX "" RUNTIME_OUTPUT_DIRECTORY ${VELKIN_OUTPUT_DIR})
  string(TOUPPER ${name} up)
  target_compile_definitions(${name} PRIVATE ${up}_BUILD INTERFACE NOMINMAX)
  velkin_code_options(${name})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:include>)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_options(${name} INTERFACE -static)
  target_link_libraries(${name} PUBLIC ${P_LIBS})
endfunction()

# A program next to the packages, so it finds them when it runs.
function(velkin_program name)
  cmake_parse_arguments(P "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${P_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VELKIN_OUTPUT_DIR})
  velkin_code_options(${name})
  target_compile_definitions(${name} PRIVATE NOMINMAX)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${P_LIBS})
endfunction()

# Adds every direct or nested subdirectory of DIR that has its own CMakeLists.txt.
function(velkin_add_subdirs dir)
  file(GLOB_RECURSE lists CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*/CMakeLists.txt)
  list(SORT lists)
  foreach(l IN LISTS lists)
    get_filename_component(d ${l} DIRECTORY)
    add_subdirectory(${d})
  endforeach()
endfunction()

# velkin_forms(TARGET FORMS files...): the forms of the tree's own modules,
# compiled as a program using the SDK compiles its own (velkin_add_forms).
include(${CMAKE_CURRENT_LIST_DIR}/VelkinForms.cmake)
function(velkin_forms target)
  velkin_add_forms(${target} ${ARGN})
endfunction()

# velkin_utf8_manifest(TARGET): a program of the tree whose code page is UTF-8,
# made as a program using the SDK makes one.
include(${CMAKE_CURRENT_LIST_DIR}/VelkinManifest.cmake)
