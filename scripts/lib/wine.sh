# Wine for the tests of the Windows build. Source it after common.sh.

# start_wine: a server that stays, else every program waits for one to start and end; it ends with the
# script. Its settings lie in build/wine.
start_wine() {
    local server=/usr/lib/wine/wineserver64
    export WINEPREFIX=$PWD/build/wine
    mkdir -p "$WINEPREFIX"
    "$server" -p120 >/dev/null 2>&1 </dev/null
    trap '"'"$server"'" -k >/dev/null 2>&1 </dev/null || true' EXIT
    scripts/run_with_wine wineboot -i >/dev/null 2>&1 </dev/null ||
        fail "Wine does not start"
}
