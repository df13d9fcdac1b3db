#include "ExactTurn.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace Tesk::hull {
namespace {

int signOf(double value) {
    return value > 0.0 ? 1 : value < 0.0 ? -1 : 0;
}

/// A double as the sum of two doubles of at most 26 bits. Products of such halves are exact.
struct Halves {
    explicit Halves(double value) {
        constexpr double kSplitter = 0x1p27 + 1.0;
        const double shifted = kSplitter * value;
        high = shifted - (shifted - value);
        low = value - high;
    }

    double high;
    double low;
};

/// The rounding error of a product, which is itself a double. No fused multiply-add is used,
/// because not every C library rounds it once. Source: T. J. Dekker, "A floating-point technique
/// for extending the available precision", Numerische Mathematik 18 (1971).
double restOfProduct(double a, double b, double product) {
    const Halves x(a);
    const Halves y(b);
    const double rest = ((x.high * y.high - product) + x.high * y.low) + x.low * y.high;
    return rest + x.low * y.low;
}

/// An exact sum of doubles, kept as components of ascending magnitude that do not overlap. Its sign
/// is that of the last component.
class Expansion {
 public:
    void addProduct(double a, double b) {
        const double product = a * b;
        add(restOfProduct(a, b, product));
        add(product);
    }

    int sign() const { return m_size == 0 ? 0 : signOf(m_components[m_size - 1]); }

 private:
    // Grows the expansion by one term, zero components left out.
    void add(double term) {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_size; ++i) {
            const double component = m_components[i];
            const double sum = term + component;
            const double componentPart = sum - term;
            const double rest = (term - (sum - componentPart)) + (component - componentPart);
            if (rest != 0.0) m_components[kept++] = rest;
            term = sum;
        }
        if (term != 0.0) m_components[kept++] = term;
        m_size = kept;
    }

    std::array<double, 12> m_components{};
    std::size_t m_size = 0;
};

int exactTurn(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
    Expansion determinant;
    determinant.addProduct(a.x, b.y);
    determinant.addProduct(-a.y, b.x);
    determinant.addProduct(b.x, c.y);
    determinant.addProduct(-b.y, c.x);
    determinant.addProduct(c.x, a.y);
    determinant.addProduct(-c.y, a.x);
    return determinant.sign();
}

}  // namespace

int turnOf(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
    const double left = (a.x - c.x) * (b.y - c.y);
    const double right = (a.y - c.y) * (b.x - c.x);
    const double determinant = left - right;
    // (3 + 16 u) u with u = 2^-53, rounded up.
    constexpr double kBound = 3.4e-16;
    if (std::fabs(determinant) > kBound * (std::fabs(left) + std::fabs(right))) {
        return signOf(determinant);
    }
    return exactTurn(a, b, c);
}

}  // namespace Tesk::hull
