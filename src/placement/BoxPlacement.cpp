#include "placement/BoxPlacement.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "MinBoundingBox.h"
#include "OrientOptimizer.h"
#include "TeskMeshData/TeskMath.h"

namespace {

using Vector3 = UVector3<float>;

/// Every vertex in the mesh's list as placed, those marked as deleted too.
std::vector<UPoint3<float>> placedVertices(const MeshKernel& mesh) {
    const UMatrix4<float> placement = mesh.getMatrix();
    std::vector<UPoint3<float>> points;
    const UMesh<float>& list = *mesh.getMesh();
    points.reserve(static_cast<std::size_t>(list.VertexCount()));
    for (std::int32_t i = 0; i < list.VertexCount(); ++i) {
        points.push_back(list.Vertex(i)->P() * placement);
    }
    return points;
}

/// The places of a box's axes by ascending extent; equal extents keep their order.
std::array<int, 3> axesByExtent(const OrientedBox3& box) {
    std::multimap<float, int> byExtent;
    for (int i = 0; i < 3; ++i) byExtent.emplace(box.extent[i], i);
    std::array<int, 3> order{};
    std::size_t place = 0;
    for (const auto& [extent, axis] : byExtent) order[place++] = axis;
    return order;
}

/// The rotation that turns x, y and z, orthogonal unit vectors, onto the coordinate axes; x is
/// reversed where the three are left-handed.
UMatrix4<float> rotationOnto(Vector3 x, const Vector3& y, const Vector3& z) {
    const auto isOff = [](const Vector3& v, const Vector3& axis) {
        return static_cast<double>(TeskMath<float>::AngleBetween(v, axis)) != 0.0;
    };
    UMatrix4<float> rotation;
    if (!isOff(x, Vector3(1, 0, 0)) && !isOff(z, Vector3(0, 0, 1)) && !isOff(y, Vector3(0, 1, 0))) {
        return rotation;
    }
    const float handedness = x.Dot(y * z);
    if (static_cast<double>(handedness) < 1e-6) x = Vector3(0, 0, 0) - x;
    for (int i = 0; i < 3; ++i) {
        rotation.at(i, 0) = x[i];
        rotation.at(i, 1) = y[i];
        rotation.at(i, 2) = z[i];
    }
    return rotation;
}

/// Without points there is no box, and its axes are no frame.
bool isBox(const OrientedBox3& box) {
    return !(box.axis[0] == box.axis[1]);
}

bool isFinite(const UPoint3<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The centre of the mesh's box; where an infinite vertex leaves it none, that of the box of the
/// finite ones.
UPoint3<float> centerOf(MeshKernel& mesh, const std::vector<UPoint3<float>>& points) {
    const UPoint3<float> center = mesh.GetBox().Center();
    if (isFinite(center)) return center;
    UBox3<float> box;
    for (const UPoint3<float>& p : points) {
        if (isFinite(p)) box.Extend(p);
    }
    return box.Center();
}

}  // namespace

void placeByMinBox(MeshKernel* mesh, UMatrix4<float>& matrix,
                   const std::function<void(int)>& progress, bool layFlat) {
    MinBoundingBox boxOf(1);
    if (progress) boxOf.setCallBackFunction(progress);
    const std::vector<UPoint3<float>> points = placedVertices(*mesh);
    const OrientedBox3 box = boxOf(static_cast<int>(points.size()), points.data());
    const auto [small, middle, large] = axesByExtent(box);
    UMatrix4<float> rotation;
    if (isBox(box)) {
        rotation = layFlat ? rotationOnto(box.axis[large], box.axis[middle], box.axis[small])
                           : rotationOnto(box.axis[small], box.axis[middle], box.axis[large]);
    }
    const UPoint3<float> center = centerOf(*mesh, points);
    const UPoint3<float> origin;
    const auto toOrigin = UMatrix4<float>::CreateTransfMatrix(origin - center);
    const auto back = UMatrix4<float>::CreateTransfMatrix(center - origin);
    matrix = (toOrigin * rotation) * back;
}

void OrientOptimizer::calculateOrients_minBoundingBox(MeshKernel* mesh, UMatrix4<float>& matrix,
                                                      std::function<void(int)> progress) {
    placeByMinBox(mesh, matrix, progress, /*layFlat=*/true);
}
