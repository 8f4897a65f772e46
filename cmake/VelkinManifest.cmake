# velkin_utf8_manifest(TARGET): gives the program TARGET the application
# manifest that makes its ANSI code page UTF-8 (activeCodePage), so that the
# 8-bit texts it hands to the library, and gets back from it, are UTF-8. The
# manifest also asks to run as the invoker and names Windows 10 and 11 as
# supported, as a toolchain's default manifest does; it declares no DPI
# awareness and no common-controls version, as Velkin's programs have none.
#
# A program has one manifest (resource 1 of type 24). The toolchain's default
# one, where it links one, is language neutral, and the linker drops it for
# this one, which is English. A manifest of the target's own in one of its .rc
# files stops the configuration, naming the file: the linker would keep one of
# the two, or fail to merge the resources at all. This file serves the source
# tree and the installed package alike.
function(velkin_utf8_manifest target)
  if(NOT TARGET ${target})
    message(FATAL_ERROR "velkin_utf8_manifest(${target}): no such target")
  endif()
  get_target_property(type ${target} TYPE)
  if(NOT type STREQUAL "EXECUTABLE")
    message(FATAL_ERROR "velkin_utf8_manifest(${target}): the code page is a program's setting; "
                        "${target} is a ${type}")
  endif()
  get_property(languages GLOBAL PROPERTY ENABLED_LANGUAGES)
  if(NOT RC IN_LIST languages)
    message(FATAL_ERROR "velkin_utf8_manifest(${target}): the manifest goes into resources; enable the RC language "
                        "(project(... LANGUAGES CXX RC))")
  endif()
  get_target_property(done ${target} VELKIN_UTF8_MANIFEST)
  if(done)
    return()
  endif()
  set_target_properties(${target} PROPERTIES VELKIN_UTF8_MANIFEST TRUE)

  set(manifest ${CMAKE_CURRENT_BINARY_DIR}/${target}_utf8.manifest)
  file(CONFIGURE OUTPUT ${manifest} CONTENT [=[
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly manifestVersion="1.0" xmlns="urn:schemas-microsoft-com:asm.v1">
  <trustInfo xmlns="urn:schemas-microsoft-com:asm.v3">
    <security>
      <requestedPrivileges>
        <requestedExecutionLevel level="asInvoker" uiAccess="false"/>
      </requestedPrivileges>
    </security>
  </trustInfo>
  <compatibility xmlns="urn:schemas-microsoft-com:compatibility.v1">
    <application>
      <supportedOS Id="{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"/>
    </application>
  </compatibility>
  <application xmlns="urn:schemas-microsoft-com:asm.v3">
    <windowsSettings>
      <activeCodePage xmlns="http://schemas.microsoft.com/SMI/2019/WindowsSettings">UTF-8</activeCodePage>
    </windowsSettings>
  </application>
</assembly>
]=])
  set(rc ${CMAKE_CURRENT_BINARY_DIR}/${target}_utf8_manifest.rc)
  # English, not neutral: see above.
  file(CONFIGURE OUTPUT ${rc} CONTENT "LANGUAGE 0x09, 0x01\n1 24 \"${manifest}\"\n")
  set_source_files_properties(${rc} PROPERTIES OBJECT_DEPENDS ${manifest})
  target_sources(${target} PRIVATE ${rc})
  # The target's own resource files are read once all of its sources are known.
  # (A deferred call reads its arguments when it runs: the values go in now.)
  cmake_language(EVAL CODE "cmake_language(DEFER CALL _velkin_utf8_manifest_check [[${target}]] [[${rc}]])")
endfunction()

function(_velkin_utf8_manifest_check target ours)
  get_target_property(sources ${target} SOURCES)
  get_target_property(dir ${target} SOURCE_DIR)
  foreach(source IN LISTS sources)
    if(NOT source MATCHES "\\.rc$" OR source STREQUAL ours)
      continue()
    endif()
    get_filename_component(path ${source} ABSOLUTE BASE_DIR ${dir})
    if(NOT EXISTS ${path})
      continue()  # made by the build: the forms' resources
    endif()
    file(STRINGS ${path} lines REGEX "^[ \t]*(1|CREATEPROCESS_MANIFEST_RESOURCE_ID)[ \t]+(24|RT_MANIFEST)([ \t]|$)")
    if(lines)
      message(FATAL_ERROR "${path}: ${target} has a manifest of its own besides velkin_utf8_manifest's; "
                          "drop it, or drop the call and add <activeCodePage>UTF-8</activeCodePage> to yours")
    endif()
  endforeach()
endfunction()
