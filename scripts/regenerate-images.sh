#!/usr/bin/env bash
# Redraws resources/Images from scripts/draw_images.cpp.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
cmake -S "$root" -B "$build" >/dev/null
cmake --build "$build" --target orvex-draw-images -j2
QT_QPA_PLATFORM=offscreen "$build/bin/orvex-draw-images" "$root/resources"
echo "images written to $root/resources/Images"
