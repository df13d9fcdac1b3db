#pragma once

#include <algorithm>
#include <string_view>

namespace Tesk::files {

inline char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether a token is a keyword, itself in lower case, whatever the token's case.
inline bool isKeyword(std::string_view token, std::string_view keyword) {
    return token.size() == keyword.size() &&
           std::equal(token.begin(), token.end(), keyword.begin(),
                      [](char c, char k) { return lowered(c) == k; });
}

/// Whether a keyword occurs anywhere in a text.
inline bool hasKeyword(std::string_view text, std::string_view keyword) {
    return std::search(text.begin(), text.end(), keyword.begin(), keyword.end(),
                       [](char c, char k) { return lowered(c) == k; }) != text.end();
}

}  // namespace Tesk::files
