#!/usr/bin/env bash
# Configures and builds into build/ (or $BUILD_DIR) with both cores.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"
