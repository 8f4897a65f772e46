#!/usr/bin/env bash
# check-layers.sh [SOURCE_ROOT]
# Folders are layers and an include may only point down. Reads every
# #include "platform/..." and "velkin/..." in the sources under platform/ and
# velkin/ and fails, naming file, line and both layers, when one points to a
# layer above its own or beside it, or to a folder the order below does not
# know (add a new folder to it on purpose). Tests, examples and benchmarks may
# include anything and are not read.
set -u

root=${1:-$(cd "$(dirname "$0")/.." && pwd)}
cd "$root" || { echo "check-layers: no such folder: $root" >&2; exit 2; }

# Lowest first; folders on one line are one layer and may not include each other.
order=(
  "platform/ostrel"
  "platform/vcl/core"      # object model, streaming, threads, packages
  "platform/vcl/graphics"
  "platform/vcl/controls"  # TControl, TWinControl and the window procedure
  "platform/vcl/forms"     # forms, their menus, the application
  "platform/vcl/stdctrls"  # the standard controls: a button sets its form's modal result
  "platform/vcl"           # files directly in platform/vcl: the prelude, unit table and class registrations
  "platform/pellum"
  "velkin"  # files directly in velkin/: the export macro
  "velkin/core"
  "velkin/gdi velkin/sync"
  "velkin/draw"
  "velkin/package"
  "velkin/controls"
  "velkin/dialogs"  # above controls: a question to the user saves and restores control state
)

checked=$(find platform velkin -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.rc' \) | wc -l)
# One pass: every include of ours as file:line:text, judged against the order.
# A path's layer is its folder under platform/ or velkin/ ("velkin" for files
# directly in velkin/), and under platform/vcl/ its folder there. Resource scripts belong to no layer: they may include
# what they compile in.
result=$(grep -rnE --include='*.h' --include='*.cpp' --include='*.rc' \
  '^[[:space:]]*#[[:space:]]*include[[:space:]]*"(platform|velkin)/' platform velkin |
  awk -v order="$(printf '%s\n' "${order[@]}")" '
    function layer(path, parts, n) {
      n = split(path, parts, "/")
      if (n > 3 && parts[1] == "platform" && parts[2] == "vcl") return parts[1] "/" parts[2] "/" parts[3]
      return n > 2 ? parts[1] "/" parts[2] : parts[1]
    }
    BEGIN {
      n = split(order, lines, "\n")
      for (i = 1; i <= n; ++i) {
        m = split(lines[i], folders, " ")
        for (j = 1; j <= m; ++j) rank[folders[j]] = i
      }
    }
    {
      file = $0; sub(/:.*/, "", file)
      rest = substr($0, length(file) + 2)
      line = rest; sub(/:.*/, "", line)
      target = rest; sub(/^[^"]*"/, "", target); sub(/".*/, "", target)
      from = layer(file); to = layer(target)
      if (!(to in rank)) {
        printf "%s:%s: includes %s from %s, a folder that is not in the layer order\n", file, line, target, to; ++bad
      } else if (!(from in rank)) {
        if (from == "velkin/resources") next
        printf "%s:%s: %s is not in the layer order (it includes %s)\n", file, line, from, target; ++bad
      } else if (from != to && rank[to] >= rank[from]) {
        printf "%s:%s: %s includes %s, from %s, a layer %s it\n", file, line, from, target, to,
               rank[to] == rank[from] ? "beside" : "above"; ++bad
      }
    }
    END { printf "%d\n", bad }')
bad=$(printf '%s\n' "$result" | tail -n 1)
printf '%s\n' "$result" | sed '$d'

if [ "$checked" -eq 0 ]; then
  echo "check-layers: no sources under $root/platform or $root/velkin" >&2
  exit 2
fi
if [ "$bad" -ne 0 ]; then
  echo "check-layers: $bad include(s) against the layer order"
  exit 1
fi
echo "check-layers: $checked files include only from the layers below them"
