#!/usr/bin/env bash
# Checks Velkin as another project sees it. Run from CTest with the build tree:
#   check-sdk.sh install    BUILD   install the built tree to BUILD/sdk/prefix (fresh) and check its entries
#   check-sdk.sh examples   BUILD   build examples/ against that prefix with its own toolchain file, as the
#                                   README says, into BUILD/sdk/examples; run the consumer
#   check-sdk.sh forms      BUILD   a form with mistakes stops a build against the prefix, each at its line
#   check-sdk.sh manifest   BUILD   velkin_utf8_manifest refuses a DLL and a program with a manifest of its own
#   check-sdk.sh package    BUILD   make the SDK ZIP with CPack and check its entries against the install's
#   check-sdk.sh subproject BUILD   build examples/subproject (the checkout added with add_subdirectory) into
#                                   BUILD/sdk/subproject and run it
#   check-sdk.sh cli        BUILD   the gallery's and winerun's answers to bad arguments
set -eu
mode=$1
build=$(cd "$2" && pwd)
src=$(cd "$(dirname "$0")/.." && pwd)
prefix=$build/sdk/prefix
run="$src/tools/winerun --state $build/wine"
scratch=$(mktemp -d "${TMPDIR:-/tmp}/velkin-sdk.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
# Programs a build against the SDK runs (the form compiler) use the build
# tree's prefix instead of making one of their own.
export VELKIN_WINE_STATE=$build/wine

fail() { echo "FAIL: $*" >&2; exit 1; }

# Entries every SDK must have, relative to its root.
required=(
  bin/ostrel.dll bin/vcl.dll bin/pellum.dll bin/velkin.dll bin/formc.exe
  lib/libostrel.dll.a lib/libvcl.dll.a lib/libpellum.dll.a lib/libvelkin.dll.a
  lib/cmake/Velkin/VelkinConfig.cmake lib/cmake/Velkin/VelkinConfigVersion.cmake lib/cmake/Velkin/VelkinTargets.cmake
  lib/cmake/Velkin/VelkinForms.cmake lib/cmake/Velkin/VelkinManifest.cmake
  include/platform/ostrel/owned_handle.h include/platform/vcl/graphics/graphics.h include/platform/pellum/units.h
  include/velkin/velkin_api.h include/velkin/gdi/gdi_font.h include/velkin/draw/tc_draw.h include/velkin/sync/brannock.h
  cmake/mingw-w64-x86_64.cmake tools/winerun docs/classes.md
  examples/CMakeLists.txt examples/hello/hello.cpp examples/designed_form/name_form.form
  examples/contacts/contacts.form examples/consumer/consumer.cpp
  README.md LICENSE
)
# Entries no SDK may have: private headers, tests, and sources outside the examples.
forbidden='(_impl\.h|_test[^/]*|fixture[^/]*|\.rc)$|^(bin|lib|include)/.*\.cpp$|^examples/(gallery|subproject)/'

check_layout() {  # $1: listing of relative paths, one a line
  for f in "${required[@]}"; do grep -qx "$f" <<<"$1" || fail "missing from the SDK: $f"; done
  if bad=$(grep -E "$forbidden" <<<"$1"); then fail "must not be in the SDK: $bad"; fi
  # The pictures the README shows are beside it.
  for p in $(grep -o '](docs/[^)]*\.png)' "$src/README.md" | sed 's/^](//; s/)$//'); do
    grep -qx "$p" <<<"$1" || fail "the README shows $p, which is not in the SDK"
  done
  echo "layout ok: $(wc -l <<<"$1") files"
}

run_consumer() {  # $1: the consumer's folder with consumer.exe and the DLLs
  out=$($run "$1/consumer.exe") || { echo "$out"; fail "consumer exited with an error"; }
  echo "$out"
  grep -q "consumer: all checks passed" <<<"$out" || fail "consumer did not pass its checks"
}

# Configures and builds the project in $1 into $2 against the installed SDK
# with the README's commands: nothing of the build tree on the search path.
build_against_sdk() {
  cmake -S "$1" -B "$2" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$prefix/cmake/mingw-w64-x86_64.cmake" \
    -DCMAKE_PREFIX_PATH="$prefix" >"$2.configure.log" 2>&1 ||
    { cat "$2.configure.log"; return 1; }
  cmake --build "$2"
}

case $mode in
  install)
    rm -rf "$prefix"
    cmake --install "$build" --prefix "$prefix" >/dev/null
    check_layout "$(cd "$prefix" && find . -type f | sed 's|^\./||' | sort)"
    ;;
  examples)
    [ -f "$prefix/lib/cmake/Velkin/VelkinConfig.cmake" ] || fail "no SDK in $prefix (check-sdk.sh install first)"
    rm -rf "$build/sdk/examples"
    build_against_sdk "$prefix/examples" "$build/sdk/examples" >"$scratch/build.log" 2>&1 ||
      { cat "$scratch/build.log"; fail "the examples do not build against the SDK"; }
    grep -q "Compiling form .*contacts.form" "$scratch/build.log" || fail "no form was compiled: $(cat "$scratch/build.log")"
    for exe in hello/hello.exe designed_form/designed_form.exe contacts/contacts.exe consumer/consumer.exe; do
      [ -f "$build/sdk/examples/$exe" ] || fail "not built: $exe"
      [ -f "$(dirname "$build/sdk/examples/$exe")/velkin.dll" ] || fail "no DLLs beside $exe"
    done
    echo "examples built: hello, designed_form, contacts, consumer"
    # The README's first screen is examples/hello/hello.cpp, below its comment.
    diff <(sed -n '/^```cpp$/,/^```$/p' "$src/README.md" | sed '1d; /^```$/,$d') \
      <(sed '1,/^[^/]/{/^\/\//d}' "$src/examples/hello/hello.cpp") >"$scratch/readme.diff" ||
      fail "the README's first code is not examples/hello/hello.cpp: $(cat "$scratch/readme.diff")"
    run_consumer "$build/sdk/examples/consumer"
    ;;
  forms)
    [ -f "$prefix/lib/cmake/Velkin/VelkinConfig.cmake" ] || fail "no SDK in $prefix (check-sdk.sh install first)"
    mkdir -p "$scratch/bad"
    cp "$prefix/examples/designed_form/"* "$scratch/bad/"
    sed -i 's/^  BorderStyle = bsDialog/  BorderStyle = bsDialgo/; s/^    Caption = .OK./    Captoin = '\''OK'\''/' \
      "$scratch/bad/name_form.form"
    if build_against_sdk "$scratch/bad" "$scratch/bad-build" >"$scratch/build.log" 2>&1; then
      fail "a form with mistakes built: $(cat "$scratch/build.log")"
    fi
    form=$scratch/bad/name_form.form
    at() { grep -n "$1" "$form" | cut -d: -f1; }
    for want in "$form:$(at bsDialgo): bsDialgo is not a TFormBorderStyle" "$form:$(at Captoin): TButton has no property Captoin"; do
      grep -qF "$want" "$scratch/build.log" || fail "the build did not say \"$want\": $(cat "$scratch/build.log")"
      echo "ok: $want"
    done
    ;;
  manifest)
    [ -f "$prefix/lib/cmake/Velkin/VelkinConfig.cmake" ] || fail "no SDK in $prefix (check-sdk.sh install first)"
    # (Where it goes, the consumer built by "examples" checks its code page.)
    mkdir -p "$scratch/m"
    cat >"$scratch/m/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(Manifests LANGUAGES CXX RC)
