#pragma once

#include <optional>
#include <string_view>

namespace Tesk::files {

/// The float nearest to a decimal number by the rules of C, '.' as the decimal point, perhaps with
/// a plus sign in front; "nan" and "inf" are numbers too. Too large is infinite, too small is zero.
/// Nothing if the token is not a number.
std::optional<float> floatOf(std::string_view token);

/// The same in double.
std::optional<double> doubleOf(std::string_view token);

/// A whole number, perhaps with a sign. Nothing if the token is not one or does not fit.
std::optional<long long> wholeNumberOf(std::string_view token);

}  // namespace Tesk::files
