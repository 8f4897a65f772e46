# velkin_add_forms(TARGET FORMS files...): compiles each text form description
# into TARGET's resources, as RCDATA named after the form's class (from the
# first line, "object Name: TClass"), where the class's ReadDesign finds it.
#
# The form compiler, Velkin::formc, checks the text against the framework's
# classes (properties, names of values, references to components; the root
# object as a TForm) and stops the build on a mistake with "file:line:
# message". Form texts are UTF-8: their strings read the same in a program of
# any code page, whatever the build machine's locale. It is a Windows
# program: when cross-compiling it runs through the toolchain's
# CMAKE_CROSSCOMPILING_EMULATOR, which Velkin's toolchain file sets to its
# Wine wrapper. This file serves the source tree and the installed package
# alike.
function(velkin_add_forms target)
  cmake_parse_arguments(P "" "" "FORMS" ${ARGN})
  if(NOT P_FORMS)
    message(FATAL_ERROR "velkin_add_forms(${target}): no FORMS given")
  endif()
  if(NOT TARGET Velkin::formc)
    message(FATAL_ERROR "velkin_add_forms(${target}): no form compiler (Velkin::formc); find_package(Velkin) first")
  endif()
  get_property(languages GLOBAL PROPERTY ENABLED_LANGUAGES)
  if(NOT RC IN_LIST languages)
    message(FATAL_ERROR "velkin_add_forms(${target}): forms go into resources; enable the RC language "
                        "(project(... LANGUAGES CXX RC))")
  endif()
  get_target_property(emulator Velkin::formc CROSSCOMPILING_EMULATOR)
  if(NOT emulator)
    set(emulator "")
    if(CMAKE_CROSSCOMPILING)
      message(FATAL_ERROR "velkin_add_forms(${target}): the form compiler is a Windows program and "
                          "CMAKE_CROSSCOMPILING_EMULATOR is not set; use Velkin's toolchain file")
    endif()
  endif()

  set(dir ${CMAKE_CURRENT_BINARY_DIR}/${target}_forms)
  set(lines "")
  set(bins "")
  set(classes "")
  foreach(f IN LISTS P_FORMS)
    get_filename_component(src ${f} ABSOLUTE)
    if(NOT EXISTS ${src})
      message(FATAL_ERROR "${src}: no such form text")
    endif()
    # The class names the resource: read again when the text changes.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${src})
    file(STRINGS ${src} first LIMIT_COUNT 1)
    if(first MATCHES "^(object|inherited|inline) +[A-Za-z_0-9]+ *: *([A-Za-z_][A-Za-z_0-9]*)")
      set(cls ${CMAKE_MATCH_2})
    elseif(first MATCHES "^(object|inherited|inline) +([A-Za-z_][A-Za-z_0-9]*) *$")
      set(cls ${CMAKE_MATCH_2})
    else()
      message(FATAL_ERROR "${src}:1: the first line is not \"object Name: TClass\"")
    endif()
    string(TOUPPER ${cls} key)
    if(key IN_LIST classes)
      message(FATAL_ERROR "${src}:1: a second form of class ${cls} in ${target}")
    endif()
    list(APPEND classes ${key})
    set(bin ${dir}/${cls}.bin)
    add_custom_command(
      OUTPUT ${bin}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${dir}
      COMMAND ${emulator} $<TARGET_FILE:Velkin::formc> ${src} ${bin}
      DEPENDS Velkin::formc ${src}
      COMMENT "Compiling form ${f}"
      VERBATIM)
    string(APPEND lines "${cls} RCDATA \"${bin}\"\n")
    list(APPEND bins ${bin})
  endforeach()
  set(rc ${dir}.rc)
  file(GENERATE OUTPUT ${rc} CONTENT "${lines}")
  set_source_files_properties(${rc} PROPERTIES OBJECT_DEPENDS "${bins}" GENERATED TRUE)
  target_sources(${target} PRIVATE ${rc})
endfunction()
