# Licence texts for packages. Source it after common.sh.

# licences FOLDER PACKAGE...: collects the licence texts of the libraries that THIRD_PARTY.md lists, as
# Debian's packages state them.
licences() {
    local folder=$1 package
    shift
    rm -rf "$folder"
    mkdir -p "$folder"
    for package in "$@"; do
        cp "/usr/share/doc/$package/copyright" "$folder/$package.txt"
    done
    # Debian ships the hash map inside another package, whose copyright file does not mention it.
    sed '/^#ifndef/,$d' /usr/include/mash/robin_hood.h >"$folder/robin-hood-hashing.txt"
    grep -q 'MIT License' "$folder/robin-hood-hashing.txt" || fail "robin_hood.h states no licence"
}
