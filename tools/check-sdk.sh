#!/usr/bin/env bash
# Checks Velkin as another project sees it. Run from CTest with the build tree:
#   check-sdk.sh install    BUILD   install to a fresh prefix, build and run examples/consumer against it
#   check-sdk.sh package    BUILD   make the SDK ZIP with CPack and check its entries
#   check-sdk.sh subproject BUILD   build examples/subproject (the checkout added with add_subdirectory) and run it
#   check-sdk.sh cli        BUILD   the gallery's and winerun's answers to bad arguments
set -eu
mode=$1
build=$(cd "$2" && pwd)
src=$(cd "$(dirname "$0")/.." && pwd)
toolchain=$src/cmake/mingw-w64-x86_64.cmake
run="$src/tools/winerun --state $build/wine"
scratch=$(mktemp -d "${TMPDIR:-/tmp}/velkin-sdk.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

fail() { echo "FAIL: $*" >&2; exit 1; }

# Entries every SDK must have, relative to its root.
required=(
  bin/ostrel.dll bin/vcl.dll bin/pellum.dll bin/velkin.dll
  lib/libostrel.dll.a lib/libvcl.dll.a lib/libpellum.dll.a lib/libvelkin.dll.a
  lib/cmake/Velkin/VelkinConfig.cmake lib/cmake/Velkin/VelkinConfigVersion.cmake lib/cmake/Velkin/VelkinTargets.cmake
  include/platform/ostrel/owned_handle.h include/platform/vcl/graphics/graphics.h include/platform/pellum/units.h
  include/velkin/velkin_api.h include/velkin/gdi/gdi_font.h include/velkin/draw/tc_draw.h include/velkin/sync/brannock.h
  README.md LICENSE
)
# Entries no SDK may have: private headers, sources, tests.
forbidden='(_impl\.h|\.cpp|_test|fixture|\.rc)$'

check_layout() {  # $1: listing of relative paths, one a line
  for f in "${required[@]}"; do grep -qx "$f" <<<"$1" || fail "missing from the SDK: $f"; done
  if bad=$(grep -E "$forbidden" <<<"$1"); then fail "must not be in the SDK: $bad"; fi
  echo "layout ok: $(wc -l <<<"$1") files"
}

run_consumer() {  # $1: the consumer's build folder with consumer.exe and the DLLs
  out=$($run "$1/consumer.exe") || { echo "$out"; fail "consumer exited with an error"; }
  echo "$out"
  grep -q "consumer: all checks passed" <<<"$out" || fail "consumer did not pass its checks"
}

case $mode in
  install)
    cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
    check_layout "$(cd "$scratch/prefix" && find . -type f | sed 's|^\./||' | sort)"
    # Against the prefix only: nothing of the build tree is on the search path.
    cmake -S "$src/examples/consumer" -B "$scratch/consumer" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
      -DCMAKE_PREFIX_PATH="$scratch/prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
    cmake --build "$scratch/consumer" >/dev/null
    run_consumer "$scratch/consumer"
    ;;
  package)
    (cd "$build" && cpack -C RelWithDebInfo -B "$scratch/package" >/dev/null)
    zip=$(ls "$scratch"/package/Velkin-*-win64.zip) || fail "no Velkin-<version>-win64.zip written"
    echo "written: $(basename "$zip")"
    check_layout "$(python3 -c 'import sys, zipfile; print("\n".join(n for n in zipfile.ZipFile(sys.argv[1]).namelist() if not n.endswith("/")))' "$zip" | sort)"
    ;;
  subproject)
    cmake -S "$src/examples/subproject" -B "$scratch/sub" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
      -DVELKIN_CHECKOUT="$src" -DCMAKE_BUILD_TYPE=Release >/dev/null
    grep -q "VELKIN_TESTS:BOOL=OFF" "$scratch/sub/CMakeCache.txt" || fail "tests are on in a subproject"
    cmake --build "$scratch/sub" >/dev/null
    [ ! -e "$scratch/sub/velkin/tests" ] || fail "the subproject built Velkin's tests"
    run_consumer "$scratch/sub/bin"
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
  *) echo "usage: check-sdk.sh install|package|subproject|cli BUILD" >&2; exit 2 ;;
esac
