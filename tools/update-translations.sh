#!/usr/bin/env bash
# Refreshes resources/lang/*.ts from the sources. New German texts arrive unfinished and must be
# translated before the tests pass again (TestApplication::everyTextTranslated checks both languages).
set -euo pipefail
cd "$(dirname "$0")/.."
LUPDATE=/usr/lib/qt5/bin/lupdate
"$LUPDATE" -silent -recursive app model engine ui -locations none -no-obsolete \
    -ts resources/lang/en_us.ts resources/lang/de_de.ts
# A new English text starts as itself; where it reads like code, en_us.ts gets a real English wording
# (resources/lang/WORDS.md lists the terms and the words that must not stay).
sed -i -e 's|<translation type="unfinished"></translation>|<translation>@SOURCE@</translation>|' \
    -e 's|<translation type="unfinished">\(..*\)</translation>|<translation>\1</translation>|' resources/lang/en_us.ts
awk '
    /<source>/ { src = $0; sub(/.*<source>/, "", src); sub(/<\/source>.*/, "", src) }
    /@SOURCE@/ { gsub(/&/, "\\\\&", src); sub(/@SOURCE@/, src) }
    { print }
' resources/lang/en_us.ts > resources/lang/en_us.ts.new && mv resources/lang/en_us.ts.new resources/lang/en_us.ts
grep -c 'type="unfinished"' resources/lang/de_de.ts | sed 's/^/unfinished German texts: /' || true
