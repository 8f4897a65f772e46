#!/usr/bin/env bash
# check-imports.sh BIN_DIR
# Reads the import table of every .dll and .exe in BIN_DIR and fails, naming
# module and import, when one imports anything but a Windows system DLL or one
# of our own modules. Our modules are the four packages and any other DLL built
# into BIN_DIR (test fixtures), except toolchain runtimes (lib*.dll such as
# libstdc++-6.dll, libgcc_s_seh-1.dll, libwinpthread-1.dll), which every
# module links statically instead.
set -u

dir=${1:?usage: check-imports.sh BIN_DIR}
objdump=${OBJDUMP:-x86_64-w64-mingw32-objdump}
[ -d "$dir" ] || { echo "check-imports: no such folder: $dir" >&2; exit 2; }
command -v "$objdump" >/dev/null || { echo "check-imports: $objdump not found" >&2; exit 2; }

# Windows system DLLs a desktop library may import (lower case).
system="kernel32.dll user32.dll gdi32.dll advapi32.dll msvcrt.dll ole32.dll oleaut32.dll shell32.dll
  comctl32.dll comdlg32.dll windowscodecs.dll ws2_32.dll version.dll winmm.dll shlwapi.dll uxtheme.dll
  imm32.dll winspool.drv msimg32.dll ntdll.dll rpcrt4.dll secur32.dll crypt32.dll bcrypt.dll setupapi.dll
  psapi.dll dbghelp.dll dwmapi.dll gdiplus.dll opengl32.dll userenv.dll mpr.dll"
own="ostrel.dll vcl.dll pellum.dll velkin.dll"

shopt -s nullglob nocaseglob
for f in "$dir"/*.dll; do
  name=$(basename "$f" | tr 'A-Z' 'a-z')
  case $name in lib*.dll) ;; *) own="$own $name" ;; esac
done

allowed() {
  case $1 in api-ms-win-*.dll | ext-ms-win-*.dll) return 0 ;; esac
  for a in $system $own; do [ "$1" = "$a" ] && return 0; done
  return 1
}

checked=0
bad=0
for f in "$dir"/*.dll "$dir"/*.exe; do
  module=$(basename "$f")
  if ! table=$("$objdump" -p "$f" 2>&1); then
    echo "$module: cannot read the import table: $table"
    bad=$((bad + 1))
    continue
  fi
  checked=$((checked + 1))
  for dll in $(printf '%s\n' "$table" | awk '/^[ \t]*DLL Name:/ { print $3 }'); do
    lower=$(printf '%s' "$dll" | tr 'A-Z' 'a-z')
    if ! allowed "$lower"; then
      echo "$module: imports $dll (neither a Windows system DLL nor one of ours)"
      bad=$((bad + 1))
    fi
  done
done

if [ "$checked" -eq 0 ] && [ "$bad" -eq 0 ]; then
  echo "check-imports: no .dll or .exe in $dir" >&2
  exit 2
fi
if [ "$bad" -ne 0 ]; then
  echo "check-imports: $bad bad import(s) in $dir"
  exit 1
fi
echo "check-imports: $checked modules in $dir import only system DLLs and our own"
