#!/usr/bin/env bash
# Fuzzes the reply parser against the straightforward loop for SECONDS (default 60).
# Builds with clang into build-fuzz; new interesting inputs land in build-fuzz/corpus,
# crashes and disagreements in build-fuzz/artifacts (add them to fuzz/corpus).
set -euo pipefail
seconds=${1:-60}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${FUZZ_BUILD_DIR:-$root/build-fuzz}

missing=()
for p in clang libclang-rt-14-dev; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""; [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -qq && DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
fi
"$root/scripts/install-deps.sh" build

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -DORVEX_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --target fuzz_replyparser -j"$(nproc)"

mkdir -p "$build/corpus" "$build/artifacts"
cp -n "$root"/fuzz/corpus/* "$build/corpus/" 2>/dev/null || true
"$build/bin/fuzz_replyparser" "$build/corpus" -max_total_time="$seconds" -max_len=65536 \
    -print_final_stats=1 -artifact_prefix="$build/artifacts/" 2>&1 | tee "$build/fuzz.log" \
    | grep -E "^(#[0-9]+ +(DONE|pulse))|stat::|ERROR|disagree" || true
grep -q "stat::number_of_executed_units" "$build/fuzz.log" || { echo "fuzzing stopped early: see $build/fuzz.log"; exit 1; }
execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$build/fuzz.log")
rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$build/fuzz.log")
echo "fuzzed $seconds s: $execs executions, $rate per second, corpus $(ls "$build/corpus" | wc -l) inputs"
