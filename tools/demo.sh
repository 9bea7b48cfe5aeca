#!/usr/bin/env bash
# Runs Quillmark on the built-in demo: a demo catalogue, demo simulator and add-on folders, and a
# local demo server for everything the program downloads.
#   ./tools/demo.sh            build, prepare build/demo and start the program
#   ./tools/demo.sh --update   first run a full dataset update against the demo server
#                              (download, unzip, install with backups), then start the program
# Without a display the program runs under Xvfb; a screenshot is saved and its path printed.
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"

run_update=0
[ "${1:-}" = "--update" ] && run_update=1

extra=()
[ -z "${DISPLAY:-}" ] && extra=(xvfb xauth)
qmk_ensure_packages "${extra[@]}"
qmk_build

demo=$QMK_BUILD/demo
rm -rf "$demo"
mkdir -p "$demo/app/bin" "$demo/sims" "$demo/server"
cp "$QMK_BUILD/Quillmark" "$demo/app/"

# A free loopback port for the demo server.
port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])' 2>/dev/null || echo 18470)

DEMO_SERVER=127.0.0.1:$port "$QMK_ROOT/tools/demo/make-demo-sims.sh" "$demo/sims" "$demo/app" >/dev/null
"$QMK_ROOT/tools/demo/make-demo-cycle.sh" "$demo/server" >/dev/null
"$QMK_ROOT/tools/demo/make-demo-release.sh" "$demo/server" >/dev/null

"$QMK_BUILD/tools/demoserver" --root "$demo/server" --port "$port" > "$demo/server.log" 2>&1 &
server_pid=$!
trap 'kill $server_pid 2>/dev/null || true' EXIT
for _ in $(seq 100); do
    grep -q "127.0.0.1:$port" "$demo/server.log" 2>/dev/null && break
    sleep 0.1
done
echo "Demo server: http://127.0.0.1:$port/ serving $demo/server"

if [ $run_update -eq 1 ]; then
    echo "Running a full dataset update against the demo server..."
    QT_QPA_PLATFORM=offscreen "$QMK_BUILD/tools/demo_update" "$demo/app" --server "127.0.0.1:$port"
fi

if [ -n "${DISPLAY:-}" ]; then
    echo "Starting $demo/app/Quillmark"
    "$demo/app/Quillmark"
    exit 0
fi

shot=$QMK_BUILD/demo/quillmark-demo.png
echo "No display: running under Xvfb"
xvfb-run -a -s "-screen 0 1280x960x24" bash -c '
    "$1" & app=$!
    "$2" "$3" 40
    status=$?
    kill $app 2>/dev/null; wait $app 2>/dev/null
    exit $status
' _ "$demo/app/Quillmark" "$QMK_BUILD/tools/screenshot_screen" "$shot" >/dev/null
echo "Screenshot saved: $shot"
