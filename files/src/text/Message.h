#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <type_traits>

namespace Tesk::files {

inline void appendText(std::string& text, std::string_view part) {
    text += part;
}

/// A number in the fewest digits that read back to it.
template <class Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
void appendText(std::string& text, Number value) {
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof(digits), value).ptr;
    text.append(digits, end);
}

/// The parts, texts and numbers, one after the other.
template <class... Parts>
std::string message(const Parts&... parts) {
    std::string text;
    (appendText(text, parts), ...);
    return text;
}

/// "1 byte", "2 bytes".
template <class Number>
std::string counted(Number count, std::string_view one, std::string_view many) {
    return message(count, " ", count == 1 ? one : many);
}

/// A token for a message: shortened, in quotes, and without control characters.
std::string quoted(std::string_view token);

/// A name in UTF-8 for a message: whole unless it is very long, in quotes, without control
/// characters.
std::string quotedName(std::string_view name);

}  // namespace Tesk::files
