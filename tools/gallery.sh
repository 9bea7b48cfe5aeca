#!/usr/bin/env bash
# Writes the picture gallery: the main window and every dialog in its main states, in English and
# German, into build/gallery/, with an index.html that shows each pair side by side.
#   tools/gallery.sh          build the screenshot tool, take the pictures, write the index
#   tools/gallery.sh --docs   the same, then copy the pictures the README and the manual use into
#                             the repository and set build/Manual.pdf afresh
set -euo pipefail
docs=0
for arg in "$@"; do
    case "$arg" in
        --docs) docs=1 ;;
        *) echo "usage: $0 [--docs]" >&2; exit 2 ;;
    esac
done
. "$(dirname "$0")/lib/common.sh"

qmk_ensure_packages
QMK_TARGETS="screenshot_mainwindow" qmk_build

gallery=$QMK_BUILD/gallery
mkdir -p "$gallery"
# Pictures of an earlier run must not pass for this one's.
rm -f "$gallery"/*.png "$gallery/index.html"
export QT_QPA_PLATFORM=offscreen
tool=$QMK_BUILD/tools/screenshot_mainwindow
# The offscreen platform's note on every window says nothing about the pictures.
quiet() { "$@" 2> >(grep -v -e propagateSizeHints -e XDG_RUNTIME_DIR >&2) >/dev/null; }
quiet "$tool" - "$gallery"
quiet "$tool" - "$gallery" 800x600

# One row per picture, in this order: the name without _en/_de, then its caption.
pictures=(
    "mainwindow|Main window on a sample catalogue, one card's commands open, one card's cycle expired"
    "mainwindow_800x600|Main window at 800x600"
    "mainwindow_updated|Main window after an update: the cards show the new cycle and a backup"
    "settings|Settings"
    "settings_backup_running|Settings: the backup panel writing the cycle archive"
    "settings_backup_created|Settings: the cycle archive written"
    "settings_backup_loaded|Settings: the cycle archive loaded back"
    "help|Help"
    "selfupdate_ready|Quillmark update: a newer version ready for download"
    "selfupdate_downloaded|Quillmark update: the newer version downloaded"
    "selfupdate_uptodate|Quillmark update: nothing newer on the server"
    "selfupdate_noserver|Quillmark update: the server cannot be reached"
    "update_ready|Dataset update: a new cycle on offer, overwriting accepted"
    "update_downloading|Dataset update: downloading"
    "update_downloaded|Dataset update: downloaded, Install offered"
    "update_readytoinstall|Dataset update: opened again on a cycle downloaded earlier and left for later"
    "update_installing|Dataset update: installing, the progress bar names the product"
    "update_installed|Dataset update: installed, result open"
    "update_uptodate|Dataset update: nothing newer on the server"
    "update_local|Dataset update: the cycle held on disk chosen, its details open"
    "update_credentials|Dataset update: the server refuses the credentials; the second line says what to do"
    "update_failed|Dataset update: the server cannot be reached; the second line says what to do"
    "reset_idle|Reset: before it starts, listing what comes back"
    "reset_ready|Reset: done, result open"
    "removebackup_idle|Backup removal: before it starts, listing what is deleted"
    "removebackup_ready|Backup removal: done, result open"
    "mainwindow_simfound|First start: X-Plane 11 found and offered in its band, X-Plane 10 still without a folder"
)
file_name() { # NAME LANGUAGE: mainwindow_800x600 de -> mainwindow_de_800x600.png
    case "$1" in
        mainwindow_[0-9]*x[0-9]*) echo "mainwindow_$2_${1#mainwindow_}.png" ;;
        *) echo "$1_$2.png" ;;
    esac
}

missing=()
rows=""
listed=" "
add_row() { # NAME CAPTION
    local en de
    en=$(file_name "$1" en)
    de=$(file_name "$1" de)
    listed+="$en $de "
    for f in "$en" "$de"; do [ -f "$gallery/$f" ] || missing+=("$f"); done
    rows+="<tr><th colspan=\"2\">$2 <code>$1</code></th></tr>
<tr><td><a href=\"$en\"><img src=\"$en\" alt=\"$2 (English)\"></a></td>"
    rows+="<td><a href=\"$de\"><img src=\"$de\" alt=\"$2 (German)\"></a></td></tr>
"
}
for entry in "${pictures[@]}"; do
    add_row "${entry%%|*}" "${entry#*|}"
done
# A picture the tool learned to take but that is not listed above still gets its row.
for f in "$gallery"/*_en.png "$gallery"/*_en_*.png; do
    [ -f "$f" ] || continue
    f=${f##*/}
    case "$listed" in *" $f "*) continue ;; esac
    case "$f" in
        *_en.png) name=${f%_en.png} ;;
        *) name=${f%.png}; name=${name/_en_/_} ;;
    esac
    add_row "$name" "$name"
done

cat >"$gallery/index.html" <<EOF
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Quillmark picture gallery</title>
<style>
body { font-family: sans-serif; margin: 1em; background: #f4f4f6; }
table { border-collapse: collapse; width: 100%; }
th { text-align: left; padding: 1.2em 0 0.3em; font-weight: normal; font-size: 1.1em; }
th code { color: #777; font-size: 0.85em; margin-left: 0.5em; }
td { width: 50%; vertical-align: top; padding: 0 0.5em 0 0; }
img { max-width: 100%; border: 1px solid #bbb; }
</style>
</head>
<body>
<h1>Quillmark picture gallery</h1>
<p>English on the left, German on the right. Written by <code>tools/gallery.sh</code>.</p>
<table>
<tr><th>English</th><th>German</th></tr>
$rows</table>
</body>
</html>
EOF

if [ ${#missing[@]} -gt 0 ]; then
    echo "Missing pictures: ${missing[*]}" >&2
    exit 1
fi

if [ $docs -eq 1 ]; then
    # The README and the manual show only gallery pictures.
    for f in mainwindow_en settings_en settings_backup_created_en help_en selfupdate_ready_en \
             update_ready_en update_installed_en reset_idle_en removebackup_ready_en; do
        cp "$gallery/$f.png" "$QMK_ROOT/resources/manual/images/$f.png"
    done
    cp "$gallery/mainwindow_updated_en.png" "$QMK_ROOT/resources/readme/quillmark-window.png"
    QMK_TARGETS="manual" qmk_build
    echo "Pictures copied into resources/manual/images/ and resources/readme/; manual: $QMK_BUILD/Manual.pdf"
fi
echo "Gallery: $gallery/index.html"
