# Shared by tools/test.sh, tools/fuzz.sh, tools/demo.sh and tools/package.sh: install what is
# missing, then build.
# shellcheck shell=bash

QMK_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
QMK_BUILD=${QMK_BUILD:-$QMK_ROOT/build}

# icnsutils packs the macOS icon; dpkg-dev and file let CPack name the libraries a .deb depends on.
QMK_PACKAGES=(g++ make cmake qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev
              qt5-image-formats-plugins qttranslations5-l10n zip unzip curl openssl fonts-dejavu-extra
              pkg-config libsodium-dev minisign icnsutils dpkg-dev file)
# The checks a .deb must pass.
QMK_PACKAGE_CHECK_PACKAGES=(lintian desktop-file-utils appstream)
# g++'s sanitizer runtimes (normally already pulled in with g++).
QMK_SANITIZE_PACKAGES=(libasan8 libubsan1)
# clang with its sanitizer and libFuzzer runtimes.
QMK_FUZZ_PACKAGES=(clang-14 libclang-rt-14-dev)

qmk_ensure_packages() {
    local missing=() pkg
    for pkg in "${QMK_PACKAGES[@]}" "$@"; do
        dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing missing packages: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# qmk_build [CMAKE_ARGS...]: configures $QMK_BUILD with the extra arguments and builds it. With
# QMK_TARGETS set (a list), only those targets are built.
qmk_build() {
    cmake -S "$QMK_ROOT" -B "$QMK_BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
    local targets=()
    [ -n "${QMK_TARGETS:-}" ] && for t in $QMK_TARGETS; do targets+=(--target "$t"); done
    cmake --build "$QMK_BUILD" -j"$(nproc)" "${targets[@]}"
}

# Settings for programs built with the sanitizers: any finding ends the program with an error,
# with a stack trace, and leaks are reported at exit.
qmk_sanitizer_environment() {
    # Full stacks for every allocation, so that a leak inside Qt can be told from one of ours.
    export ASAN_OPTIONS="detect_leaks=1:fast_unwind_on_malloc=0:abort_on_error=0:strict_string_checks=1:detect_stack_use_after_return=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
    export LSAN_OPTIONS="suppressions=$QMK_ROOT/tests/sanitizers/lsan.supp:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
}
