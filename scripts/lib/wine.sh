# Wine for the tests of the Windows build. Source it after common.sh.

wine_server=/usr/lib/wine/wineserver64

# start_wine: a server that stays, else every program waits for one to start and end. Its settings lie in
# build/wine; it ends with stop_wine, or by itself after two idle minutes.
start_wine() {
    export WINEPREFIX=$PWD/build/wine
    mkdir -p "$WINEPREFIX"
    "$wine_server" -p120 >/dev/null 2>&1 </dev/null
    scripts/run_with_wine wineboot -i >/dev/null 2>&1 </dev/null || fail "Wine does not start"
}

stop_wine() {
    "$wine_server" -k >/dev/null 2>&1 </dev/null || true
}
