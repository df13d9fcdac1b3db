# Sourced by the scripts: installs Debian packages that are missing, and only those.

build_packages=(g++ cmake ninja-build libmash-dev libassimp-dev libcli11-dev nlohmann-json3-dev
    libfmt-dev)
test_packages=(libgtest-dev libgmock-dev)
bench_packages=(libcli11-dev libfmt-dev)
check_packages=(clang clang-format clang-tidy libomp-dev libclang-rt-14-dev gcovr binutils patch)

# install_packages <what for> <package>...
install_packages() {
    local purpose=$1
    shift
    local missing=()
    local package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" != 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing $purpose: ${missing[*]}" >&2
            echo "Run this script as root or install sudo, or install them by hand." >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing what is missing $purpose: ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        rm -f "$log"
        echo "Could not install: ${missing[*]}" >&2
        return 1
    fi
    rm -f "$log"
}

# build_preset <preset> [cmake option]...: configures and builds; prints only what went wrong.
build_preset() {
    local preset=$1
    shift
    mkdir -p build
    local log="build/$preset.log"
    echo "Building ($preset) ..."
    if ! { cmake --preset "$preset" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        echo "The build failed; the whole log is in $log" >&2
        return 1
    fi
}
