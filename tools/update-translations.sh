#!/usr/bin/env bash
# Refreshes resources/lang/*.ts from the sources. New German texts arrive unfinished and must be
# translated before the tests pass again (TestTranslations checks that German is complete).
set -euo pipefail
cd "$(dirname "$0")/.."
LUPDATE=/usr/lib/qt5/bin/lupdate
"$LUPDATE" -silent -recursive app model engine ui -locations none -no-obsolete \
    -ts resources/lang/en_us.ts resources/lang/de_de.ts
# English is the source language: every text translates to itself.
sed -i -e 's|<translation type="unfinished"></translation>|<translation>@SOURCE@</translation>|' resources/lang/en_us.ts
awk '
    /<source>/ { src = $0; sub(/.*<source>/, "", src); sub(/<\/source>.*/, "", src); gsub(/&/, "\\\\&", src) }
    /@SOURCE@/ { sub(/@SOURCE@/, src) }
    { print }
' resources/lang/en_us.ts > resources/lang/en_us.ts.new && mv resources/lang/en_us.ts.new resources/lang/en_us.ts
grep -c 'type="unfinished"' resources/lang/de_de.ts | sed 's/^/unfinished German texts: /' || true
