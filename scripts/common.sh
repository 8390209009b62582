# Shared by scripts/run and scripts/test: installs the Debian packages the build needs
# (only those missing) and builds into a directory.

KVD_PACKAGES=(cmake ninja-build g++ pkg-config
    qt6-base-dev zlib1g-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools qt6-translations-l10n qt6-svg-dev libgl-dev
    libbenchmark-dev clang xvfb xauth help2man dpkg-dev)

# What the full test pass adds: LibreOffice Calc with its French language pack, which
# opens the CSV export.
KVD_CALC_PACKAGES=(libreoffice-calc-nogui libreoffice-l10n-fr)

kvd_install_missing() {
    local missing=() pkg
    for pkg in "${KVD_PACKAGES[@]}" "$@"; do
        dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed' ||
            missing+=("$pkg")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    "${sudo[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq "${missing[@]}"
}

# kvd_build DIR [cmake options...]
kvd_build() {
    local dir=$1
    shift
    mkdir -p "$dir"
    cmake -S . -B "$dir" -G Ninja "$@" >"$dir/configure.log" 2>&1 || {
        cat "$dir/configure.log"
        return 1
    }
    cmake --build "$dir" -j "$(nproc)"
}
