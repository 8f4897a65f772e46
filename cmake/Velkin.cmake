# Helpers shared by every package, test and benchmark.

# Flags for our own code: warnings on, every module linked statically so that it
# imports only Windows system DLLs and our own packages.
function(velkin_code_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  target_compile_definitions(${target} PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_options(${target} PRIVATE -static)
endfunction()

# A package DLL: velkin_package(NAME SOURCES... [LIBS ...]); NAME_BUILD is defined
# while its own sources compile (for the export macro).
function(velkin_package name)
  cmake_parse_arguments(P "" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} SHARED ${P_SOURCES})
  set_target_properties(${name} PROPERTIES PREFIX "" RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  string(TOUPPER ${name} up)
  target_compile_definitions(${name} PRIVATE ${up}_BUILD)
  velkin_code_options(${name})
  target_link_libraries(${name} PUBLIC ${P_LIBS})
endfunction()

# A program next to the packages in bin/, so it finds them when it runs.
function(velkin_program name)
  cmake_parse_arguments(P "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${P_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  velkin_code_options(${name})
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
