#include "page/PageMesh.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "page/Base64.h"

namespace App {

namespace {

using Corners = std::vector<unsigned int>;

struct Thinned {
    Corners corners;
    double deviation = 0.0;  ///< mm
};

Corners cornersOf(const TriangleMesh& mesh) {
    Corners corners;
    corners.reserve(mesh.triangles.size() * 3);
    for (const auto& triangle : mesh.triangles) {
        for (const std::int32_t corner : triangle) {
            corners.push_back(static_cast<unsigned int>(corner));
        }
    }
    return corners;
}

/// Edge by edge; where that ends far above the limit, cell by cell.
Thinned thinned(const TriangleMesh& mesh, std::size_t limit) {
    const Corners whole = cornersOf(mesh);
    if (mesh.triangles.size() <= limit) return {whole, 0.0};

    const float* points = &mesh.positions[0].x;
    const std::size_t count = mesh.positions.size();
    constexpr std::size_t kStride = sizeof(mesh.positions[0]);
    Thinned result{Corners(whole.size()), 0.0};
    float error = 0.0f;
    std::size_t left =
        meshopt_simplify(result.corners.data(), whole.data(), whole.size(), points, count, kStride,
                         limit * 3, /*target_error=*/1.0f, /*options=*/0, &error);
    if (left > limit * 3 + limit / 2) {
        left = meshopt_simplifySloppy(result.corners.data(), whole.data(), whole.size(), points,
                                      count, kStride, limit * 3, /*target_error=*/1.0f, &error);
    }
    result.corners.resize(left);
    result.deviation = static_cast<double>(error * meshopt_simplifyScale(points, count, kStride));
    return result;
}

/// Numbers the vertices anew, in the order of their first use; the result names the old ones.
std::vector<unsigned int> renumber(Corners& corners, std::size_t vertexCount) {
    constexpr unsigned int kUnused = std::numeric_limits<unsigned int>::max();
    std::vector<unsigned int> numbers(vertexCount, kUnused), used;
    for (unsigned int& corner : corners) {
        unsigned int& number = numbers[corner];
        if (number == kUnused) {
            number = static_cast<unsigned int>(used.size());
            used.push_back(corner);
        }
        corner = number;
    }
    return used;
}

std::string base64Of(const Corners& numbers, int bits) {
    std::vector<unsigned char> bytes;
    bytes.reserve(numbers.size() * static_cast<std::size_t>(bits / 8));
    for (const unsigned int number : numbers) {
        for (int shift = 0; shift < bits; shift += 8) {
            bytes.push_back(static_cast<unsigned char>(number >> shift));
        }
    }
    return App::base64Of(bytes);
}

/// Where the numbers of an axis begin, and how far apart they are.
struct Scale {
    double origin = 0.0;
    double step = 0.0;
};

constexpr double kLastNumber = 65535.0;

Scale scaleOf(const TriangleMesh& mesh, const std::vector<unsigned int>& used,
              float UPoint3<float>::*axis) {
    float low = std::numeric_limits<float>::infinity(), high = -low;
    for (const unsigned int vertex : used) {
        low = std::min(low, mesh.positions[vertex].*axis);
        high = std::max(high, mesh.positions[vertex].*axis);
    }
    if (!(low <= high)) return {};
    return {low, (static_cast<double>(high) - static_cast<double>(low)) / kLastNumber};
}

unsigned int numberAt(float value, const Scale& scale) {
    if (!(scale.step > 0.0)) return 0;
    const double steps = (static_cast<double>(value) - scale.origin) / scale.step;
    return static_cast<unsigned int>(std::clamp(std::floor(steps + 0.5), 0.0, kLastNumber));
}

}  // namespace

Json pageMeshOf(const TriangleMesh& mesh, std::size_t limit) {
    Thinned kept = thinned(mesh, limit);
    const std::vector<unsigned int> used = renumber(kept.corners, mesh.positions.size());
    const Scale x = scaleOf(mesh, used, &UPoint3<float>::x);
    const Scale y = scaleOf(mesh, used, &UPoint3<float>::y);
    const Scale z = scaleOf(mesh, used, &UPoint3<float>::z);
    Corners numbers;
    numbers.reserve(used.size() * 3);
    for (const unsigned int vertex : used) {
        const UPoint3<float>& p = mesh.positions[vertex];
        for (const unsigned int number : {numberAt(p.x, x), numberAt(p.y, y), numberAt(p.z, z)}) {
            numbers.push_back(number);
        }
    }
    const int bits = used.size() <= 65536 ? 16 : 32;
    return {{"vertices", used.size()},
            {"triangles", kept.corners.size() / 3},
            {"sourceTriangles", mesh.triangles.size()},
            {"deviationMm", kept.deviation},
            {"originMm", {x.origin, y.origin, z.origin}},
            {"stepMm", {x.step, y.step, z.step}},
            {"positions", base64Of(numbers, 16)},
            {"indexBits", bits},
            {"indices", base64Of(kept.corners, bits)}};
}

}  // namespace App
