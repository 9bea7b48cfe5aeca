#!/usr/bin/env bash
# Renders resources/images/src/*.svg into resources/images/ (PNG, and the .ico), building the
# renderer first when it is missing or older than its source.
# Usage: tools/render-images.sh [--sheet SHEET.png]
set -euo pipefail
ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=${QMK_BUILD:-$ROOT/build}
RENDERER=$BUILD/tools/render_images

if [ ! -x "$RENDERER" ] || [ "$ROOT/tools/render_images.cpp" -nt "$RENDERER" ]; then
    [ -f "$BUILD/CMakeCache.txt" ] || cmake -S "$ROOT" -B "$BUILD" >/dev/null
    cmake --build "$BUILD" --target render_images -j2
fi
QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen} "$RENDERER" "$ROOT/resources/images/src" "$ROOT/resources/images" "$@"
