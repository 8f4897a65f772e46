#!/usr/bin/env bash
# Builds the API reference from the headers an install puts in include/ and
# fails when a public class, an enumeration or a free function has no comment,
# or when a comment is malformed. Usage: docs.sh BUILD
set -eu
build=$(cd "$1" && pwd)
src=$(cd "$(dirname "$0")/.." && pwd)
out=$build/docs
rm -rf "$out" && mkdir -p "$out"
cmake --install "$build" --prefix "$out/sdk" >/dev/null
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
VELKIN_DOC_INPUT=$out/sdk/include VELKIN_DOC_OUTPUT=$out VELKIN_DOC_VERSION=$version doxygen "$src/docs/Doxyfile"
# Doxygen warns about every undocumented member; keep those for classes,
# enumerations and free functions, and every other kind of warning. Members of
# a class, aliases, constants and macros may go without.
grep -v -E "^\s*$|Member .* of (class|struct|union) .* is not documented|\((typedef|variable|macro definition|enumvalue)\) of .* is not documented" "$out/warnings.log" \
  | sed "s|$out/sdk/include/||" >"$out/problems.log" || true
if [ -s "$out/problems.log" ]; then
  cat "$out/problems.log"
  echo "docs: $(grep -c 'warning' "$out/problems.log") warnings" >&2
  exit 1
fi
echo "docs: $out/html/index.html (no warnings)"
