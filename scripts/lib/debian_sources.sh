# Debian's source packages, of which libraries are built that Debian has not as we need them. Source it.

# The source packages' list: that of the machine's own packages, read as one of sources.
list_sources() { # folder
    local from=/etc/apt to=$1/parts file
    mkdir -p "$to" "$1/lists/partial"
    if [ -s "$from/sources.list" ]; then
        sed -n 's/^deb \(\[.*\] \)\?/deb-src \1/p' "$from/sources.list" >"$to/main.list"
    fi
    for file in "$from"/sources.list.d/*.sources; do
        [ ! -f "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$to/$(basename "$file")"
    done
    for file in "$from"/sources.list.d/*.list; do
        [ ! -f "$file" ] || sed -n 's/^deb \(\[.*\] \)\?/deb-src \1/p' "$file" >"$to/$(basename "$file")"
    done
}

fetch_sources() { # folder, package...
    local folder=$1
    shift
    list_sources "$folder"
    local apt=(apt-get -q -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$folder/parts"
        -o "Dir::State::lists=$folder/lists" -o APT::Sandbox::User=root)
    "${apt[@]}" update
    # A security update whose files a mirror has dropped is no reason to fail: the release's own serve.
    (cd "$folder" && "${apt[@]}" source "$@") || {
        rm -rf "$folder"/lists "$folder"/*.dsc "$folder"/*.tar.*
        mkdir -p "$folder/lists/partial"
        sed -i '/security/d' "$folder"/parts/*.list 2>/dev/null || true
        local file
        for file in "$folder"/parts/*.sources; do
            [ -f "$file" ] || continue
            awk 'BEGIN { RS = ""; ORS = "\n\n" } !/security/' "$file" >"$file.kept"
            mv "$file.kept" "$file"
        done
        "${apt[@]}" update
        (cd "$folder" && "${apt[@]}" source "$@")
    }
}
