#!/usr/bin/env bash
# Builds Quillmark into build/ and runs every test. Extra arguments go to ctest (e.g. -R TestMyLog).
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
qmk_ensure_packages
qmk_build
cd "$QMK_BUILD"
ctest -j2 --output-on-failure "$@"
