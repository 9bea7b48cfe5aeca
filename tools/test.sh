#!/usr/bin/env bash
# Builds Quillmark and runs every test. Extra arguments go to ctest (e.g. -R TestApplication).
#   tools/test.sh [CTEST_ARGS...]              build/ with the normal flags
#   tools/test.sh --sanitize [CTEST_ARGS...]   build-sanitize/ with AddressSanitizer (leaks too)
#                                              and UndefinedBehaviorSanitizer
set -euo pipefail
sanitize=0
if [ "${1:-}" = "--sanitize" ]; then
    sanitize=1
    shift
fi
if [ $sanitize -eq 1 ]; then
    QMK_BUILD=${QMK_BUILD:-$(cd "$(dirname "$0")/.." && pwd)/build-sanitize}
fi
. "$(dirname "$0")/lib/common.sh"

# nginx for TestJourney, which runs the README's production recipe; the package checks for
# TestPackage, which lints the package in the normal run only.
if [ $sanitize -eq 1 ]; then
    qmk_ensure_packages nginx-light "${QMK_SANITIZE_PACKAGES[@]}"
    qmk_build -DQUILLMARK_SANITIZE=ON
    qmk_sanitizer_environment
else
    qmk_ensure_packages nginx-light "${QMK_PACKAGE_CHECK_PACKAGES[@]}"
    qmk_build
fi
cd "$QMK_BUILD"
ctest -j2 --output-on-failure "$@"
