# The Python package's source package. Source it after common.sh.

# make_sdist PYTHON FOLDER: makes the source package of the tree's own files, those not yet committed too. Elsewhere
# the build folder is searched as well, and Wine's links lead from there to the whole machine.
make_sdist() {
    local copy
    copy=$(mktemp -d)
    own_files | tar -cf - -T - | tar -xf - -C "$copy"
    (cd "$copy" && "$1" -c "import scikit_build_core.build as build; build.build_sdist('$2')")
    rm -rf "$copy"
}
