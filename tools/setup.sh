#!/usr/bin/env bash
# Installs what building and testing need, when it is missing. Safe to run again.
set -eu
pkgs="g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
      wine64 xvfb cmake ninja-build googletest make doxygen"
missing=""
for p in $pkgs; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0
echo "setup: installing$missing"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo=sudo
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq $missing >/dev/null
