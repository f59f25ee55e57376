#!/usr/bin/env bash
# Installs the Debian packages that are missing for the given purpose.
#   install-deps.sh build   compiler, CMake, Qt 5 with SQLite and translation tools
#   install-deps.sh demo    build + X virtual framebuffer, screenshot tool, CJK font
set -euo pipefail

packages=(build-essential cmake qtbase5-dev qttools5-dev qttools5-dev-tools libqt5sql5-sqlite sqlite3 xvfb xauth xdotool)
if [ "${1:-build}" = demo ]; then
    packages+=(xvfb xauth x11-utils imagemagick fonts-wqy-microhei xcompmgr xdotool)
fi

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
