#!/usr/bin/env bash
# Every benchmark in one run, each figure printed beside its target. Run after
# scripts/build.sh; takes about 50 s on two cores. Loopback addresses
# 127.0.0.91, 127.0.0.92 and 127.0.0.110 only. Not part of the test suite.
#   bench/run-all.sh        (BUILD_DIR to use another build folder)
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
for program in bench_parser bench_window bench_bare_window orvex-sim OrvexControl; do
    [ -x "$build/bin/$program" ] || { echo "missing $build/bin/$program: run scripts/build.sh first" >&2; exit 2; }
done
command -v python3 >/dev/null || { echo "python3 is needed for the start-up figures" >&2; exit 2; }

runtime=$(mktemp -d)
chmod 700 "$runtime"
trap 'rm -rf "$runtime"' EXIT
export XDG_RUNTIME_DIR=$runtime QT_QPA_PLATFORM=offscreen
log=$runtime/log
status=0

step() {
    echo "== $1"
    shift
    # Bounded: each step ends by its own time-outs well before this one.
    timeout 150 "$@" 2>&1 | tee -a "$log" || status=1
}
step "reply parser against bare JSON decoding (2,000 frames)" "$build/bin/bench_parser" 2000 --no-idle
step "window, latency, upload" "$build/bin/bench_window" --replies 1000
step "start-up and idle memory" python3 "$root/bench/startup.py" "$build" --rounds 7

echo
echo "== summary"
sed -n 's/^RESULT //p' "$log"
exit $status