find_package(Velkin 1.0 CONFIG REQUIRED)
if(CASE STREQUAL "dll")
  add_library(plugin SHARED main.cpp)
  velkin_utf8_manifest(plugin)
else()
  add_executable(own main.cpp own.rc)
  velkin_utf8_manifest(own)
endif()
END
    echo 'int main() { return 0; }' >"$scratch/m/main.cpp"
    printf '// its own\n1 24 "own.manifest"\n' >"$scratch/m/own.rc"
    for case in dll own; do
      want="the code page is a program's setting; plugin is a SHARED_LIBRARY"
      [ $case = own ] && want="$scratch/m/own.rc: own has a manifest of its own besides velkin_utf8_manifest's"
      if cmake -S "$scratch/m" -B "$scratch/m-$case" -G Ninja -DCASE=$case \
        -DCMAKE_TOOLCHAIN_FILE="$prefix/cmake/mingw-w64-x86_64.cmake" -DCMAKE_PREFIX_PATH="$prefix" \
        >"$scratch/$case.log" 2>&1; then
        fail "velkin_utf8_manifest took a $case: $(cat "$scratch/$case.log")"
      fi
      # CMake folds long messages: compared without the line breaks.
      tr -s ' \n' ' ' <"$scratch/$case.log" | grep -qF "$want" ||
        fail "configuring a $case did not say \"$want\": $(cat "$scratch/$case.log")"
      echo "ok: $want"
    done
    ;;
  package)
    [ -f "$build/docs/html/index.html" ] || fail "no API reference in $build/docs/html (make docs first)"
    (cd "$build" && cpack -C RelWithDebInfo -B "$scratch/package" >/dev/null)
    zip=$(ls "$scratch"/package/Velkin-*-win64.zip) || fail "no Velkin-<version>-win64.zip written"
    top=$(basename "$zip" .zip)
    echo "written: $(basename "$zip")"
    entries=$(python3 -c 'import sys, zipfile; print("\n".join(n for n in zipfile.ZipFile(sys.argv[1]).namelist() if not n.endswith("/")))' "$zip" | sort)
    if outside=$(grep -v "^$top/" <<<"$entries"); then fail "entries outside $top/: $outside"; fi
    files=$(sed "s|^$top/||" <<<"$entries")
    # The wrapper the toolchain file runs programs with stays executable when unzipped.
    mode=$(python3 -c 'import sys, zipfile; print(oct(zipfile.ZipFile(sys.argv[1]).getinfo(sys.argv[2]).external_attr >> 16 & 0o777))' \
      "$zip" "$top/tools/winerun")
    [ "$mode" = 0o755 ] || fail "tools/winerun is stored with mode $mode, not 0o755"
    required+=(docs/api/index.html)
    check_layout "$files"
    # The archive holds what an install of the same build holds, and the API reference.
    cmake --install "$build" --prefix "$scratch/install" >/dev/null
    installed=$(cd "$scratch/install" && find . -type f | sed 's|^\./||' | sort)
    if differ=$(diff <(grep -v '^docs/api/' <<<"$files") <(grep -v '^docs/api/' <<<"$installed")); then :; else
      fail "the archive and an install differ: $differ"
    fi
    echo "archive: every entry under $top/, the same files as an install"
    ;;
  subproject)
    # Kept between runs, so that a second run builds only what changed. No
    # build type: what is checked is the project's part in another, and the
    # library compiles fastest unoptimised.
    sub=$build/sdk/subproject
    cmake -S "$src/examples/subproject" -B "$sub" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$src/cmake/mingw-w64-x86_64.cmake" \
      -DVELKIN_CHECKOUT="$src" >/dev/null
    grep -q "VELKIN_TESTS:BOOL=OFF" "$sub/CMakeCache.txt" || fail "tests are on in a subproject"
    cmake --build "$sub" >/dev/null
    [ ! -e "$sub/velkin/tests" ] || fail "the subproject built Velkin's tests"
    run_consumer "$sub/bin"
    ;;
  cli)
    bin=$build/bin
    cd "$scratch"  # not bin/: Wine would find the DLLs in the current folder
    expect() {  # $1 expected status, $2 text the output must contain, then the command
      want=$1 text=$2; shift 2
      set +e; out=$("$@" 2>&1); got=$?; set -e
      [ "$got" = "$want" ] || fail "$* exited $got, expected $want: $out"
      grep -qF -- "$text" <<<"$out" || fail "$* did not say \"$text\": $out"
      echo "ok: $* -> $got"
    }
    expect 0 "usage: gallery" $run "$bin/gallery.exe" --help
    expect 2 "gallery: unknown option --colour" $run "$bin/gallery.exe" --colour
    expect 2 "gallery: missing folder after --out" $run "$bin/gallery.exe" --out
    expect 0 "usage: winerun" "$src/tools/winerun" --help
    expect 2 "usage: winerun" "$src/tools/winerun"
    expect 2 "winerun: unknown option --frobnicate" "$src/tools/winerun" --frobnicate
    # A program whose DLL is missing: a copy of the consumer-less gallery without vcl.dll beside it.
    mkdir -p "$scratch/nodll"
    cp "$bin/gallery.exe" "$bin/ostrel.dll" "$scratch/nodll/"
    expect 53 "missing DLL vcl.dll" $run "$scratch/nodll/gallery.exe" --help
    # A folder that cannot be written: the path is named and no summary printed.
    set +e; out=$($run "$bin/gallery.exe" --out 'Z:\no\such\dir' 2>&1); got=$?; set -e
    [ "$got" = 1 ] || fail "gallery with an unwritable folder exited $got: $out"
    grep -qF 'gallery: cannot write Z:\no\such\dir\' <<<"$out" || fail "gallery did not name the path: $out"
    ! grep -q "pictures in .* ms; output folder" <<<"$out" || fail "gallery printed a success summary: $out"
    echo "ok: gallery --out <unwritable> -> 1, path named"
    ;;
  *) echo "usage: check-sdk.sh install|examples|forms|manifest|package|subproject|cli BUILD" >&2; exit 2 ;;
esac
