#!/usr/bin/env bash
# Renders resources/images/src/*.svg into resources/images/ (PNG, and the .ico), building the
# renderer first when it is missing or older than its source.
# Usage: tools/render-images.sh [--sheet SHEET.png]   (the sheet shows every picture 2x for review)
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
RENDERER=$QMK_BUILD/tools/render_images

# The captions on the category badges and the logo are set in DejaVu Sans (Condensed) Bold;
# without those faces the renders would silently fall back to another font.
qmk_ensure_packages fonts-dejavu-extra

if [ ! -x "$RENDERER" ] || [ "$QMK_ROOT/tools/render_images.cpp" -nt "$RENDERER" ]; then
    [ -f "$QMK_BUILD/CMakeCache.txt" ] || cmake -S "$QMK_ROOT" -B "$QMK_BUILD" >/dev/null
    cmake --build "$QMK_BUILD" --target render_images -j2
fi
QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen} "$RENDERER" "$QMK_ROOT/resources/images/src" "$QMK_ROOT/resources/images" "$@"
