#!/usr/bin/env bash
# Makes the Debian package of Quillmark: installs what is missing, builds the program, its manual
# and icons into build/, packs them with CPack and checks the package with lintian.
#   tools/package.sh [CMAKE_ARGS...]     e.g. -DQUILLMARK_SERVER=nav.example.com
# The .deb is left in build/ and its path printed.
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"

qmk_ensure_packages "${QMK_PACKAGE_CHECK_PACKAGES[@]}"
# Only what the package holds; tests and benchmarks are built by tools/test.sh.
QMK_TARGETS="Quillmark manual quillmark_icons quillmark_docs" qmk_build "$@"
cd "$QMK_BUILD"
rm -f ./*.deb
cpack -G DEB >/dev/null
deb=$(ls "$QMK_BUILD"/*.deb)
# Running as root is how a fresh machine is often set up; lintian only warns about it.
lintian --fail-on error "$deb" 2> >(grep -v 'running with root privileges' >&2)
echo "Package: $deb"
