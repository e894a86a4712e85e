# Sourced by the scripts that need Debian packages.

# install_missing_packages <name>...: installs those that are not there; quick and silent when all are.
install_missing_packages() {
    local missing=() package states as_root=()
    states=$(dpkg-query -W -f='${Package}:${db:Status-Status}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        [[ $'\n'$states$'\n' == *$'\n'"$package:installed"$'\n'* ]] || missing+=("$package")
    done
    if [[ ${#missing[@]} -eq 0 ]]; then
        return 0
    fi
    if [[ $(id -u) -ne 0 ]]; then
        if ! command -v sudo >/dev/null; then
            echo "setup: these packages are missing: ${missing[*]}" >&2
            echo "setup: install them as root, or install sudo and try again" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "setup: installing ${missing[*]}"
    # Another installation may be under way: its lock is waited for.
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
               apt-get -y -q -o DPkg::Lock::Timeout=300)
    "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "${missing[@]}"
}
