#!/usr/bin/env bash
# A real mouse drag in a real X window: drag input 3 from the signal list onto the
# cell of video output 5 and expect the emulator to receive the switch command.
# usage: realdrag.sh ORVEXCONTROL ORVEX-SIM
set -u
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
for _ in $(seq 50); do grep -q "listening on" "$work/sim.out" && break; sleep 0.1; done
port=$(sed -n 's/^listening on 127.0.0.32:\([0-9]*\),.*/\1/p' "$work/sim.out")
[ -n "$port" ] || fail "emulator did not start"
printf '[NetWork]\nIp=127.0.0.32\nPort=%s\n[Language]\nlanguage=1\n' "$port" >"$work/config.ini"

display=:$((200 + $$ % 500))
Xvfb "$display" -screen 0 1440x900x24 -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
export DISPLAY=$display
for _ in $(seq 50); do xdotool getmouselocation >/dev/null 2>&1 && break; sleep 0.1; done

(cd "$work" && QT_QPA_PLATFORM=xcb ./OrvexControl >"$work/app.log" 2>&1) &
pids+=($!)
# A sanitized build on a busy machine takes a while to come up.
for _ in $(seq 300); do grep -q "cmd: {param=resolution}" "$work/sim.log" && break; sleep 0.1; done
grep -q "cmd: {param=resolution}" "$work/sim.log" || fail "the application did not connect and refresh"
window=$(timeout 30 xdotool search --sync --onlyvisible --name "ORVEXMATRIX CONTORL" | head -n 1)
[ -n "$window" ] || fail "no window"
eval "$(xdotool getwindowgeometry --shell "$window")"

# Where things are, as fractions of the window (the layout stretches with it):
# the signal list's entry [3], and the middle cell of the video grid (output 5).
from_x=$((X + WIDTH * 86 / 1280));  from_y=$((Y + HEIGHT * 237 / 800))
to_x=$((X + WIDTH * 758 / 1280));   to_y=$((Y + HEIGHT * 421 / 800))
# A hand's pace: Qt starts a drag only after the press has been seen and the
# pointer has travelled, and the drop needs the last move handled first.
drag() {
    xdotool mousemove --sync "$from_x" "$from_y" mousedown 1
    for step in 1 2 3 4 5 6 7 8; do
        xdotool mousemove --sync $((from_x + (to_x - from_x) * step / 8)) $((from_y + (to_y - from_y) * step / 8)) sleep 0.1
    done
    xdotool sleep 0.5 mouseup 1
}
# A slow (sanitized) build may still be laying the window out: try a few times.
for attempt in 1 2 3; do
    drag
    for _ in $(seq 30); do grep -q "cmd: {param=3VIDEO5}" "$work/sim.log" && break 2; sleep 0.1; done
done
grep -q "cmd: {param=3VIDEO5}" "$work/sim.log" || fail "no switch command after the drag"
echo "1 passed, 0 failed"
