# GoogleTest built from Debian's source package with the cross compiler.
set(gtest_src /usr/src/googletest/googletest)
if(NOT EXISTS ${gtest_src}/src/gtest-all.cc)
  message(FATAL_ERROR "GoogleTest sources not found in ${gtest_src}: run tools/setup.sh")
endif()
add_library(gtest STATIC ${gtest_src}/src/gtest-all.cc)
target_include_directories(gtest SYSTEM PUBLIC ${gtest_src}/include PRIVATE ${gtest_src})
add_library(gtest_main STATIC ${gtest_src}/src/gtest_main.cc)
target_link_libraries(gtest_main PUBLIC gtest)

# Test code keeps the line tables (a backtrace names file and line) but not
# the rest of the debug information: a third of each test's compile, and
# objects a quarter the size to link.
function(velkin_test_debug_info target)
  target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-g1>)
endfunction()
velkin_test_debug_info(gtest)
velkin_test_debug_info(gtest_main)

include(GoogleTest)

# Every test program reads GoogleTest's, the system's and the standard
# library's headers from one precompiled header: a second of each test's
# compile otherwise. Made with the flags the test programs have.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/velkin_test_pch.cpp CONTENT "")
add_library(velkin_test_pch OBJECT ${PROJECT_BINARY_DIR}/velkin_test_pch.cpp)
velkin_code_options(velkin_test_pch)
velkin_test_debug_info(velkin_test_pch)
target_compile_definitions(velkin_test_pch PRIVATE NOMINMAX)
target_link_libraries(velkin_test_pch PRIVATE gtest)
target_precompile_headers(velkin_test_pch PRIVATE <algorithm> <functional> <map> <memory> <string> <vector>
                          <gtest/gtest.h> <windows.h>)

# velkin_test(NAME SOURCES... [LIBS ...] [NO_MAIN] [SERIAL]): one test program in
# bin/, each test case registered with CTest; cases are listed at test time,
# under Wine. SERIAL: its cases run alone, for programs that send real keyboard
# and mouse input (it goes to whichever window is in front, maybe another
# test's).
function(velkin_test name)
  cmake_parse_arguments(P "NO_MAIN;SERIAL" "" "SOURCES;LIBS" ${ARGN})
  velkin_program(${name} SOURCES ${P_SOURCES} LIBS ${P_LIBS} gtest)
  target_precompile_headers(${name} REUSE_FROM velkin_test_pch)
  velkin_test_debug_info(${name})
  if(NOT P_NO_MAIN)
    target_link_libraries(${name} PRIVATE gtest_main)
  endif()
  set(serial FALSE)
  if(P_SERIAL)
    set(serial TRUE)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120
                       WORKING_DIRECTORY ${VELKIN_OUTPUT_DIR} PROPERTIES TIMEOUT 120 RUN_SERIAL ${serial})
endfunction()

# One test program per *_test.cpp in the calling directory, named PREFIX_<file>;
# a broken test file then stops only its own program from building. SERIAL
# names the files (without .cpp) whose programs run alone (see velkin_test).
function(velkin_tests_per_file prefix)
  cmake_parse_arguments(P "" "" "LIBS;SERIAL" ${ARGN})
  file(GLOB tests CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp)
  foreach(t IN LISTS tests)
    get_filename_component(n ${t} NAME_WE)
    set(serial "")
    if(n IN_LIST P_SERIAL)
      set(serial SERIAL)
    endif()
    velkin_test(${prefix}_${n} SOURCES ${t} LIBS ${P_LIBS} ${serial})
  endforeach()
endfunction()

# velkin_utf8_test(NAME SOURCES... [LIBS ...] CASES filters... [ENVIRONMENT vars...] [SERIAL]):
# test sources built again as a program whose ANSI code page its manifest
# makes UTF-8 (velkin_utf8_manifest); each filter's cases run as the test
# <filter>.Utf8. The program fails at once where the manifest did not take.
function(velkin_utf8_test name)
  cmake_parse_arguments(P "SERIAL" "" "SOURCES;LIBS;CASES;ENVIRONMENT" ${ARGN})
  velkin_program(${name} SOURCES ${P_SOURCES} ${PROJECT_SOURCE_DIR}/tests/utf8_code_page.cpp
                 LIBS ${P_LIBS} gtest gtest_main)
  target_precompile_headers(${name} REUSE_FROM velkin_test_pch)
  velkin_test_debug_info(${name})
  velkin_utf8_manifest(${name})
  set(serial FALSE)
  if(P_SERIAL)
    set(serial TRUE)
  endif()
  foreach(filter IN LISTS P_CASES)
    add_test(NAME ${filter}.Utf8 COMMAND ${name} --gtest_filter=${filter} WORKING_DIRECTORY ${VELKIN_OUTPUT_DIR})
    # A filter that names no case would pass having run nothing.
    set_tests_properties(${filter}.Utf8 PROPERTIES ENVIRONMENT "${P_ENVIRONMENT}" TIMEOUT 120 RUN_SERIAL ${serial}
                                                   FAIL_REGULAR_EXPRESSION "Running 0 tests")
  endforeach()
endfunction()

# velkin_language_tests(PROGRAM target FILTER cases NAME base LOCALES env... [SERIAL]):
# the cases run once more under each locale, as the test <base>.<locale>:
# Wine takes a process's code page and UI language from LC_ALL. A locale
# written ru_RU:en gives the test's thread English over that locale's code
# page (VELKIN_TEST_LANGUAGE, read by tests/velkin/resources/string_texts.h),
# as the test <base>.ru_RU.en.
function(velkin_language_tests)
  cmake_parse_arguments(P "SERIAL" "PROGRAM;FILTER;NAME" "LOCALES" ${ARGN})
  set(serial FALSE)
  if(P_SERIAL)
    set(serial TRUE)
  endif()
  foreach(env IN LISTS P_LOCALES)
    string(REPLACE ":" ";" parts ${env})
    list(GET parts 0 locale)
    set(name ${P_NAME}.${locale})
    set(vars LC_ALL=${locale}.UTF-8)
    list(LENGTH parts n)
    if(n GREATER 1)
      list(GET parts 1 language)
      set(name ${name}.${language})
      list(APPEND vars VELKIN_TEST_LANGUAGE=${language})
    endif()
    add_test(NAME ${name} COMMAND ${P_PROGRAM} --gtest_filter=${P_FILTER} WORKING_DIRECTORY ${VELKIN_OUTPUT_DIR})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${vars}" TIMEOUT 120 RUN_SERIAL ${serial})
  endforeach()
endfunction()
