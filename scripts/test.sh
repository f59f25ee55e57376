#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
"$root/scripts/install-deps.sh" build
"$root/scripts/build.sh"
cd "$build"
ctest --output-on-failure -j"$(nproc)"
