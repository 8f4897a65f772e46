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
modules=("$dir"/*.dll "$dir"/*.exe)
for f in "$dir"/*.dll; do
  name=$(basename "$f" | tr 'A-Z' 'a-z')
  case $name in lib*.dll) ;; *) own="$own $name" ;; esac
done
if [ ${#modules[@]} -eq 0 ]; then
  echo "check-imports: no .dll or .exe in $dir" >&2
  exit 2
fi

# One objdump for every module (one a module costs a process each): its
# output names each file ("NAME:     file format ...") before the file's
# imports; a file it cannot read is named on stderr.
err=$(mktemp)
trap 'rm -f "$err"' EXIT
"$objdump" -p "${modules[@]}" 2>"$err" | awk -v allowed="$system $own" -v total=${#modules[@]} -v errfile="$err" '
  BEGIN {
    n = split(allowed, list, /[ \n\t]+/)
    for (i = 1; i <= n; ++i) ok[list[i]] = 1
  }
  / file format / { module = $1; sub(/:$/, "", module); sub(/.*\//, "", module); ++read; next }
  /^[ \t]*DLL Name:/ {
    dll = tolower($3)
    if (dll ~ /^(api|ext)-ms-win-.*\.dll$/ || dll in ok) next
    print module ": imports " $3 " (neither a Windows system DLL nor one of ours)"
    ++bad
  }
  END {
    # objdump has ended once its output has: what it said on stderr is all there.
    while ((getline line < errfile) > 0) {
      print "unreadable: " line
      ++bad; ++unreadable
    }
    if (bad) { print "check-imports: " bad " bad import(s) or unreadable module(s)"; exit 1 }
    if (read + unreadable != total) { print "check-imports: read " read " of " total " modules"; exit 1 }
    print "check-imports: " read " modules import only system DLLs and our own"
  }'
