#include "plain/PlainPrincipalBox.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "TeskDataBasic/UMatrix4.h"

namespace {

const double kTolerance = static_cast<double>(1e-5f);

double wide(float value) {
    return static_cast<double>(value);
}

UMatrix4<float> covariance(const std::vector<UPoint3<float>>& points) {
    const float n = static_cast<float>(points.size());
    std::vector<UVector3<float>> q;
    for (const UPoint3<float>& p : points) q.emplace_back(p.x, p.y, p.z);
    UVector3<float> mean;
    for (const UVector3<float>& v : q) mean += v;
    mean /= n;
    for (UVector3<float>& v : q) v -= mean;
    UMatrix4<float> matrix;
    for (int i = 0; i < 3; ++i) {
        for (int j = i; j < 3; ++j) {
            matrix.at(i, j) = 0.0f;
            for (const UVector3<float>& v : q) matrix.at(i, j) += v[j] * v[i];
            matrix.at(i, j) /= n;
            matrix.at(j, i) = matrix.at(i, j);
        }
    }
    return matrix;
}

/// Takes A to J·A·Jᵀ and V to J·V, where J has the rows (c, s) and (s, −c) at the indices p and q.
void reflect(UMatrix4<float>& a, UMatrix4<float>& v, int p, int q, float c, float s) {
    for (int k = 0; k < 3; ++k) {
        const float atP = a.at(p, k);
        const float atQ = a.at(q, k);
        a.at(p, k) = c * atP + s * atQ;
        a.at(q, k) = s * atP - c * atQ;
    }
    for (int k = 0; k < 3; ++k) {
        const float atP = a.at(k, p);
        const float atQ = a.at(k, q);
        a.at(k, p) = c * atP + s * atQ;
        a.at(k, q) = s * atP - c * atQ;
    }
    for (int row = 1; row < 3; ++row) {
        for (int col = 0; col < row; ++col) a.at(col, row) = a.at(row, col);
    }
    for (int k = 0; k < 3; ++k) {
        const float atP = v.at(p, k);
        const float atQ = v.at(q, k);
        v.at(p, k) = c * atP + s * atQ;
        v.at(q, k) = s * atP - c * atQ;
    }
}

void visitPair(UMatrix4<float>& a, UMatrix4<float>& v, int p, int q) {
    const float below = a.at(q, p);
    if (wide(std::fabs(below)) < kTolerance) {
        a.at(q, p) = 0.0f;
        a.at(p, q) = 0.0f;
        return;
    }
    const float diff = a.at(p, p) - a.at(q, q);
    const float ad = std::fabs(diff);
    float c = 0.70710677f;
    float s = 0.70710677f;
    if (wide(ad) > kTolerance) {
        const float t = 2.0f * below * ad / diff;
        const float r = static_cast<float>(std::sqrt(wide(t * t + ad * ad)));
        c = static_cast<float>(std::sqrt(wide((ad / r + 1.0f) * 0.5f)));
        s = t / (2.0f * c * r);
    }
    reflect(a, v, p, q, c, s);
}

/// Sweeps until the sum of the squared eigenvalues stands still; the rows of V are the vectors.
void sweepUntilStill(UMatrix4<float>& a, UMatrix4<float>& v) {
    float previous = 0.0f;
    for (int sweep = 0; sweep < 64; ++sweep) {
        visitPair(a, v, 0, 1);
        visitPair(a, v, 0, 2);
        visitPair(a, v, 1, 2);
        const float sum =
            a.at(0, 0) * a.at(0, 0) + a.at(1, 1) * a.at(1, 1) + a.at(2, 2) * a.at(2, 2);
        if (!std::isfinite(sum)) return;
        if (wide(std::fabs(sum)) < kTolerance) return;
        if (std::fabs(1.0 - wide(previous) / wide(sum)) < kTolerance) return;
        previous = sum;
    }
}

std::array<int, 3> axisOrder(float l0, float l1, float l2) {
    if (l1 >= l0) {
        if (l1 <= l2) return {2, 1, 0};
        if (l2 > l0) return {1, 0, 2};
        return {1, 2, 0};
    }
    if (l0 > l2) {
        if (l2 > l1) return {0, 2, 1};
        return {0, 1, 2};
    }
    return {2, 0, 1};
}

}  // namespace

OrientedBox3 plainPrincipalBox(const std::vector<UPoint3<float>>& points) {
    UPoint3<float> mean;
    for (const UPoint3<float>& p : points) mean += p;
    mean = mean / static_cast<float>(points.size());

    UMatrix4<float> a = covariance(points);
    UMatrix4<float> v;
    sweepUntilStill(a, v);
    std::array<UVector3<float>, 3> e;
    for (int i = 0; i < 3; ++i) e[i] = {v.at(i, 0), v.at(i, 1), v.at(i, 2)};
    if (((e[0] * e[1]) | e[2]) < 0.0f) e[2] = {-e[2].x, -e[2].y, -e[2].z};

    OrientedBox3 box;
    const std::array<int, 3> order = axisOrder(a.at(0, 0), a.at(1, 1), a.at(2, 2));
    for (int i = 0; i < 3; ++i) box.axis[i] = e[order[i]];
    box.axis[0].Normalize();
    box.axis[1] = box.axis[1] - ((box.axis[1] * box.axis[0]) * box.axis[0]);
    box.axis[1].Normalize();
    box.axis[2] = box.axis[0].Cross(box.axis[1]);

    const float infinite = std::numeric_limits<float>::infinity();
    UVector3<float> min(infinite, infinite, infinite);
    UVector3<float> max(-infinite, -infinite, -infinite);
    for (const UPoint3<float>& p : points) {
        const UVector3<float> r = p - mean;
        for (int k = 0; k < 3; ++k) {
            const float d = r | box.axis[k];
            if (min[k] > d) min[k] = d;
            if (d > max[k]) max[k] = d;
        }
    }
    const UVector3<float> mid = (max - min) / 2.0f + min;
    const UPoint3<float> center =
        mean + box.axis[0] * mid[0] + box.axis[1] * mid[1] + box.axis[2] * mid[2];
    box.center = {center.x, center.y, center.z};
    box.extent = max - min;
    return box;
}
