#!/usr/bin/env bash
# A real mouse drag in a real X window: drag input 3 from the signal list onto the
# cell of video output 5 and expect the emulator to receive the switch command.
# usage: realdrag.sh ORVEXCONTROL ORVEX-SIM
set -u
source "$(dirname "$0")/waitfor.sh"
app_bin=$1
sim_bin=$2
for tool in Xvfb xdotool sqlite3; do
    command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done

work=$(mktemp -d)
pids=()
cleanup() { for p in "${pids[@]}"; do kill "$p" 2>/dev/null; done; wait 2>/dev/null; rm -rf "$work"; }
trap cleanup EXIT
fail() {
    echo "FAIL: $*"
    echo "--- emulator log"; cat "$work/sim.log"
    echo "--- application output"; tail -n 40 "$work/app.log"
    exit 1
}

# The application keeps config.ini and project.db beside itself: give it its own folder.
cp "$app_bin" "$work/OrvexControl"
sqlite3 "$work/project.db" "create table loginmodel( id integer primary key, model integer not null);
                            insert into loginmodel values(1,1);"

"$sim_bin" --host 127.0.0.32 --port 0 --verbose >"$work/sim.out" 2>"$work/sim.log" &
pids+=($!)
wait_for_line "$work/sim.out" "listening on" 10
port=$(sed -n 's/^listening on 127.0.0.32:\([0-9]*\),.*/\1/p' "$work/sim.out")
[ -n "$port" ] || fail "emulator did not start"
printf '[NetWork]\nIp=127.0.0.32\nPort=%s\n[Language]\nlanguage=1\n' "$port" >"$work/config.ini"

# Xvfb picks a free display and names it on the pipe once it accepts clients.
coproc XVFB { exec Xvfb -displayfd 1 -screen 0 1440x900x24 -nolisten tcp 2>/dev/null; }
pids+=($XVFB_PID)
read -r -t 30 -u "${XVFB[0]}" display_number || fail "Xvfb did not start"
export DISPLAY=:$display_number

(cd "$work" && QT_QPA_PLATFORM=xcb ./OrvexControl >"$work/app.log" 2>&1) &
pids+=($!)
# A sanitized build on a busy machine takes a while to come up.
wait_for_line "$work/sim.log" "cmd: {param=resolution}" 30 || fail "the application did not connect and refresh"
window=$(timeout 30 xdotool search --sync --onlyvisible --name "ORVEXMATRIX CONTORL" | head -n 1)
[ -n "$window" ] || fail "no window"
eval "$(xdotool getwindowgeometry --shell "$window")"

# Where things are, as fractions of the window (the layout stretches with it):
# the signal list's entry [3], and the middle cell of the video grid (output 5).
from_x=$((X + WIDTH * 86 / 1280));  from_y=$((Y + HEIGHT * 237 / 800))
to_x=$((X + WIDTH * 758 / 1280));   to_y=$((Y + HEIGHT * 421 / 800))
# Many small steps, each one synced with the X server: the pointer travels as a
# hand moves it, and Qt sees the press, the start of the drag and the last move.
drag() {
    xdotool mousemove --sync "$from_x" "$from_y" mousedown 1
    for step in $(seq 1 40); do
        xdotool mousemove --sync $((from_x + (to_x - from_x) * step / 40)) $((from_y + (to_y - from_y) * step / 40))
    done
    xdotool mouseup 1
}
# A slow (sanitized) build may still be laying the window out: try a few times.
for attempt in 1 2 3 4 5; do
    drag
    wait_for_line "$work/sim.log" "cmd: {param=3VIDEO5}" 3 && break
done
grep -q "cmd: {param=3VIDEO5}" "$work/sim.log" || fail "no switch command after the drag"
echo "1 passed, 0 failed"
