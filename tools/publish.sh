#!/bin/sh
# Publishes a cycle (and, when given, a release) as the tree a Quillmark server serves, every file
# signed with minisign beside it (FILE.minisig), so that any plain web server or mirror can carry it.
#
#   publish.sh -k SECRET.key -c CYCLE [-r REVISION] [-t UNIX_TIME] [-R RELEASE_DIR -v VERSION] SOURCE OUT
#
# SOURCE holds one folder per dataset; each becomes OUT/quillmark/CYCLE/<dataset>.zip, protected
# with the password the program unpacks with. OUT/quillmark/versionList.txt then names the cycle and
# revision. With -R, the folder RELEASE_DIR (the new program folder VL_QUILLMARK_V<VERSION>.app and the
# updater qmk_au.app) is packed as OUT/downloads/quillmark/VL_QUILLMARK_V<VERSION>_MAC.zip and
# OUT/downloads/quillmark/mac_version.txt names VERSION (digits without dots, 124 is 1.2.4).
# An empty SOURCE ("") publishes only the release.
#
# Trusted comments (what the program checks): timestamp:<time> and file:<name> on every file;
# cycle:, revision: and dataset: on archives. The version list's time is what the program compares
# to refuse an older list, so every publication must be signed later than the one before (-t
# defaults to now). The secret key may be protected by a password; minisign then asks for it.
# Files are written beside their final names and moved into place, the version list last, so a
# server that is live while this runs never hands out half a file.
set -eu

usage() {
    echo "usage: $0 -k SECRET.key -c CYCLE [-r REVISION] [-t UNIX_TIME] [-R RELEASE_DIR -v VERSION] SOURCE OUT" >&2
    exit 2
}

key= cycle= revision=1 stamp= release= version=
while getopts k:c:r:t:R:v: opt; do
    case $opt in
        k) key=$OPTARG ;;
        c) cycle=$OPTARG ;;
        r) revision=$OPTARG ;;
        t) stamp=$OPTARG ;;
        R) release=$OPTARG ;;
        v) version=$OPTARG ;;
        *) usage ;;
    esac
done
shift $((OPTIND - 1))
[ $# -eq 2 ] || usage
source=$1
out=$2
[ -n "$stamp" ] || stamp=$(date +%s)

fail() { echo "$0: $*" >&2; exit 1; }
[ -f "$key" ] || fail "secret key \"$key\" not found (make one with: minisign -G -p KEY.pub -s KEY.key)"
for tool in minisign zip; do
    command -v $tool >/dev/null 2>&1 || fail "the $tool tool is needed"
done
case "$stamp" in '' | *[!0-9]*) fail "-t must be Unix seconds (got \"$stamp\")" ;; esac
case "$revision" in '' | *[!0-9]*) fail "-r must be a number (got \"$revision\")" ;; esac
if [ -n "$source" ]; then
    case "$cycle" in [0-9][0-9][0-9][0-9]) ;; *) fail "-c must be four digits (got \"$cycle\")" ;; esac
    [ -d "$source" ] || fail "dataset folder \"$source\" not found"
fi
if [ -n "$release" ]; then
    [ -d "$release" ] || fail "release folder \"$release\" not found"
    case "$version" in '' | *[!0-9A-Za-z]*) fail "-v must be letters and digits (got \"$version\")" ;; esac
fi
[ -n "$source" ] || [ -n "$release" ] || usage

tab=$(printf '\t')
# sign FILE COMMENT: FILE.minisig with the trusted comment COMMENT (tab-separated key:value fields).
sign() {
    minisign -S -s "$key" -m "$1" -x "$1.minisig.new" -t "$2" >/dev/null || fail "cannot sign $1"
}
# place TMP FINAL COMMENT: signs TMP as FINAL and moves both into place, the signature first.
place() {
    sign "$1" "$3"
    mv -f "$1.minisig.new" "$2.minisig"
    mv -f "$1" "$2"
    echo "wrote $2 and $2.minisig"
}

if [ -n "$source" ]; then
    mkdir -p "$out/quillmark/$cycle"
    found=0
    for dir in "$source"/*/; do
        [ -d "$dir" ] || continue
        dataset=$(basename "$dir")
        archive=$(cd "$out/quillmark/$cycle" && pwd)/$dataset.zip
        rm -f "$archive.new"
        # -X leaves out owner and time extras, so the same folder gives the same archive.
        (cd "$dir" && zip -q -r -X -P pralvek "$archive.new" .) || fail "zip failed for $dir"
        place "$archive.new" "$archive" \
            "timestamp:$stamp${tab}file:$dataset.zip${tab}cycle:$cycle${tab}revision:$revision${tab}dataset:$dataset"
        found=1
    done
    [ $found -eq 1 ] || fail "no dataset folders in $source"
fi

if [ -n "$release" ]; then
    target=$out/downloads/quillmark
    mkdir -p "$target"
    name=VL_QUILLMARK_V${version}_MAC
    stage=$(mktemp -d)
    trap 'rm -rf "$stage"' EXIT INT TERM
    cp -R "$release" "$stage/$name"
    (cd "$stage" && zip -q -r -X -y "$name.zip" "$name") || fail "zip failed for $release"
    mv "$stage/$name.zip" "$target/$name.zip.new"
    place "$target/$name.zip.new" "$target/$name.zip" "timestamp:$stamp${tab}file:$name.zip"
    printf '%s\n' "$version" >"$target/mac_version.txt.new"
    place "$target/mac_version.txt.new" "$target/mac_version.txt" "timestamp:$stamp${tab}file:mac_version.txt"
fi

if [ -n "$source" ]; then
    printf 'Revision: %s\n%s\n' "$revision" "$cycle" >"$out/quillmark/versionList.txt.new"
    place "$out/quillmark/versionList.txt.new" "$out/quillmark/versionList.txt" \
        "timestamp:$stamp${tab}file:versionList.txt${tab}cycle:$cycle${tab}revision:$revision"
fi
