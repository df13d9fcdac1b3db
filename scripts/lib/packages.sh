# Which Debian packages a job needs, and how the missing ones get there. Source it.

# packages_for JOB: one a line, "package|what for".
packages_for() {
    case "$1" in
        build)
            cat <<'LIST'
g++|the compiler
cmake|the build system
ninja-build|runs the build
libmash-dev|the hash map of the orientation library
libzip-dev|unpacks and packs 3MF files
libexpat1-dev|reads the XML in them
libcli11-dev|tesk-orient's command line
nlohmann-json3-dev|tesk-orient's JSON
libfmt-dev|tesk-orient's tables
libuv1-dev|tesk-orient's worker processes
libxxhash-dev|tesk-orient's hash of a file's content
libjs-three|draws in its report pages
libmeshoptimizer-dev|makes large parts light enough for them
LIST
            ;;
        python)
            cat <<'LIST'
g++|the compiler
cmake|the build system
ninja-build|runs the build
libmash-dev|the hash map of the orientation library
libzip-dev|unpacks and packs 3MF files
libexpat1-dev|reads the XML in them
libjs-three|draws in notebooks
python3-venv|environments for the package and its tests
python3-dev|builds the mesh simplifier that notebooks use
LIST
            ;;
        windows_python) echo "maven|fetches a Python for Windows" ;;
        test)
            packages_for build
            cat <<'LIST'
libgtest-dev|the test framework
libgmock-dev|its matchers
lib3mf-dev|reads the 3MF files that tests write
LIST
            ;;
        win64)
            packages_for build
            cat <<'LIST'
g++-mingw-w64-x86-64-posix|the compiler for Windows
wine64|runs programs for Windows
googletest|sources of the test framework
libz-mingw-w64-dev|tesk-orient's compression, for Windows
clang|compiles a client for MSVC
lld-14|links it
llvm-14|makes import libraries for MSVC
dpkg-dev|unpacks source packages
LIST
            ;;
        package)
            packages_for test
            cat <<'LIST'
dpkg-dev|finds what a Debian package depends on, unpacks source packages
pkg-config|tries the package file of the C interface
LIST
            ;;
        checks)
            packages_for test
            packages_for csharp
            cat <<'LIST'
clang|the second compiler, and the sanitizer builds
libomp-dev|its OpenMP, with the race detector's tool library
libclang-rt-14-dev|its sanitizers
llvm|names the functions in their reports
clang-tidy|finds doubtful code
clang-format-14|keeps the layout
doxygen|makes pages of the headers' comments
gcovr|reports coverage
binutils|lists exported symbols
LIST
            ;;
        peers)
            packages_for build
            cat <<'LIST'
libqhull-dev|a convex hull to compare with
libcgal-dev|an oriented bounding box to compare with
libeigen3-dev|which it needs
LIST
            ;;
        web_checks)
            cat <<'LIST'
nodejs|runs the script of report pages without a browser
node-typescript|checks its types
eslint|finds doubtful code in it
LIST
            ;;
        web_test)
            packages_for build
            cat <<'LIST'
chromium|opens report pages
chromium-driver|steers it
python3-selenium|tells it how
fonts-dejavu-core|letters for it
LIST
            ;;
        npm) echo "npm|fetches axe-core, which finds what keeps people from reading a page" ;;
        csharp)
            cat <<'LIST'
mono-mcs|compiles the example in C# where there is no .NET SDK
mono-runtime|runs it
LIST
            ;;
        interfaces)
            packages_for build
            echo "abigail-tools|compares the interfaces of libraries"
            ;;
        docs) echo "doxygen|makes pages of the headers' comments" ;;
        plot)
            packages_for build
            echo "gnuplot-nox|draws the figures"
            ;;
        *) fail "no package list is named '$1'" ;;
    esac
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# as_root COMMAND...: as it is for root, through sudo for others.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# ensure_packages JOB: installs what is missing, and only that.
ensure_packages() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        say "No apt-get here: these Debian packages, or what they hold, must be there already:"
        packages_for "$1" | sed 's/|/ - /; s/^/  /'
        return 0
    fi
    local missing=() package reason
    while IFS='|' read -r package reason; do
        is_installed "$package" && continue
        [ ${#missing[@]} -gt 0 ] || say "Missing here, to be installed with apt-get:"
        printf '  %-20s %s\n' "$package" "$reason"
        missing+=("$package")
    done < <(packages_for "$1")
    [ ${#missing[@]} -gt 0 ] || return 0

    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        fail "this needs root, and there is no sudo; as root: apt-get install ${missing[*]}"
    fi
    local log
    log=$(mktemp)
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -y -q)
    if ! as_root "${apt[@]}" update >"$log" 2>&1 </dev/null ||
        ! as_root "${apt[@]}" install --no-install-recommends "${missing[@]}" >>"$log" 2>&1 </dev/null; then
        tail -n 20 "$log" >&2
        rm -f "$log"
        fail "could not install: ${missing[*]}"
    fi
    rm -f "$log"
    say "Installed ${#missing[@]} packages."
}
