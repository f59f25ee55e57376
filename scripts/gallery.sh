#!/usr/bin/env bash
# Renders the routing grid, signal list, rename and user dialogs, setting dialogs and switches to build/gallery/*.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
"$root/scripts/install-deps.sh" demo
cmake -S "$root" -B "$build" >/dev/null
cmake --build "$build" --target orvex-gallery -j"$(nproc)"
mkdir -p -m 700 "${XDG_RUNTIME_DIR:=/tmp/runtime-$(id -u)}"
export XDG_RUNTIME_DIR
QT_QPA_PLATFORM=offscreen "$build/bin/orvex-gallery" "$build/gallery"
