#!/bin/sh
# Creates demo simulator folders for X-Plane 10 and X-Plane 11 with the add-on folders that the
# demo catalogue (base_ini.xml.in) points at, each in a different install state.
#   make-demo-sims.sh DEMO_SIM_ROOT [PROGRAM_DIR]
# With PROGRAM_DIR, the demo catalogue is also written to PROGRAM_DIR/bin/base_ini.xml, naming the
# server DEMO_SERVER (host:port, default 127.0.0.1:8470) and the public key DEMO_PUBLIC_KEY (the key
# line of a minisign .pub file; without it the demo program takes downloads unchecked).
set -eu

if [ $# -lt 1 ] || [ -z "$1" ]; then
    echo "usage: $0 DEMO_SIM_ROOT [PROGRAM_DIR]" >&2
    exit 2
fi
case "$1" in
    /*) root=$1 ;;
    *) root=$(pwd)/$1 ;;
esac
here=$(cd "$(dirname "$0")" && pwd)

# cycle_info FOLDER CYCLE REVISION: the file the add-on's navigation data carries.
cycle_info() {
    mkdir -p "$1"
    printf 'AIRAC cycle    : %s\r\nRevision       : %s\r\nName           : Quillmark demo data\r\n' "$2" "$3" \
        >"$1/cycle_info.txt"
}

# replacement TEXT: TEXT as XML character data (a folder may be called "R&D <old>"), then with
# the characters that have a meaning in a sed replacement escaped.
replacement() {
    printf '%s' "$1" | sed -e 's/&/\&amp;/g' -e 's/</\&lt;/g' -e 's/>/\&gt;/g' -e 's/[\\&|]/\\&/g'
}

xp10="$root/X-Plane 10"
xp11="$root/X-Plane 11"
mkdir -p "$xp10/X-Plane.app/Contents" "$xp11/X-Plane.app/Contents"

# X-Plane 11: the simulator's own data is current, the Larkspur pair (one install group) is one
# cycle behind, the Kestrel FMS has its data but no cycle file yet.
cycle_info "$xp11/Custom Data" 2101 1
cycle_info "$xp11/Custom Data/Larkspur" 2013 2
mkdir -p "$xp11/Aircraft/Kestrel KX-900/plugins/kx900/navdata"
printf 'demo cache\n' >"$xp11/Aircraft/Kestrel KX-900/plugins/kx900/navdata/route_cache.bin"
mkdir -p "$xp11/Resources/plugins"

# The route planner keeps its data one level down ("ORPX Data/NavData").
cycle_info "$root/Addons/Orbital/ORPX Data/NavData" 2012 1

# X-Plane 10: no data in the simulator yet, an old cycle in the turboprop.
mkdir -p "$xp10/Custom Data"
cycle_info "$xp10/Aircraft/Tern Turboprop/fms/database" 1913 1

if [ $# -ge 2 ]; then
    mkdir -p "$2/bin"
    sed -e "s|@DEMO_SIM_ROOT@|$(replacement "$root")|g" \
        -e "s|@DEMO_SERVER@|$(replacement "${DEMO_SERVER:-127.0.0.1:8470}")|g" \
        -e "s|@DEMO_PUBLIC_KEY@|$(replacement "${DEMO_PUBLIC_KEY:-}")|g" \
        "$here/base_ini.xml.in" >"$2/bin/base_ini.xml"
    printf 'demo catalogue written to %s\n' "$2/bin/base_ini.xml"
fi
printf 'demo simulators created under %s\n' "$root"
