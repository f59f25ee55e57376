#!/usr/bin/env bash
# Installs what is missing, builds, and starts the application against the bundled
# device emulator. Without a display it runs under Xvfb and saves a screenshot.
#   run-demo.sh [--model ORXM100|ORXM200] [--seconds N] [--chinese]
#   (N: how long to run headless; --chinese starts in the Chinese interface)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
model=ORXM200
seconds=8
language=1
while [ $# -gt 0 ]; do
    case "$1" in
        --model) model=$2; shift 2 ;;
        --seconds) seconds=$2; shift 2 ;;
        --chinese) language=0; shift ;;
        *) echo "unknown option $1" >&2; exit 2 ;;
    esac
done

"$root/scripts/install-deps.sh" demo
"$root/scripts/build.sh"

bin="$build/bin"
host=127.0.0.1
port=8000
pids=()
cleanup() { for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done; }
trap cleanup EXIT

out=$(mktemp)
"$bin/orvex-sim" --host "$host" --port "$port" --model "$model" >"$out" &
pids+=($!)
for _ in $(seq 50); do grep -q "listening on" "$out" && break; sleep 0.1; done
cat "$out"

# Point the application at the emulator.
cat >"$bin/config.ini" <<INI
[NetWork]
Ip=$host
Port=$port
[Language]
language=$language
INI

cd "$bin"
if [ -n "${DISPLAY:-}" ]; then
    ./OrvexControl
    exit 0
fi

display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 1440x900x24 -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
export DISPLAY=$display
for _ in $(seq 50); do xdpyinfo >/dev/null 2>&1 && break; sleep 0.1; done
xcompmgr >/dev/null 2>&1 &
pids+=($!)
./OrvexControl &
app=$!
pids+=($app)
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
