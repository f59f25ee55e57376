#!/usr/bin/env bash
# Soak: the application connected to the emulator while orvexctl drives routing,
# volume and status commands for DURATION seconds (default 600). The emulator
# broadcasts every reply, so the application parses and shows all of them. Samples the
# application's resident memory and CPU every 10 s and prints the drift.
# Not part of the test suite.
set -euo pipefail
duration=${1:-600}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
"$root/scripts/install-deps.sh" build
"$root/scripts/build.sh" >/dev/null

work=$(mktemp -d)
pids=()
cleanup() { for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done; rm -rf "$work"; }
trap cleanup EXIT

host=127.0.0.90
"$build/bin/orvex-sim" --host $host --port 0 --broadcast >"$work/sim.out" 2>/dev/null &
pids+=($!)
for _ in $(seq 50); do grep -q "listening on" "$work/sim.out" && break; sleep 0.1; done
port=$(sed -n "s/^listening on $host:\([0-9]*\),.*/\1/p" "$work/sim.out")

cp "$build/bin/OrvexControl" "$work/"
sqlite3 "$work/project.db" "create table loginmodel( id integer primary key, model integer not null);
                            insert into loginmodel values(1,1);"
printf '[NetWork]\nIp=%s\nPort=%s\n[Language]\nlanguage=1\n' $host "$port" >"$work/config.ini"
mkdir -p -m 700 "$work/runtime"
(cd "$work" && XDG_RUNTIME_DIR="$work/runtime" QT_QPA_PLATFORM=offscreen ./OrvexControl >/dev/null 2>&1) &
sleep 3
app=$(pgrep -n -f "$work/OrvexControl" || pgrep -n OrvexControl)
pids+=("$app")

ctl() { "$build/bin/orvexctl" --host $host --port "$port" "$@" >/dev/null 2>&1 || true; }
volume() { exec 3<>/dev/tcp/$host/"$port" && printf '{param=Volume%d/%d}' "$1" "$2" >&3; exec 3>&-; }
cpu_ticks() { awk '{print $14 + $15}' "/proc/$app/stat"; }
rss_kb() { ps -o rss= -p "$app" | tr -d ' '; }

hz=$(getconf CLK_TCK)
start=$(date +%s)
first_rss=$(rss_kb); max_rss=$first_rss; first_cpu=$(cpu_ticks)
next_sample=$((start + 10)); commands=0
echo "time_s rss_kb"
echo "0 $first_rss"
while [ $(( $(date +%s) - start )) -lt "$duration" ]; do
    case $((RANDOM % 5)) in
        0) ctl route $((RANDOM % 9 + 1)) $((RANDOM % 9 + 1)) ;;
        1) ctl route $((RANDOM % 9 + 1)) $((RANDOM % 9 + 1)) --audio ;;
        2) ctl route $((RANDOM % 9 + 1)) $((RANDOM % 9 + 1)) --ir ;;
        3) volume $((RANDOM % 9 + 1)) $((RANDOM % 101)) ;;
        4) ctl status ;;
    esac
    commands=$((commands + 1))
    sleep 0.1
    now=$(date +%s)
    if [ "$now" -ge "$next_sample" ]; then
        rss=$(rss_kb)
        [ "$rss" -gt "$max_rss" ] && max_rss=$rss
        echo "$((now - start)) $rss"
        next_sample=$((now + 10))
    fi
done
kill -0 "$app" 2>/dev/null || { echo "the application died"; exit 1; }
last_rss=$(rss_kb); elapsed=$(( $(date +%s) - start ))
cpu=$(awk -v t="$(( $(cpu_ticks) - first_cpu ))" -v hz="$hz" -v s="$elapsed" 'BEGIN { printf "%.2f", t / hz / s * 100 }')
echo "commands: $commands in $elapsed s"
echo "rss: first ${first_rss} kB, last ${last_rss} kB, max ${max_rss} kB, drift $((last_rss - first_rss)) kB"
echo "application cpu: ${cpu}% of a core"
