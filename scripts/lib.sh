# Shared by the scripts in this folder; to be sourced from the root of the project.

jobs=$(nproc)

is_installed() { dpkg-query -W -f '${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed; }

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# install_missing PACKAGE...: installs with apt those packages that are not there yet.
install_missing() {
    local package missing=()
    for package; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing: ${missing[*]}"
    if ! command -v apt-get >/dev/null; then
        echo "There is no apt-get here; please install them by hand." >&2
        return 1
    fi
    if [[ " ${missing[*]} " == *:i386* ]] && ! dpkg --print-foreign-architectures | grep -qx i386; then
        as_root dpkg --add-architecture i386
    fi
    as_root apt-get update -q || echo "apt-get update failed; going on with the lists at hand." >&2
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
        -o DPkg::Lock::Timeout=300 "${missing[@]}"
}
