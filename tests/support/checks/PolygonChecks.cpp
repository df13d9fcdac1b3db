#include "checks/PolygonChecks.h"

#include <cassert>
#include <cmath>
#include <cstdint>
#include <map>

namespace {

__extension__ using Unsigned128 = unsigned __int128;

/// A sum of doubles in fixed point, wide enough to lose nothing: digits of 32 bits, of which the
/// lowest counts 2^kLowest. Digits may be negative or too large until sign() carries them.
class ExactSum {
 public:
    void addProduct(double a, double b) {
        if (a == 0.0 || b == 0.0) return;
        int exponentA = 0;
        int exponentB = 0;
        const Unsigned128 wholeA = wholeOf(a, exponentA);
        const Unsigned128 wholeB = wholeOf(b, exponentB);
        const Unsigned128 product = wholeA * wholeB;
        // In two parts, each of which can be shifted by a digit.
        constexpr int kHalf = 64;
        const bool isPositive = (a > 0.0) == (b > 0.0);
        const int exponent = exponentA + exponentB;
        add(product & ~std::uint64_t{0}, exponent, isPositive);
        add(product >> kHalf, exponent + kHalf, isPositive);
    }

    int sign() const {
        std::int64_t carry = 0;
        bool isWhole = true;
        for (const std::int64_t digit : m_digits) {
            const std::int64_t sum = digit + carry;
            isWhole = isWhole && (sum & kMask) == 0;
            carry = sum >> kBits;
        }
        if (carry < 0) return -1;
        return carry > 0 || !isWhole ? 1 : 0;
    }

 private:
    static constexpr int kBits = 32;
    static constexpr std::int64_t kMask = (std::int64_t{1} << kBits) - 1;
    static constexpr int kLowest = -800;

    /// The magnitude as a whole number of 53 bits times a power of two.
    static Unsigned128 wholeOf(double value, int& exponent) {
        constexpr int kPrecision = 53;
        const double fraction = std::frexp(std::fabs(value), &exponent);
        exponent -= kPrecision;
        return static_cast<Unsigned128>(std::ldexp(fraction, kPrecision));
    }

    void add(Unsigned128 whole, int exponent, bool isPositive) {
        const int place = exponent - kLowest;
        assert(place >= 0 && place / kBits + 3 < static_cast<int>(m_digits.size()));
        Unsigned128 rest = whole << (place % kBits);
        for (auto i = static_cast<std::size_t>(place / kBits); rest != 0; ++i, rest >>= kBits) {
            const auto digit = static_cast<std::int64_t>(rest & Unsigned128{kMask});
            m_digits[i] += isPositive ? digit : -digit;
        }
    }

    std::array<std::int64_t, 46> m_digits{};
};

using PlanePoint = std::array<double, 2>;

/// 1 where a, b, c turn to the left, −1 to the right, 0 where they are in line.
int turnOf(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
    ExactSum areaTwice;
    const std::array<const PlanePoint*, 4> loop = {&a, &b, &c, &a};
    for (std::size_t i = 0; i < 3; ++i) {
        const auto& [x, y] = *loop[i];
        const auto& [nextX, nextY] = *loop[i + 1];
        areaTwice.addProduct(x, nextY);
        areaTwice.addProduct(-y, nextX);
    }
    return areaTwice.sign();
}

/// The finite points by ascending x, then y, with the lowest index of each.
std::map<PlanePoint, int> distinctPoints(const PlanePoints& points) {
    std::map<PlanePoint, int> distinct;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto& [x, y] = points[i];
        if (std::isfinite(x) && std::isfinite(y)) {
            distinct.emplace(points[i], static_cast<int>(i));
        }
    }
    return distinct;
}

/// The polygon of points without area; what it is for others does not matter.
std::vector<int> endsOf(const std::map<PlanePoint, int>& distinct) {
    if (distinct.empty()) return {};
    if (distinct.size() == 1) return {distinct.begin()->second};
    return {distinct.begin()->second, distinct.rbegin()->second};
}

bool areInLine(const std::map<PlanePoint, int>& distinct) {
    for (const auto& [p, index] : distinct) {
        if (turnOf(distinct.begin()->first, distinct.rbegin()->first, p) != 0) return false;
    }
    return true;
}

}  // namespace

std::string faultOfPolygon(const std::vector<int>& corners, const PlanePoints& points) {
    const std::map<PlanePoint, int> distinct = distinctPoints(points);
    if (areInLine(distinct)) {
        return corners == endsOf(distinct) ? "" : "the corners are not the ends";
    }
    if (corners.size() < 3) return "a point lies outside";
    for (const int corner : corners) {
        if (corner < 0 || corner >= static_cast<int>(points.size())) return "a corner is no point";
        const auto found = distinct.find(points[static_cast<std::size_t>(corner)]);
        if (found == distinct.end()) return "a corner is not finite";
        if (found->second != corner) return "a corner is not the first of its equals";
    }
    if (corners.front() != distinct.begin()->second) return "it does not begin at the lowest point";
    const auto at = [&](std::size_t i) {
        return points[static_cast<std::size_t>(corners[i % corners.size()])];
    };
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (turnOf(at(i), at(i + 1), at(i + 2)) <= 0) return "a corner is not convex";
        for (const auto& [p, index] : distinct) {
            if (turnOf(at(i), at(i + 1), p) < 0) return "a point lies outside";
        }
    }
    return "";
}
