#!/bin/sh
# Puts a newer demo release of Quillmark into the demo server's folder:
#   DIR/downloads/quillmark/mac_version.txt        e.g. "124" when the program is 1.2.3
#   DIR/downloads/quillmark/VL_QUILLMARK_V124_MAC.zip
# The archive holds the folder VL_QUILLMARK_V124_MAC with the new application bundle
# (VL_QUILLMARK_V124.app), the updater qmk_au.app and a readme.
#
# Both are signed beside them (.minisig) with tools/publish.sh and the key DEMO_KEY (default:
# quillmark-demo.key beside DIR, made when missing).
#
# usage: make-demo-release.sh DIR [VERSION-DIGITS]
set -eu

if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: $0 DIR [VERSION-DIGITS]" >&2
    exit 2
fi
dir=$1
here=$(cd "$(dirname "$0")" && pwd)

if [ $# -eq 2 ]; then
    version=$2
else
    # One step above the version the program reports: the catalogue's <Version> (1.2.3 gives 124).
    current=$(sed -n 's:.*<Version>\([0-9.]*\)</Version>.*:\1:p' "$here/../../resources/bin/base_ini.xml.in" | head -n 1)
    if [ -z "$current" ]; then
        echo "$0: no <Version> in resources/bin/base_ini.xml.in; give the version digits as the second argument" >&2
        exit 1
    fi
    version=$(( $(echo "$current" | tr -d .) + 1 ))
fi
case $version in
    ''|*[!0-9A-Za-z]*) echo "$0: version must be letters and digits, got \"$version\"" >&2; exit 2 ;;
esac
command -v minisign >/dev/null || { echo "$0: minisign not found on PATH" >&2; exit 1; }
key=${DEMO_KEY:-$(dirname "$dir")/quillmark-demo.key}
[ -f "$key" ] || minisign -G -W -p "${key%.key}.pub" -s "$key" >/dev/null

name=VL_QUILLMARK_V${version}_MAC
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir -p "$work/$name/qmk_au.app/Contents/MacOS" "$work/$name/VL_QUILLMARK_V${version}.app/Contents/MacOS"
cat > "$work/$name/qmk_au.app/Contents/MacOS/qmk_au" <<EOT
#!/bin/sh
echo "Demo updater: would install Quillmark $version"
EOT
chmod +x "$work/$name/qmk_au.app/Contents/MacOS/qmk_au"
printf 'Demo Quillmark %s\n' "$version" > "$work/$name/VL_QUILLMARK_V${version}.app/Contents/MacOS/Quillmark"
printf 'Quillmark demo release %s.\nOpen qmk_au.app to install it.\n' "$version" > "$work/$name/readme.txt"

"$here/../publish.sh" -k "$key" -R "$work/$name" -v "$version" "" "$dir"
