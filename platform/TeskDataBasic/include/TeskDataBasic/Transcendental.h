#pragma once

#include <array>
#include <cmath>
#include <numbers>

/// Sine, cosine, arc cosine and arc tangent with the same bits on every platform.
///
/// The C library's versions differ in the last place between platforms, and even between
/// processors. These use only + - * / and sqrt on doubles, which IEEE 754 fixes, and stay within
/// about one unit in the last place of a double; rounded to float they are the correctly rounded
/// values for practically every argument.
namespace Tesk {
namespace detail {

/// Taylor coefficients of asin: (2n)! / (4^n (n!)^2 (2n+1)).
inline constexpr auto kArcSine = [] {
    std::array<double, 27> c{};
    double binomial = 1.0;
    for (int n = 0; n < static_cast<int>(c.size()); ++n) {
        c[static_cast<std::size_t>(n)] = binomial / (2 * n + 1);
        binomial = binomial * (2 * n + 1) / (2 * n + 2);
    }
    return c;
}();

/// asin(x) for |x| <= 1/2, where the terms after the 27th add less than 1e-17.
constexpr double arcSineSmall(double x) {
    const double square = x * x;
    double sum = 0.0;
    for (auto c = kArcSine.rbegin(); c != kArcSine.rend() - 1; ++c) sum = (sum + *c) * square;
    return x + x * sum;
}

/// sin(r) for |r| <= pi/4 (+ the rounding of the reduction).
constexpr double sineSmall(double r) {
    const double square = r * r;
    double sum = 0.0;
    for (int n = 19; n >= 3; n -= 2) sum = (1.0 + sum) * (-square / (n * (n - 1)));
    return r + r * sum;
}

/// cos(r) for |r| <= pi/4 (+ the rounding of the reduction).
constexpr double cosineSmall(double r) {
    const double square = r * r;
    double sum = 0.0;
    for (int n = 20; n >= 4; n -= 2) sum = (1.0 + sum) * (-square / (n * (n - 1)));
    return 1.0 - (0.5 * square) * (1.0 + sum);
}

/// An angle as quadrant * pi/2 + rest with |rest| <= pi/4.
struct ReducedAngle {
    int quadrant;  ///< 0..3
    double rest;
};

/// Subtracts multiples of pi/2, which is given in three parts so that their products with a
/// quadrant number below 2^20 are exact.
inline ReducedAngle reduceAngle(double angleRad) {
    constexpr double kFirst = 0x1.921fb544p+0;
    constexpr double kSecond = 0x1.0b4611a6p-34;
    constexpr double kThird = 0x1.3198a2e037073p-69;
    const double turns = std::floor(angleRad * (2.0 / std::numbers::pi) + 0.5);
    const double rest = ((angleRad - turns * kFirst) - turns * kSecond) - turns * kThird;
    const double quadrant = turns - 4.0 * std::floor(turns / 4.0);
    return {static_cast<int>(quadrant), rest};
}

}  // namespace detail

/// cos(angle), accurate for |angle| up to about 1e6 rad; NaN for a non-finite angle.
inline double cosine(double angleRad) {
    if (!(std::fabs(angleRad) < 1e15)) return angleRad - angleRad;
    const auto [quadrant, rest] = detail::reduceAngle(angleRad);
    const double value = quadrant % 2 == 0 ? detail::cosineSmall(rest) : detail::sineSmall(rest);
    return quadrant == 1 || quadrant == 2 ? -value : value;
}

/// sin(angle); range and accuracy are those of cosine().
inline double sine(double angleRad) {
    if (!(std::fabs(angleRad) < 1e15)) return angleRad - angleRad;
    const auto [quadrant, rest] = detail::reduceAngle(angleRad);
    const double value = quadrant % 2 == 0 ? detail::sineSmall(rest) : detail::cosineSmall(rest);
    return quadrant >= 2 ? -value : value;
}

/// Arc cosine in [0, pi] rad. The argument is clamped to [-1, 1]; NaN stays NaN.
inline double arcCosine(double c) {
    constexpr double kPi = std::numbers::pi;
    if (c >= 1.0) return 0.0;
    if (c <= -1.0) return kPi;
    if (c > 0.5) return 2.0 * detail::arcSineSmall(std::sqrt((1.0 - c) * 0.5));
    if (c < -0.5) return kPi - 2.0 * detail::arcSineSmall(std::sqrt((1.0 + c) * 0.5));
    return kPi / 2 - detail::arcSineSmall(c);
}

/// The angle in [0, pi] rad whose sine (>= 0) and cosine are given up to a common positive factor.
/// Accurate at both ends of the range; 0 if both parts are 0.
inline double angleOf(double sinePart, double cosinePart) {
    const double length = std::sqrt(sinePart * sinePart + cosinePart * cosinePart);
    if (length == 0.0) return 0.0;
    const double s = sinePart / length;
    if (s > 0.5) return arcCosine(cosinePart / length);
    const double angle = detail::arcSineSmall(s);
    return cosinePart < 0.0 ? std::numbers::pi - angle : angle;
}

}  // namespace Tesk
