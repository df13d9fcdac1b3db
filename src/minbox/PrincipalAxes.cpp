#include "PrincipalAxes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "BoxCandidate.h"

namespace {

using Vector3 = UVector3<float>;

/// Off-diagonal entries below it count as zero, and so does progress from sweep to sweep.
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

/// 1, or a power of two by which to divide coordinates so large that their fourth powers overflow.
float unitFor(const UPoint3<float>* points, int n) {
    constexpr int kLargest = 29;
    float largest = 0.0f;
    for (int i = 0; i < n; ++i) {
        for (int k = 0; k < 3; ++k) largest = std::max(largest, std::fabs(points[i][k]));
    }
    int exponent = 0;
    std::frexp(largest, &exponent);
    return exponent <= kLargest ? 1.0f : std::ldexp(1.0f, exponent - kLargest);
}

bool areFinite(const UPoint3<float>* points, int n) {
    for (int i = 0; i < n; ++i) {
        for (int k = 0; k < 3; ++k) {
            if (!std::isfinite(points[i][k])) return false;
        }
    }
    return true;
}

bool isFinite(const OrientedBox3& box) {
    // One sum that any infinite or undefined component spoils.
    float sum = 0.0f;
    for (int k = 0; k < 3; ++k) {
        sum += (box.center[k] - box.center[k]) + (box.extent[k] - box.extent[k]);
        for (const Vector3& axis : box.axis) sum += axis[k] - axis[k];
    }
    return sum == 0.0f;
}

UPoint3<float> meanOf(const UPoint3<float>* points, int n) {
    UPoint3<float> sum;
    for (int i = 0; i < n; ++i) sum += points[i];
    return sum / static_cast<float>(n);
}

/// Right-handed unit axes, along the eigenvectors in the order of the box's axes.
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

void setSize(const UPoint3<float>* points, int n, const UPoint3<float>& mean, OrientedBox3& box) {
    constexpr float kFar = std::numeric_limits<float>::infinity();
    Vector3 low(kFar, kFar, kFar);
    Vector3 high(-kFar, -kFar, -kFar);
    for (int i = 0; i < n; ++i) {
        const Vector3 r = points[i] - mean;
        for (int k = 0; k < 3; ++k) {
            const float d = r | box.axis[k];
            if (low[k] > d) low[k] = d;
            if (d > high[k]) high[k] = d;
        }
    }
    UPoint3<float> center = mean;
    for (int k = 0; k < 3; ++k) {
        const float middle = (high[k] - low[k]) / 2.0f + low[k];
        center = center + box.axis[k] * middle;
        box.extent[k] = high[k] - low[k];
    }
    box.center = {center.x, center.y, center.z};
}

OrientedBox3 boxOf(const UPoint3<float>* points, int n) {
    OrientedBox3 box;
    const Eigenvectors eigen = eigenvectorsOf(covarianceOf(points, n));
    setFrame(eigen, box);
    setSize(points, n, meanOf(points, n), box);
    return box;
}

OrientedBox3 scaledBoxOf(const UPoint3<float>* points, int n, float unit) {
    std::vector<UPoint3<float>> scaled(points, points + n);
    for (UPoint3<float>& p : scaled) p = p / unit;
    OrientedBox3 box = boxOf(scaled.data(), n);
    box.center = box.center * unit;
    box.extent = box.extent * unit;
    return box;
}

}  // namespace

UMatrix4<float> covarianceOf(const UPoint3<float>* points, int n) {
    std::vector<Vector3> offsets;
    offsets.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) offsets.emplace_back(points[i].x, points[i].y, points[i].z);
    Vector3 mean;
    for (const Vector3& q : offsets) mean += q;
    mean /= static_cast<float>(n);
    for (Vector3& q : offsets) q -= mean;
    UMatrix4<float> covariance;
    for (int i = 0; i < 3; ++i) {
        for (int j = i; j < 3; ++j) {
            float sum = 0.0f;
            for (const Vector3& q : offsets) sum += q[j] * q[i];
            covariance.at(i, j) = sum / static_cast<float>(n);
            covariance.at(j, i) = covariance.at(i, j);
        }
    }
    return covariance;
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
    if (points == nullptr || n < 1 || !areFinite(points, n)) return noBox();
    const float unit = unitFor(points, n);
    const OrientedBox3 box = unit == 1.0f ? boxOf(points, n) : scaledBoxOf(points, n, unit);
    return isFinite(box) ? box : noBox();
}
