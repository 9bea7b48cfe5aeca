#!/usr/bin/env bash
# Runs Quillmark on the built-in demo: a demo catalogue, demo simulator and add-on folders, and a
# local demo server for everything the program downloads, signed with a demo key made here.
#   ./tools/demo.sh            build what the demo needs, prepare build/demo once, start the program
#   ./tools/demo.sh --update   first run a full dataset update against the demo server
#                              (download, unzip, install with backups), then start the program
#   ./tools/demo.sh --fresh    throw away build/demo (settings, logs, installed demo data) first
#   ./tools/demo.sh --server   only run the demo server, until Ctrl+C; start the program against it
#                              as often as you like with the command it prints
# The demo folder is kept between runs, so what was done in the program is still there next time.
# Without --update the server offers a newer cycle than the demo holds, so the program's start-up
# check opens the update dialog and the user runs the update from the window.
# The demo server listens on 127.0.0.1:$QMK_DEMO_PORT (18470 unless set) while the program runs;
# one already running there is used as it is.
# Without a display the program runs under Xvfb; a screenshot is saved and its path printed.
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"

run_update=0
fresh=0
server_only=0
for arg in "$@"; do
    case "$arg" in
        --update) run_update=1 ;;
        --fresh) fresh=1 ;;
        --server) server_only=1 ;;
        *) echo "usage: $0 [--update] [--fresh] [--server]" >&2; exit 2 ;;
    esac
done
port=${QMK_DEMO_PORT:-18470}

extra=()
[ -z "${DISPLAY:-}" ] && [ $server_only -eq 0 ] && extra=(xvfb xauth)
qmk_ensure_packages "${extra[@]}"
# Only the program with what an install puts beside it, and the demo's helpers; tests and
# benchmarks are built by tools/test.sh.
QMK_TARGETS="Quillmark manual quillmark_icons quillmark_docs demoserver demo_update screenshot_screen" qmk_build

demo=$QMK_BUILD/demo
# The demo's own signing key, as a publisher keeps it: beside the served folder, never in it.
export DEMO_KEY=$demo/quillmark-demo.key
[ $fresh -eq 1 ] && rm -rf "$demo"
if [ ! -f "$demo/app/bin/base_ini.xml" ] || ! grep -q "127.0.0.1:$port<" "$demo/app/bin/base_ini.xml" ||
    [ ! -f "$DEMO_KEY" ]; then
    echo "Preparing the demo folder $demo"
    rm -rf "$demo"
    mkdir -p "$demo/app/bin" "$demo/sims" "$demo/server"
    minisign -G -W -p "$demo/quillmark-demo.pub" -s "$DEMO_KEY" >/dev/null
    # The script writes the catalogue too, with the folder, server and public key escaped for XML.
    DEMO_SERVER=127.0.0.1:$port DEMO_PUBLIC_KEY=$(sed -n 2p "$demo/quillmark-demo.pub") \
        "$QMK_ROOT/tools/demo/make-demo-sims.sh" "$demo/sims" "$demo/app" >/dev/null
    "$QMK_ROOT/tools/demo/make-demo-cycle.sh" "$demo/server" >/dev/null
    "$QMK_ROOT/tools/demo/make-demo-release.sh" "$demo/server" >/dev/null
else
    echo "Using the demo folder $demo as it was left (--fresh starts over)"
