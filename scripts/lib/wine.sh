# Wine for the tests of the Windows build. Source it after common.sh.

wine_server=/usr/lib/wine/wineserver64

# start_wine: a server that stays, else every program waits for one to start, and some meet one that is
# just ending and fail. Its settings lie in build/wine; it ends with stop_wine, or by itself after an idle
# hour, which is longer than a build takes.
start_wine() {
    export WINEPREFIX=$PWD/build/wine
    mkdir -p "$WINEPREFIX"
    "$wine_server" -p3600 >/dev/null 2>&1 </dev/null || true # one that runs already will do
    scripts/run_with_wine wineboot -i >/dev/null 2>&1 </dev/null || fail "Wine does not start"
}

stop_wine() {
    "$wine_server" -k >/dev/null 2>&1 </dev/null || true
}
