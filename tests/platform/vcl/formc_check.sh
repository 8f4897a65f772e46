#!/usr/bin/env bash
# The form compiler on good and bad descriptions: exit codes, the output
# written only on success, each problem as "file:line: message"; the stream
# the same whatever the code page it runs in.
# Usage: formc_check.sh WINERUN STATE FORMC GOOD_FORM
set -u
winerun=$1 state=$2 formc=$3 good=$4
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
fail() { echo "FAIL: $*"; exit 1; }
cd "$dir"  # paths as a build passes them: Unix paths, read from a folder Wine maps to a drive

"$winerun" --state "$state" "$formc" "$good" "$dir/good.bin" || fail "good form: exit $?"
[ "$(head -c 4 "$dir/good.bin")" = "TPF0" ] || fail "good form: no stream signature"

# $1: the case's name, $2: the form text, $3...: lines the errors must be, in order.
expect_errors() {
  local name=$1 text=$2
  shift 2
  printf '%b' "$text" >"$dir/$name.form"
  echo stale >"$dir/$name.bin"
  err=$("$winerun" --state "$state" "$formc" "$dir/$name.form" "$dir/$name.bin" 2>&1 >/dev/null)
  rc=$?
  [ $rc -eq 1 ] || fail "$name: exit $rc, expected 1"
  [ ! -e "$dir/$name.bin" ] || fail "$name: an output file was left"
  want=$(printf "$dir/$name.form:%s\n" "$@")
  [ "$(grep -v warning: <<<"$err")" = "$want" ] || fail "$name: said
$err
expected
$want"
  echo "ok: $name"
}

expect_errors syntax "object A: TA\r\n  Caption = 'open\r\nend\r\n" "2: unterminated string"
# A property a class does not have, a sub-object's, a value not among the
# enumeration's, a set member, a colour name and a reference to nothing, each
# named at its line; the root is the program's own form class, checked as a form.
expect_errors names "object MainForm: TMainForm
  Captoin = 'x'
  BorderStyle = bsDialgo
  object Ok: TButton
    Default = Ture
    Font.Sise = 8
    Font.Style = [fsBold, fsBlod]
    Items.Strings = (
      'Caption = 1')
  end
  object Name: TLabel
    Color = clRedd
    FocusControl = Nothing
  end
end
" "2: TMainForm has no property Captoin" \
  "3: bsDialgo is not a TFormBorderStyle: bsNone, bsSingle, bsSizeable, bsDialog, bsToolWindow, bsSizeToolWin" \
  "5: Ture is not a Boolean: False, True" "6: TButton has no property Font.Sise" \
  "7: fsBlod is not a TFontStyle: fsBold, fsItalic, fsUnderline, fsStrikeOut" "8: TButton has no property Items.Strings" \
  "12: clRedd is not a name of a TColor value" "13: no component named Nothing in this form"
expect_errors duplicate "object F: TF\n  object A: TEdit\n  end\n  object a: TMemo\n    Lines.Strings = (\n      'one')\n  end\nend\n" \
  "4: a component named a already exists in this form"

# The checks read a text that starts with a UTF-8 byte order mark as any other.
expect_errors bom "\xEF\xBB\xBFobject F: TF\n  Captoin = 'x'\nend\n" "2: TF has no property Captoin"

# A UTF-8 text compiles to the same stream whatever the code page formc runs
# in (Wine takes it from LC_ALL), its caption a UTF-8 value; so does a text an
# older version wrote in the Cyrillic code page, compiled there.
compile_in() {  # $1: locale, $2: form, $3: output
  local err
  err=$(LC_ALL=$1 "$winerun" --state "$state" "$formc" "$2" "$3" 2>&1) || fail "$2 under $1: $err"
}
caption='Заказ № 1, café, 日本'
printf "object F: TF\n  Caption = '%s'\nend\n" "$caption" >"$dir/utf8.form"
compile_in ru_RU.UTF-8 "$dir/utf8.form" "$dir/ru.bin"
compile_in fr_FR.UTF-8 "$dir/utf8.form" "$dir/fr.bin"
cmp -s "$dir/ru.bin" "$dir/fr.bin" || fail "a UTF-8 text compiles to different streams under 1251 and 1252"
hex() { od -An -tx1 -v | tr -d ' \n'; }
value=$(printf '\x07Caption\x14' | hex)$(printf '%02x000000' "$(printf '%s' "$caption" | wc -c)")$(printf '%s' "$caption" | hex)
hex <"$dir/ru.bin" | grep -q "$value" || fail "the caption is not a UTF-8 value"
printf "object F: TF\n  Caption = '%b'\nend\n" '\xC7\xE0\xEA\xE0\xE7 \xB9 1' >"$dir/cp1251.form"
printf "object F: TF\n  Caption = '%s'\nend\n" 'Заказ № 1' >"$dir/twin.form"
compile_in ru_RU.UTF-8 "$dir/cp1251.form" "$dir/cp1251.bin"
compile_in ru_RU.UTF-8 "$dir/twin.form" "$dir/twin.bin"
cmp -s "$dir/cp1251.bin" "$dir/twin.bin" || fail "a Cyrillic code page text compiled under 1251 is not its UTF-8 twin"
echo "ok: code pages"

# A class the framework does not know is left unchecked, with a warning.
printf 'object F: TF\n  object C: TCustomThing\n    Anything = 1\n  end\nend\n' >"$dir/custom.form"
err=$("$winerun" --state "$state" "$formc" "$dir/custom.form" "$dir/custom.bin" 2>&1 >/dev/null) || fail "custom: exit $?"
[ "$err" = "$dir/custom.form:2: warning: TCustomThing is not a class of the framework; its properties are not checked" ] ||
  fail "custom: said $err"
echo "formc: good and bad input as expected"
