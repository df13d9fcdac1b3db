#include "batch/Glob.h"

#include <optional>

namespace App {

namespace {

char folded(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// A set at the pattern's start.
struct Set {
    std::string_view members;
    bool isNegated = false;
    std::size_t length = 0;  ///< with its brackets
};

std::optional<Set> setAt(std::string_view pattern) {
    if (pattern.empty() || pattern[0] != '[') return std::nullopt;
    const bool isNegated = pattern.size() > 1 && (pattern[1] == '!' || pattern[1] == '^');
    const std::size_t begin = isNegated ? 2 : 1;
    // A "]" that comes first is a member.
    const std::size_t end = pattern.find(']', begin + 1);
    if (end == std::string_view::npos) return std::nullopt;
    return Set{pattern.substr(begin, end - begin), isNegated, end + 1};
}

bool holds(const Set& set, char c) {
    const std::string_view members = set.members;
    for (std::size_t i = 0; i < members.size(); ++i) {
        char last = members[i];
        if (i + 2 < members.size() && members[i + 1] == '-') last = members[i + 2];
        if (folded(members[i]) <= folded(c) && folded(c) <= folded(last)) return !set.isNegated;
        if (last != members[i]) i += 2;
    }
    return set.isNegated;
}

/// How many bytes of the pattern the byte of the name takes; 0 where they do not match.
std::size_t matchOne(std::string_view pattern, char c) {
    if (pattern.empty()) return 0;
    if (pattern[0] == '?') return c == '/' ? 0 : 1;
    if (const auto set = setAt(pattern)) return c != '/' && holds(*set, c) ? set->length : 0;
    return folded(pattern[0]) == folded(c) ? 1 : 0;
}

/// Where to go on if what follows a star turns out not to match.
struct Retry {
    std::string_view pattern;  ///< behind the star
    std::size_t at = 0;        ///< where in the name it was tried last
};

}  // namespace

bool globMatches(std::string_view pattern, std::string_view name) {
    std::optional<Retry> star;
    std::optional<Retry> doubleStar;
    std::size_t at = 0;
    while (at < name.size() || !pattern.empty()) {
        if (!pattern.empty() && pattern[0] == '*') {
            const bool crosses = pattern.starts_with("**");
            pattern.remove_prefix(crosses ? 2 : 1);
            (crosses ? doubleStar : star) = Retry{pattern, at};
            if (crosses) star.reset();
            continue;
        }
        const std::size_t taken = at < name.size() ? matchOne(pattern, name[at]) : 0;
        if (taken > 0) {
            pattern.remove_prefix(taken);
            ++at;
            continue;
        }
        // The star that came last takes one byte more; a single one none beyond a "/".
        if (star && (star->at >= name.size() || name[star->at] == '/')) star.reset();
        Retry* const retry = star ? &*star : doubleStar ? &*doubleStar : nullptr;
        if (retry == nullptr || retry->at >= name.size()) return false;
        at = ++retry->at;
        pattern = retry->pattern;
    }
    return true;
}

bool globMatchesFile(std::string_view pattern, std::string_view relativePath) {
    if (pattern.find('/') == std::string_view::npos) {
        relativePath.remove_prefix(relativePath.rfind('/') + 1);
    }
    // "**/" is any number of folders, none as well.
    const bool canDropFolders = pattern.starts_with("**/");
    return globMatches(pattern, relativePath) ||
           (canDropFolders && globMatches(pattern.substr(3), relativePath));
}

}  // namespace App
