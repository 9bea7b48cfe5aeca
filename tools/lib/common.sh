# Shared by tools/test.sh and tools/demo.sh: install what is missing, then build into build/.
# shellcheck shell=bash

QMK_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
QMK_BUILD=${QMK_BUILD:-$QMK_ROOT/build}

QMK_PACKAGES=(g++ make cmake qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev
              qt5-image-formats-plugins qttranslations5-l10n zip unzip curl openssl fonts-dejavu-extra)

qmk_ensure_packages() {
    local missing=() pkg
    for pkg in "${QMK_PACKAGES[@]}" "$@"; do
        dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing missing packages: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# qmk_build [TARGET...]: everything, or only the targets named.
qmk_build() {
    cmake -S "$QMK_ROOT" -B "$QMK_BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
    if [ $# -eq 0 ]; then
        cmake --build "$QMK_BUILD" -j"$(nproc)"
    else
        cmake --build "$QMK_BUILD" -j"$(nproc)" --target "$@"
    fi
}