fi
# The server always offers a cycle newer than the one the demo last downloaded, so that the
# program's start-up check opens the update dialog by itself.
last_cycle() { [ -f "$1" ] && grep -v '^Revision' "$1" | grep -v '^[[:space:]]*$' | tail -n 1 | tr -dc '0-9'; }
held=$(last_cycle "$demo/app/downloads/QuillmarkCycle/versionList.txt" || true)
offered=$(last_cycle "$demo/server/quillmark/versionList.txt" || true)
if [ -n "$held" ] && [ -n "$offered" ] && [ "$held" -ge "$offered" ] && [ "$held" -lt 9999 ]; then
    CYCLE=$(printf '%04d' $((10#$held + 1))) "$QMK_ROOT/tools/demo/make-demo-cycle.sh" "$demo/server" >/dev/null
    echo "Demo server: now offers cycle $(last_cycle "$demo/server/quillmark/versionList.txt")"
fi
# A portable program folder: the demo's settings, logs and downloads stay in it.
mkdir -p "$demo/app/log"
# The program folder as an install lays it out (the program and its manual beside it), with the
# demo's own catalogue in bin/. Always the program just built, unless one still runs from there:
# a running executable cannot be overwritten.
stage=$demo/install
rm -rf "$stage"
cmake --install "$QMK_BUILD" --prefix "$stage" >/dev/null
running=
for proc in /proc/[0-9]*; do
    if [ "$(readlink "$proc/exe" 2>/dev/null)" = "$demo/app/Quillmark" ]; then running=${proc#/proc/}; fi
done
if [ -n "$running" ]; then
    echo "Quillmark is running from $demo/app (process $running): left as it is; close it and run $0 again for the program just built"
else
    find "$stage/lib/quillmark" -maxdepth 1 -type f -exec cp {} "$demo/app/" \;
fi

server_answers() {
    curl -s -o /dev/null -f -X POST -u 'webclient:Q7x2Lm9p' \
        "http://127.0.0.1:$port/quillmark/versionList.txt" 2>/dev/null
}
server_pid=
if server_answers; then
    echo "Demo server: already running on 127.0.0.1:$port"
else
    "$QMK_BUILD/tools/demoserver" --root "$demo/server" --port "$port" > "$demo/server.log" 2>&1 &
    server_pid=$!
    trap 'kill $server_pid 2>/dev/null || true' EXIT
    for _ in $(seq 100); do
        grep -q "127.0.0.1:$port" "$demo/server.log" 2>/dev/null && break
        kill -0 "$server_pid" 2>/dev/null || break
        sleep 0.1
    done
    if ! kill -0 "$server_pid" 2>/dev/null; then
        echo "The demo server could not start on 127.0.0.1:$port:" >&2
        cat "$demo/server.log" >&2
        echo "Set another port with QMK_DEMO_PORT=NNNNN $0 --fresh" >&2
        exit 1
    fi
    when="stops with the program"
    [ $server_only -eq 1 ] && when="stops with Ctrl+C"
    echo "Demo server: http://127.0.0.1:$port/ serving $demo/server ($when)"
fi

if [ $run_update -eq 1 ]; then
    echo "Running a full dataset update against the demo server..."
    QT_QPA_PLATFORM=offscreen "$QMK_BUILD/tools/demo_update" "$demo/app" --server "127.0.0.1:$port"
fi

if [ $server_only -eq 1 ]; then
    [ -n "$server_pid" ] || { echo "Nothing to run: the demo server was already running."; exit 0; }
    echo "Start Quillmark against this demo server (as often as you like): $demo/app/Quillmark"
    wait "$server_pid"
    exit 0
fi
echo "Start Quillmark again against a running demo server: $demo/app/Quillmark"
echo "(the server runs while this program does, or on its own with: $0 --server)"

if [ -n "${DISPLAY:-}" ]; then
    echo "Starting $demo/app/Quillmark"
    "$demo/app/Quillmark"
    exit 0
fi

shot=$demo/quillmark-demo.png
echo "No display: running under Xvfb"
xvfb-run -a -s "-screen 0 1280x960x24" bash -c '
    "$1" & app=$!
    "$2" "$3" 40
    status=$?
    kill $app 2>/dev/null; wait $app 2>/dev/null
    exit $status
' _ "$demo/app/Quillmark" "$QMK_BUILD/tools/screenshot_screen" "$shot" >/dev/null
echo "Screenshot saved: $shot"
