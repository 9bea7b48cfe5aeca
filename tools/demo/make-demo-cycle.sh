#!/bin/sh
# Writes a demo cycle for the demo server's folder with tools/publish.sh: DIR/quillmark/versionList.txt
# and one password-protected archive per dataset, DIR/quillmark/<cycle>/<dataset>.zip, laid out for
# the install paths of the demo catalogue (base_ini.xml.in), each signed beside it (.minisig).
#   make-demo-cycle.sh DIR [DATASET...]
# Datasets: xplane_native fmc_procedures orbital_route_planner (all three when none are given).
# CYCLE (default 2102) and REVISION (default 1) choose the cycle offered. DEMO_KEY names the
# minisign secret key (default: quillmark-demo.key beside DIR, made when missing, never inside the
# served folder); the demo catalogue must name its public key.
set -eu

if [ $# -lt 1 ] || [ -z "$1" ]; then
    echo "usage: $0 DIR [DATASET...]" >&2
    exit 2
fi
dir=$1
shift
here=$(cd "$(dirname "$0")" && pwd)
key=${DEMO_KEY:-$(dirname "$dir")/quillmark-demo.key}
command -v minisign >/dev/null 2>&1 || { echo "$0: the minisign tool is needed" >&2; exit 1; }
[ -f "$key" ] || minisign -G -W -p "${key%.key}.pub" -s "$key" >/dev/null
[ $# -gt 0 ] || set -- xplane_native fmc_procedures orbital_route_planner
cycle=${CYCLE:-2102}
revision=${REVISION:-1}
case "$cycle" in
    [0-9][0-9][0-9][0-9]) ;;
    *) echo "$0: CYCLE must be four digits (got \"$cycle\")" >&2; exit 2 ;;
esac

for ds in "$@"; do
    case "$ds" in
        xplane_native | fmc_procedures | orbital_route_planner) ;;
        *) echo "$0: unknown demo dataset \"$ds\"" >&2; exit 2 ;;
    esac
done

stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT INT TERM

# folder SUB: the data one install path receives, with the new cycle file.
folder() {
    mkdir -p "$stage/$ds/$1"
    printf 'AIRAC cycle    : %s\r\nRevision       : %s\r\nName           : Quillmark demo data\r\n' \
        "$cycle" "$revision" >"$stage/$ds/$1/cycle_info.txt"
    for f in earth_fix.dat earth_nav.dat earth_awy.dat; do
        printf 'I\n%s demo %s for %s, cycle %s\n99\n' "$ds" "$f" "$1" "$cycle" >"$stage/$ds/$1/$f"
    done
    mkdir -p "$stage/$ds/$1/SIDSTARS"
    printf 'SID DEMO1 RW16L\nSTAR DEMO2 RW34R\n' >"$stage/$ds/$1/SIDSTARS/KSEA.txt"
}

for ds in "$@"; do
    case "$ds" in
        xplane_native) folder xp11; folder xp10 ;;
        fmc_procedures) folder larkspur; folder kestrel; folder tern; folder heron ;;
        orbital_route_planner) folder orpx ;;
    esac
done
"$here/../publish.sh" -k "$key" -c "$cycle" -r "$revision" "$stage" "$dir"
