#!/usr/bin/env bash
# The form compiler on a good and a bad description: exit codes, the output
# written only on success, the error naming the file and the line.
# Usage: formc_check.sh WINERUN STATE FORMC GOOD_FORM
set -u
winerun=$1 state=$2 formc=$3 good=$4
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
fail() { echo "FAIL: $*"; exit 1; }

"$winerun" --state "$state" "$formc" "Z:$good" "Z:$dir/good.bin" || fail "good form: exit $?"
[ "$(head -c 4 "$dir/good.bin")" = "TPF0" ] || fail "good form: no stream signature"

printf 'object A: TA\r\n  Caption = '\''open\r\nend\r\n' >"$dir/bad.form"
echo stale >"$dir/bad.bin"
err=$("$winerun" --state "$state" "$formc" "Z:$dir/bad.form" "Z:$dir/bad.bin" 2>&1 >/dev/null)
rc=$?
[ $rc -eq 1 ] || fail "bad form: exit $rc, expected 1"
case "$err" in *"bad.form: Line 2: unterminated string"*) ;; *) fail "bad form: message '$err'" ;; esac
[ ! -e "$dir/bad.bin" ] || fail "bad form: an output file was left"
echo "formc: good and bad input as expected"
