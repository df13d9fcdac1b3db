#include <cmath>
#include <limits>

#include "PlainBoxes.h"

namespace Plain {

namespace {

using Vec3f = UVector3<float>;

/// The eigenvalues and eigenvectors of a symmetric 3 × 3 matrix.
struct Eigen {
    float values[3];
    Vec3f vectors[3];
};

Eigen decompose(float a[3][3]) {
    float v[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const int pairs[3][2] = {{0, 1}, {0, 2}, {1, 2}};
    float before = 0.0f;
    for (;;) {
        for (const auto& [p, q] : pairs) {
            const float off = a[q][p];
            if (std::fabs(off) < 1e-5f) {
                a[q][p] = a[p][q] = 0.0f;
                continue;
            }
            const float diff = a[p][p] - a[q][q];
            const float ad = std::fabs(diff);
            float c = 0.70710677f;
            float s = 0.70710677f;
            if (ad > 1e-5f) {
                const float t = 2.0f * off * ad / diff;
                const float r = static_cast<float>(std::sqrt(static_cast<double>(t * t + ad * ad)));
                c = static_cast<float>(std::sqrt(static_cast<double>((ad / r + 1.0f) * 0.5f)));
                s = t / (2.0f * c * r);
            }
            for (int k = 0; k < 3; ++k) {
                const float x = a[p][k];
                const float y = a[q][k];
                a[p][k] = c * x + s * y;
                a[q][k] = s * x - c * y;
            }
            for (int k = 0; k < 3; ++k) {
                const float x = a[k][p];
                const float y = a[k][q];
                a[k][p] = c * x + s * y;
                a[k][q] = s * x - c * y;
            }
            a[0][1] = a[1][0];
            a[0][2] = a[2][0];
            a[1][2] = a[2][1];
            for (int k = 0; k < 3; ++k) {
                const float x = v[p][k];
                const float y = v[q][k];
                v[p][k] = c * x + s * y;
                v[q][k] = s * x - c * y;
            }
        }
        const float sum = a[0][0] * a[0][0] + a[1][1] * a[1][1] + a[2][2] * a[2][2];
        if (std::fabs(sum) < 1e-5f) break;
        const double change = 1.0 - static_cast<double>(before) / static_cast<double>(sum);
        if (std::fabs(change) < static_cast<double>(1e-5f)) break;
        before = sum;
    }
    Eigen eigen{};
    for (int i = 0; i < 3; ++i) {
        eigen.values[i] = a[i][i];
        eigen.vectors[i] = {v[i][0], v[i][1], v[i][2]};
    }
    if (((eigen.vectors[0] * eigen.vectors[1]) | eigen.vectors[2]) < 0.0f) {
        const Vec3f e = eigen.vectors[2];
        eigen.vectors[2] = {-e.x, -e.y, -e.z};
    }
    return eigen;
}

}  // namespace

OrientedBox3 principalAxesBox(const std::vector<UPoint3<float>>& points) {
    const auto n = static_cast<float>(points.size());
    Vec3f mean;
    for (const UPoint3<float>& p : points) mean = mean + Vec3f(p.x, p.y, p.z);
    mean = {mean.x / n, mean.y / n, mean.z / n};
    float covariance[3][3];
    for (int i = 0; i < 3; ++i) {
        for (int j = i; j < 3; ++j) {
            covariance[i][j] = 0.0f;
            for (const UPoint3<float>& p : points) {
                const Vec3f q = Vec3f(p.x, p.y, p.z) - mean;
                covariance[i][j] += q[j] * q[i];
            }
            covariance[i][j] /= n;
            covariance[j][i] = covariance[i][j];
        }
    }
    const Eigen eigen = decompose(covariance);
    const auto& [l0, l1, l2] = eigen.values;
    int order[3] = {0, 1, 2};
    const auto set = [&](int a, int b, int c) {
        order[0] = a;
        order[1] = b;
        order[2] = c;
    };
    if (l1 >= l0 && l1 <= l2) set(2, 1, 0);
    if (l1 >= l0 && l1 > l2 && l2 > l0) set(1, 0, 2);
    if (l1 >= l0 && l1 > l2 && l2 <= l0) set(1, 2, 0);
    if (l1 < l0 && l0 > l2 && l2 > l1) set(0, 2, 1);
    if (l1 < l0 && l0 > l2 && l2 <= l1) set(0, 1, 2);
    if (l1 < l0 && l0 <= l2) set(2, 0, 1);
    OrientedBox3 box;
    for (int i = 0; i < 3; ++i) box.axis[i] = eigen.vectors[order[i]];
    box.axis[0].Normalize();
    box.axis[1] = box.axis[1] - (box.axis[1] * box.axis[0]) * box.axis[0];
    box.axis[1].Normalize();
    box.axis[2] = box.axis[0] * box.axis[1];
    const float infinity = std::numeric_limits<float>::infinity();
    float low[3] = {infinity, infinity, infinity};
    float high[3] = {-infinity, -infinity, -infinity};
    for (const UPoint3<float>& p : points) {
        const Vec3f r = Vec3f(p.x, p.y, p.z) - mean;
        for (int k = 0; k < 3; ++k) {
            const float d = r | box.axis[k];
            if (low[k] > d) low[k] = d;
            if (d > high[k]) high[k] = d;
        }
    }
    box.center = mean;
    for (int k = 0; k < 3; ++k) {
        box.center = box.center + box.axis[k] * ((high[k] - low[k]) / 2.0f + low[k]);
        box.extent[k] = high[k] - low[k];
    }
    return box;
}

}  // namespace Plain
