# shellcheck shell=bash disable=SC2034
# What ./run and ./test have in common: installing the packages that are missing.

BuildPackages=(g++ cmake ninja-build ccache pkg-config qt6-base-dev qt6-svg-dev libpq-dev libsqlite3-dev
    libsodium-dev libssl-dev libyaz-dev fonts-dejavu-core)
TestPackages=(lld libgtest-dev yaz libbenchmark-dev openssl postgresql xvfb x11-utils)

# RunAsRoot COMMAND...: directly or through sudo.
RunAsRoot() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo -- "$@"; fi
}

# InstallMissing PACKAGE...: installs those that are not there yet, and says which.
InstallMissing() {
    if ! command -v apt-get >/dev/null; then
        echo "No apt-get here: packages like these must be there already: $*" >&2
        return
    fi
    local installed package
    local -a missing=()
    installed=" $(dpkg-query -W -f '${Package}=${db:Status-Status} ' "$@" 2>/dev/null || true)"
    for package in "$@"; do
        [[ "$installed" == *" $package=installed "* ]] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        echo "Missing packages; as root, run: apt-get install ${missing[*]}" >&2
        exit 1
    fi
    echo "Installing with apt-get: ${missing[*]}"
    RunAsRoot apt-get update -q
    RequireQt
    RunAsRoot env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# Says it before hundreds of megabytes are installed for nothing.
RequireQt() {
    local version
    version=$(LC_ALL=C apt-cache policy qt6-base-dev | sed -n 's/^ *Candidate: *//p')
    if [ -z "$version" ] || [ "$version" = "(none)" ] || dpkg --compare-versions "$version" lt 6.4; then
        echo "This system offers Qt ${version:-(none)}; Qt 6.4 or newer is needed (Debian 12, Ubuntu 24.04 or later)." >&2
        exit 1
    fi
}

# Build PRESET TARGET...: configures at the first time, then builds.
Build() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
    cmake --build "build/$preset" --target "$@"
}
