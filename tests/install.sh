#!/usr/bin/env bash
# Installs the build into a temporary prefix: --help and --version answer without
# a display, and a copy its user cannot write to keeps its files in the user's
# data folder, starting from the config.ini found beside it.
# usage: install.sh BUILD_DIR VERSION
set -u
source "$(dirname "$0")/waitfor.sh"
tmp=$(mktemp -d)
app=
trap '[ -n "$app" ] && kill $app; wait; chmod -R u+w "$tmp"; rm -rf "$tmp"' EXIT
fail() { echo "FAIL: $*"; exit 1; }
prefix=$tmp/prefix
cmake --install "$1" --prefix "$prefix" >/dev/null || fail "cmake --install"
for file in share/applications/orvexcontrol.desktop share/icons/hicolor/256x256/apps/orvexcontrol.png; do
    [ -f "$prefix/$file" ] || fail "$file not installed"
done
for program in OrvexControl orvexctl orvex-sim; do
    out=$(env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb "$prefix/bin/$program" --version)
    [ $? = 0 ] && [ "$out" = "$program $2" ] || fail "$program --version printed '$out'"
done
env -u DISPLAY QT_QPA_PLATFORM=xcb "$prefix/bin/OrvexControl" --help | grep -q -- --version || fail "--help"

# Loopback, nobody listening: the start dials nothing real.
printf '[NetWork]\nIp=127.0.0.1\nPort=1\n' >"$prefix/bin/config.ini"
mkdir -m 700 "$tmp/home" "$tmp/work"
run=()
if [ "$(id -u)" = 0 ]; then  # root writes anywhere: run as nobody, as a user of a system-wide install
    command -v setpriv >/dev/null || { echo "SKIP: root without setpriv"; exit 77; }
    chmod 755 "$tmp" && chown 65534:65534 "$tmp/home" "$tmp/work"
    run=(setpriv --reuid=65534 --regid=65534 --clear-groups)
else
    chmod a-w "$prefix/bin"
fi
(cd "$tmp/work" && exec env HOME="$tmp/home" XDG_DATA_HOME="$tmp/home/data" XDG_RUNTIME_DIR="$tmp/home" \
    QT_QPA_PLATFORM=offscreen "${run[@]}" "$prefix/bin/OrvexControl" >/dev/null 2>&1) &
app=$!
data=$tmp/home/data/OrvexControl
# The store's header is its first write: wait for it, then look at the rest.
wait_for_bytes "$data/project.db" 16 30
[ -s "$data/project.db" ] && [ -d "$data/log" ] || fail "no project.db or log/ in $data"
grep -q "^Ip=127.0.0.1$" "$data/config.ini" || fail "config.ini not carried over"
[ ! -e "$tmp/work/log" ] || fail "log/ written to the working directory"
