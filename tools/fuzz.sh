#!/usr/bin/env bash
# Runs one libFuzzer harness for a while.
#   tools/fuzz.sh NAME SECONDS [LIBFUZZER_ARGS...]
# NAME is a folder of tests/fuzz/corpus: catalogue, settings, cycle_info, version_list, mac_version,
# minisig.
# Builds into build-fuzz/ with clang, AddressSanitizer and UndefinedBehaviorSanitizer. The
# committed seeds are read, new inputs are kept in build-fuzz/fuzz/corpus/NAME, and an input that
# fails is saved as build-fuzz/fuzz/NAME-crash-*: once the fault is fixed, copy it into
# tests/fuzz/corpus/NAME so that the normal test run replays it.
set -euo pipefail
if [ $# -lt 2 ] || ! [[ "$2" =~ ^[0-9]+$ ]]; then
    echo "usage: $0 NAME SECONDS [LIBFUZZER_ARGS...]" >&2
    exit 2
fi
name=$1
seconds=$2
shift 2
QMK_BUILD=${QMK_BUILD:-$(cd "$(dirname "$0")/.." && pwd)/build-fuzz}
. "$(dirname "$0")/lib/common.sh"

seeds=$QMK_ROOT/tests/fuzz/corpus/$name
if [ ! -d "$seeds" ]; then
    echo "$0: no fuzz target \"$name\"; there are: $(ls "$QMK_ROOT/tests/fuzz/corpus" | tr '\n' ' ')" >&2
    exit 2
fi

qmk_ensure_packages "${QMK_FUZZ_PACKAGES[@]}"
QMK_TARGETS="fuzz_$name" qmk_build -DQUILLMARK_FUZZ=ON -DCMAKE_CXX_COMPILER=clang++-14
qmk_sanitizer_environment
# The harnesses start no window, so Qt's own leaks do not come up; the fast unwinder makes a
# run many times faster.
export ASAN_OPTIONS="$ASAN_OPTIONS:fast_unwind_on_malloc=1"

# Every input writes a program folder; in memory that runs more than ten times faster.
[ -d /dev/shm ] && [ -w /dev/shm ] && export TMPDIR=/dev/shm

work=$QMK_BUILD/fuzz/corpus/$name
mkdir -p "$work"
dict=()
[ -f "$QMK_ROOT/tests/fuzz/$name.dict" ] && dict=(-dict="$QMK_ROOT/tests/fuzz/$name.dict")
cd "$QMK_BUILD/fuzz"
exec "./fuzz_$name" -max_total_time="$seconds" -timeout=20 -print_final_stats=1 \
    -artifact_prefix="$QMK_BUILD/fuzz/$name-" "${dict[@]}" "$@" "$work" "$seeds"
