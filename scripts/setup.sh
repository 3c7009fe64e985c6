# Sourced by the commands in the root: installs what is missing and configures a build.

# install_packages FILE...: the Debian packages named in the files; asks nothing when all is there.
install_packages() {
    local missing=() package
    local installed
    installed=" $(dpkg-query -W -f='${db:Status-Abbrev}${Package} ' 2>/dev/null) "
    while read -r package; do
        [ -n "$package" ] || continue
        case "$installed" in *" ii $package "*|*"ii $package "*) ;; *) missing+=("$package") ;; esac
    done < <(cat "$@")
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "Installing: ${missing[*]}" >&2
    $sudo apt-get -o DPkg::Lock::Timeout=300 update -q >&2
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 install -q -y \
        --no-install-recommends "${missing[@]}" >&2
}

# configure PRESET [OPTION...]: once, and again when the options differ from the last time.
configure() {
    local preset=$1 stamp="build/$1/options.txt"
    if [ ! -f "build/$preset/build.ninja" ] || [ "$(cat "$stamp" 2>/dev/null)" != "$*" ]; then
        cmake --preset "$@" >&2
        echo "$*" > "$stamp"
    fi
}

jobs() { nproc; }
