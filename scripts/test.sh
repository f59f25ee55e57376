#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite twice: as built
# for use, and built with AddressSanitizer and UndefinedBehaviorSanitizer, where
# any report fails the run.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
sanitized=${SANITIZE_BUILD_DIR:-$root/build-asan}
"$root/scripts/install-deps.sh" build

"$root/scripts/build.sh"
(cd "$build" && ctest --output-on-failure -j"$(nproc)")

BUILD_DIR=$sanitized "$root/scripts/build.sh" -DCMAKE_BUILD_TYPE=Debug -DORVEX_SANITIZE=ON
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:fast_unwind_on_malloc=0
export LSAN_OPTIONS=suppressions=$root/tests/lsan.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
(cd "$sanitized" && ctest --output-on-failure -j"$(nproc)")
