# What every script starts from. Source it; it moves to the top of the tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

jobs=$(nproc 2>/dev/null || echo 2)
export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$jobs}
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$jobs}

say() { printf "%s\n" "$@"; }

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# The scripts build with presets; a build type or generator from outside would change what they mean.
unset CMAKE_GENERATOR CMAKE_BUILD_TYPE

# scratch_folder: makes a folder that goes away with the script, and names it in $scratch.
scratch_folder() {
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
}

# quietly LOG COMMAND...: shows the output only where the command fails.
quietly() {
    local log=$1
    shift
    if ! "$@" >"$log" 2>&1; then
        cat "$log"
        return 1
    fi
}

# build_preset PRESET [CMAKE OPTIONS...] [-- BUILD OPTIONS...]: configures and builds.
build_preset() {
    local preset=$1 configure=() log=build/$1.log
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        configure+=("$1")
        shift
    done
    [ $# -eq 0 ] || shift
    mkdir -p build
    say "Building (build/$preset) ..."
    quietly "$log" cmake --preset "$preset" "${configure[@]}" &&
        quietly "$log" cmake --build --preset "$preset" "$@"
}

# own_files PATTERN...: the tree's files, those not yet committed too.
own_files() {
    local file
    git ls-files --cached --others --exclude-standard -- "$@" | sort -u |
        while read -r file; do
            [ ! -f "$file" ] || printf '%s\n' "$file"
        done
}

# build_bench [TARGET...]: the benchmarks, in build/bench; all without arguments.
build_bench() {
    local targets=()
    [ $# -eq 0 ] || targets=(--target "$@")
    mkdir -p build
    quietly build/bench.log cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DTESK_BUILD_BENCH=ON -DTESK_BUILD_TESTS=OFF
    quietly build/bench.log cmake --build build/bench "${targets[@]}"
}
