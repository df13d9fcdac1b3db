#include "minbox/axes/PrincipalAxes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "TeskCommon/Assert.h"
#include "minbox/axes/FloatQuad.h"
#include "minbox/fit/BoxFit.h"

namespace Tesk::minbox {
namespace {

using Vector3 = UVector3<float>;

/// Smaller off-diagonal entries, and smaller changes from sweep to sweep, count as zero.
constexpr float kSmall = 1e-5f;
/// Never reached on finite input: the sweeps converge quadratically.
constexpr int kMaxSweeps = 64;

/// A reflection in the plane of two indices, with the rows (c, s) and (s, −c).
struct Reflection {
    float c;
    float s;

    void apply(float& x, float& y) const {
        const float old = x;
        x = c * old + s * y;
        y = s * old - c * y;
    }
};

float rootInDouble(float value) {
    return static_cast<float>(std::sqrt(static_cast<double>(value)));
}

/// The reflection that brings entry (q, p) to zero.
Reflection reflectionFor(const UMatrix4<float>& a, int p, int q) {
    const float difference = a.at(p, p) - a.at(q, q);
    const float size = std::fabs(difference);
    if (!(size > kSmall)) return {0.70710677f, 0.70710677f};
    const float t = 2.0f * a.at(q, p) * size / difference;
    const float r = rootInDouble(t * t + size * size);
    const float c = rootInDouble((size / r + 1.0f) * 0.5f);
    return {c, t / (2.0f * c * r)};
}

/// A becomes J A Jᵀ, V becomes J V.
void reflect(const Reflection& j, int p, int q, UMatrix4<float>& a, UMatrix4<float>& v) {
    for (int k = 0; k < 3; ++k) j.apply(a.at(p, k), a.at(q, k));
    for (int k = 0; k < 3; ++k) j.apply(a.at(k, p), a.at(k, q));
    for (int k = 0; k < 3; ++k) j.apply(v.at(p, k), v.at(q, k));
    for (int row = 1; row < 3; ++row) {
        for (int col = 0; col < row; ++col) a.at(col, row) = a.at(row, col);
    }
}

void sweep(UMatrix4<float>& a, UMatrix4<float>& v) {
    constexpr int kPairs[3][2] = {{0, 1}, {0, 2}, {1, 2}};
    for (const auto& [p, q] : kPairs) {
        if (std::fabs(a.at(q, p)) < kSmall) {
            a.at(q, p) = 0.0f;
            a.at(p, q) = 0.0f;
        } else {
            reflect(reflectionFor(a, p, q), p, q, a, v);
        }
    }
}

/// Calls visit(FloatQuad) for all points in their order.
template <class Visit>
void forEachPoint(const UPoint3<float>* points, int n, Visit visit) {
    TESK_ASSERT(points != nullptr && n > 0);
    for (int i = 0; i + 1 < n; ++i) visit(FloatQuad::read(points[i]));
    visit(FloatQuad::of(points[n - 1]));
}

/// The results of one pass over the points.
struct Survey {
    Vector3 mean;
    float largest = 0.0f;  ///< magnitude of a coordinate; infinite or NaN if one is
};

Survey survey(const UPoint3<float>* points, int n) {
    FloatQuad sum(0.0f);
    FloatQuad farthest(0.0f);
    forEachPoint(points, n, [&](const FloatQuad& p) {
        sum = sum + p;
        farthest = p.orFarther(farthest);
    });
    const FloatQuad x = farthest.spread<0>();
    const FloatQuad y = farthest.spread<1>();
    const FloatQuad z = farthest.spread<2>();
    return {sum.vector() / static_cast<float>(n), x.orFarther(y.orFarther(z)).vector().x};
}

/// The power of two by which to divide coordinates so large that their fourth powers overflow; 1
/// for others.
float unitFor(float largest) {
    constexpr int kLargest = 29;
    int exponent = 0;
    std::frexp(largest, &exponent);
    return exponent <= kLargest ? 1.0f : std::ldexp(1.0f, exponent - kLargest);
}

bool isFinite(const OrientedBox3& box) {
    // Any component that is infinite or NaN makes the sum NaN.
    float sum = 0.0f;
    for (int k = 0; k < 3; ++k) {
        sum += (box.center[k] - box.center[k]) + (box.extent[k] - box.extent[k]);
        for (const Vector3& axis : box.axis) sum += axis[k] - axis[k];
    }
    return sum == 0.0f;
}

/// Each sum goes over the points in their order; SIMD lanes hold several sums.
UMatrix4<float> covarianceAbout(const Vector3& mean, const UPoint3<float>* points, int n) {
    const FloatQuad middle(mean);
    FloatQuad byX(0.0f);
    FloatQuad byY(0.0f);
    FloatQuad byZ(0.0f);
    forEachPoint(points, n, [&](const FloatQuad& p) {
        const FloatQuad q = p - middle;
        byX = byX + q * q.spread<0>();
        byY = byY + q * q.spread<1>();
        byZ = byZ + q * q.spread<2>();
    });
    const std::array<Vector3, 3> sums = {byX.vector(), byY.vector(), byZ.vector()};
    UMatrix4<float> covariance;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            covariance.at(i, j) = sums[static_cast<std::size_t>(j)][i] / static_cast<float>(n);
        }
    }
    return covariance;
}

