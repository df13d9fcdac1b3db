#include "text/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace Tesk::files {

namespace {

std::string_view withoutPlus(std::string_view token) {
    if (token.size() > 1 && token[0] == '+' && token[1] != '-') token.remove_prefix(1);
    return token;
}

// from_chars tells overflow and underflow alike. What is left to tell apart is far beyond double's
// range, where the exponent's sign decides unless the digits alone are that many.
double outOfRange(std::string_view token) {
    const std::size_t exponent = token.find_first_of("eE");
    const bool hasExponent = exponent != token.npos && exponent + 1 < token.size();
    const std::size_t digit = token.find_first_of("123456789");
    const std::size_t point = token.find('.');
    const bool isTiny = hasExponent ? token[exponent + 1] == '-' : point < digit;
    const double value = isTiny ? 0.0 : std::numeric_limits<double>::infinity();
    return token[0] == '-' ? -value : value;
}

enum class Parsed { kSound, kOutOfRange, kNoNumber };

template <class Number>
Parsed parse(std::string_view token, Number& value) {
    const char* const last = token.data() + token.size();
    const auto [end, error] = std::from_chars(token.data(), last, value);
    if (end != last || error == std::errc::invalid_argument) return Parsed::kNoNumber;
    return error == std::errc() ? Parsed::kSound : Parsed::kOutOfRange;
}

}  // namespace

std::optional<double> doubleOf(std::string_view token) {
    const std::string_view digits = withoutPlus(token);
    double value = 0.0;
    const Parsed parsed = parse(digits, value);
    if (parsed == Parsed::kNoNumber) return std::nullopt;
    return parsed == Parsed::kSound ? value : outOfRange(digits);
}

std::optional<float> floatOf(std::string_view token) {
    const std::string_view digits = withoutPlus(token);
    float value = 0.0f;
    const Parsed parsed = parse(digits, value);
    if (parsed == Parsed::kNoNumber) return std::nullopt;
    return parsed == Parsed::kSound ? value : static_cast<float>(*doubleOf(digits));
}

std::optional<long long> wholeNumberOf(std::string_view token) {
    long long value = 0;
    if (parse(withoutPlus(token), value) != Parsed::kSound) return std::nullopt;
    return value;
}

}  // namespace Tesk::files
