#!/usr/bin/env bash
# Installs what is missing, builds, and starts the application against the bundled
# device emulator. Without a display it runs under Xvfb and saves a screenshot.
#   run-demo.sh [--host ADDR] [--port N] [--display D] [--model ORXM100|ORXM200] [--seconds N] [--chinese]
#   --host, --port  where the emulator listens (default 127.0.0.1:8000; files on port
#                   6666 of the same address, so a second demo needs another loopback
#                   address, e.g. --host 127.0.0.2); --port 0 takes any free port
#   --display D     the X display to use: the application is shown there when an X
#                   server answers, otherwise Xvfb is started on D for a headless run
#                   (default: $DISPLAY, or Xvfb on the first free display from :90)
#   --seconds N     how long to run headless; --chinese starts in the Chinese interface
# The demo keeps its own config.ini, project.db and log/ in build/demo: the ones in
# build/bin are left alone.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
host=127.0.0.1
port=
display=${DISPLAY:-}
model=ORXM200
seconds=8
language=1
while [ $# -gt 0 ]; do
    case "$1" in
        --host) host=$2; shift 2 ;;
        --port) port=$2; shift 2 ;;
        --display) display=$2; shift 2 ;;
        --model) model=$2; shift 2 ;;
        --seconds) seconds=$2; shift 2 ;;
        --chinese) language=0; shift ;;
        *) echo "unknown option $1 (see the top of $0)" >&2; exit 2 ;;
    esac
done

"$root/scripts/install-deps.sh" demo
"$root/scripts/build.sh"

pids=()
names=()
started() { pids+=("$1"); names+=("$2 (pid $1)"); }
cleanup() { for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done; }
trap cleanup EXIT

# The emulator; 8000 unless told otherwise, or any free port when 8000 is taken.
out=$(mktemp)
start_emulator() {
    "$build/bin/orvex-sim" --host "$host" --port "$1" --model "$model" >"$out" 2>&1 &
    sim=$!
    for _ in $(seq 50); do
        grep -q "listening on" "$out" && return 0
        kill -0 "$sim" 2>/dev/null || return 1
        sleep 0.1
    done
    return 1
}
if ! start_emulator "${port:-8000}"; then
    if [ -n "$port" ] || grep -q "6666" "$out"; then
        cat "$out" >&2
        echo "The emulator could not start: choose another --port, or another --host such as 127.0.0.2." >&2
        exit 1
    fi
    echo "Port 8000 on $host is taken; the emulator takes a free port instead."
    start_emulator 0 || { cat "$out" >&2; echo "The emulator could not start: choose another --host such as 127.0.0.2." >&2; exit 1; }
fi
started "$sim" orvex-sim
cat "$out"
port=$(sed -n "s/^listening on [^,]*:\([0-9]*\),.*/\1/p" "$out")

# A folder of the demo's own: the application keeps its files beside itself, so
# it runs as a hard link (or copy) there, and build/bin/config.ini stays as it is.
demo="$build/demo"
mkdir -p "$demo"
ln -f "$build/bin/OrvexControl" "$demo/OrvexControl" 2>/dev/null || cp -f "$build/bin/OrvexControl" "$demo/OrvexControl"
cat >"$demo/config.ini" <<INI
[NetWork]
Ip=$host
Port=$port
[Language]
language=$language
INI
echo "demo files (config.ini, project.db, log/) in $demo"
cd "$demo"

if [ -n "$display" ] && xdpyinfo -display "$display" >/dev/null 2>&1; then
    echo "Showing the application on $display; log in as ADMIN with the password tulip908."
    echo "Closing its window, or Ctrl+C here, stops it and the emulator (pid $sim)."
    echo "Should this script be killed, stop the emulator with: kill $sim"
    DISPLAY=$display ./OrvexControl
    exit 0
fi

if [ -z "$display" ]; then
    for n in $(seq 90 199); do
        [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ] || { display=:$n; break; }
    done
fi
Xvfb "$display" -screen 0 1440x900x24 -nolisten tcp >/dev/null 2>&1 &
started $! "Xvfb $display"
export DISPLAY=$display
for _ in $(seq 50); do xdpyinfo >/dev/null 2>&1 && break; sleep 0.1; done
xdpyinfo >/dev/null 2>&1 || { echo "Xvfb did not start on $display: choose another --display" >&2; exit 1; }
xcompmgr >/dev/null 2>&1 &
started $! xcompmgr
./OrvexControl &
app=$!
started "$app" OrvexControl
echo "Started ${names[*]}."
echo "They stop by themselves after the screenshots; Ctrl+C stops them now."
echo "Should this script be killed, stop them with: kill ${pids[*]}"
sleep 3
shot="$root/shot-login.png"
import -window root "$shot"
echo "screenshot of the login dialog: $shot"
# Log in as the seeded administrator, as an operator would.
if command -v xdotool >/dev/null; then
    xdotool type --delay 20 tulip908
    xdotool key Return
fi
sleep "$seconds"
shot="$root/shot.png"
import -window root "$shot"
echo "screenshot of the running application: $shot"