/// Sets right-handed unit axes along the eigenvectors.
void setFrame(const Eigenvectors& eigen, OrientedBox3& box) {
    const std::array<int, 3> order = axisOrder(eigen.values);
    const auto vector = [&](std::size_t i) {
        return eigen.vectors[static_cast<std::size_t>(order[i])];
    };
    box.axis[0] = vector(0).GetNormal();
    Vector3 second = vector(1);
    second = second - (second * box.axis[0]) * box.axis[0];
    box.axis[1] = second.GetNormal();
    box.axis[2] = box.axis[0].Cross(box.axis[1]);
}

void setSize(const UPoint3<float>* points, int n, const Vector3& mean, OrientedBox3& box) {
    constexpr float kFar = std::numeric_limits<float>::infinity();
    const auto& [axis0, axis1, axis2] = box.axis;
    // What a coordinate adds to the projections on the three axes.
    const FloatQuad fromX(Vector3(axis0.x, axis1.x, axis2.x));
    const FloatQuad fromY(Vector3(axis0.y, axis1.y, axis2.y));
    const FloatQuad fromZ(Vector3(axis0.z, axis1.z, axis2.z));
    const FloatQuad middle(mean);
    FloatQuad lowest(kFar);
    FloatQuad highest(-kFar);
    forEachPoint(points, n, [&](const FloatQuad& p) {
        const FloatQuad r = p - middle;
        const FloatQuad d = r.spread<0>() * fromX + r.spread<1>() * fromY + r.spread<2>() * fromZ;
        lowest = d.orLess(lowest);
        highest = d.orGreater(highest);
    });
    const Vector3 low = lowest.vector();
    const Vector3 high = highest.vector();
    Vector3 center = mean;
    for (int k = 0; k < 3; ++k) {
        const float along = (high[k] - low[k]) / 2.0f + low[k];
        center = center + box.axis[k] * along;
        box.extent[k] = high[k] - low[k];
    }
    box.center = center;
}

OrientedBox3 boxAbout(const Vector3& mean, const UPoint3<float>* points, int n) {
    OrientedBox3 box;
    setFrame(eigenvectorsOf(covarianceAbout(mean, points, n)), box);
    setSize(points, n, mean, box);
    return box;
}

OrientedBox3 scaledBoxOf(const UPoint3<float>* points, int n, float unit) {
    std::vector<UPoint3<float>> scaled(points, points + n);
    for (UPoint3<float>& p : scaled) p = p / unit;
    OrientedBox3 box = boxAbout(survey(scaled.data(), n).mean, scaled.data(), n);
    box.center = box.center * unit;
    box.extent = box.extent * unit;
    return box;
}

}  // namespace

UMatrix4<float> covarianceOf(const UPoint3<float>* points, int n) {
    return covarianceAbout(survey(points, n).mean, points, n);
}

Eigenvectors eigenvectorsOf(UMatrix4<float> matrix) {
    UMatrix4<float> v;
    float before = 0.0f;
    Eigenvectors eigen;
    for (int i = 0; i < kMaxSweeps; ++i) {
        sweep(matrix, v);
        for (int k = 0; k < 3; ++k) eigen.values[static_cast<std::size_t>(k)] = matrix.at(k, k);
        const auto& [l0, l1, l2] = eigen.values;
        const float sum = l0 * l0 + l1 * l1 + l2 * l2;
        eigen.isFinite = std::isfinite(sum);
        if (!eigen.isFinite || std::fabs(sum) < kSmall) break;
        const double change = 1.0 - static_cast<double>(before) / static_cast<double>(sum);
        if (std::fabs(change) < static_cast<double>(kSmall)) break;
        before = sum;
    }
    for (int k = 0; k < 3; ++k) {
        eigen.vectors[static_cast<std::size_t>(k)] = {v.at(k, 0), v.at(k, 1), v.at(k, 2)};
    }
    auto& [e0, e1, e2] = eigen.vectors;
    if (((e0 * e1) | e2) < 0.0f) e2 = {-e2.x, -e2.y, -e2.z};
    return eigen;
}

std::array<int, 3> axisOrder(const std::array<float, 3>& eigenvalues) {
    const auto& [l0, l1, l2] = eigenvalues;
    if (l1 >= l0) {
        if (l1 <= l2) return {2, 1, 0};
        // Not by descending eigenvalue: hosts rely on this order.
        return l2 > l0 ? std::array{1, 0, 2} : std::array{1, 2, 0};
    }
    if (l0 > l2) return l2 > l1 ? std::array{0, 2, 1} : std::array{0, 1, 2};
    return {2, 0, 1};
}

OrientedBox3 principalAxesBox(const UPoint3<float>* points, int n) {
    if (points == nullptr || n < 1) return noBox();
    const auto [mean, largest] = survey(points, n);
    if (!std::isfinite(largest)) return noBox();
    const float unit = unitFor(largest);
    const OrientedBox3 box =
        unit == 1.0f ? boxAbout(mean, points, n) : scaledBoxOf(points, n, unit);
    return isFinite(box) ? box : noBox();
}

}  // namespace Tesk::minbox
