#pragma once

#include <cmath>

/// A direction or difference in space. Default-constructed, it is the zero vector.
template <class T>
class UVector3 {
 public:
    constexpr UVector3() = default;
    constexpr UVector3(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}

    /// Component 0, 1 or 2.
    constexpr T& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
    constexpr T operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }

    constexpr UVector3 operator+(const UVector3& b) const { return {x + b.x, y + b.y, z + b.z}; }
    constexpr UVector3 operator-(const UVector3& b) const { return {x - b.x, y - b.y, z - b.z}; }
    constexpr UVector3 operator*(T s) const { return {x * s, y * s, z * s}; }

    /// Divides each component.
    constexpr UVector3 operator/(T s) const { return {x / s, y / s, z / s}; }

    constexpr UVector3& operator+=(const UVector3& b) { return *this = *this + b; }
    constexpr UVector3& operator-=(const UVector3& b) { return *this = *this - b; }
    constexpr UVector3& operator*=(T s) { return *this = *this * s; }
    constexpr UVector3& operator/=(T s) { return *this = *this / s; }

    /// The cross product.
    constexpr UVector3 operator*(const UVector3& b) const {
        return {y * b.z - z * b.y, z * b.x - x * b.z, x * b.y - y * b.x};
    }
    constexpr UVector3 Cross(const UVector3& b) const { return *this * b; }

    /// The same vector in another precision.
    template <class Other>
    constexpr UVector3<Other> As() const {
        return {static_cast<Other>(x), static_cast<Other>(y), static_cast<Other>(z)};
    }

    /// The dot product, summed in the order x, y, z.
    constexpr T operator|(const UVector3& b) const { return x * b.x + y * b.y + z * b.z; }
    constexpr T Dot(const UVector3& b) const { return *this | b; }

    /// The Euclidean length, computed in double: the squares of floats neither overflow nor vanish.
    T GetLength() const { return static_cast<T>(lengthAsDouble()); }

    /// Whether all components are exactly zero.
    constexpr bool IsZeroLength() const { return x == 0 && y == 0 && z == 0; }

    /// This vector divided by its length; the zero vector stays zero. Computed in double, each
    /// component rounded once.
    UVector3 GetNormal() const {
        const double length = lengthAsDouble();
        if (length == 0.0) return *this;
        const auto divided = [length](T component) {
            return static_cast<T>(static_cast<double>(component) / length);
        };
        return {divided(x), divided(y), divided(z)};
    }

    /// GetNormal() in place.
    void Normalize() { *this = GetNormal(); }

    constexpr bool operator==(const UVector3&) const = default;

    T x = 0;
    T y = 0;
    T z = 0;

 private:
    double lengthAsDouble() const {
        const UVector3<double> wide = As<double>();
        return std::sqrt(wide | wide);
    }
};
