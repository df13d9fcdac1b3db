#include "placement/BoxPlacement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "MinBoundingBox.h"
#include "OrientOptimizer.h"
#include "TeskCommon/Assert.h"
#include "TeskMeshData/TeskMath.h"

namespace Tesk::placement {
namespace {

using Vector3 = UVector3<float>;

/// All vertices of the mesh's list, deleted ones too, where its matrix places them.
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

/// The indices of a box's axes by ascending extent; equal extents keep their order.
std::array<int, 3> axesByExtent(const OrientedBox3& box) {
    std::array<int, 3> order = {0, 1, 2};
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return box.extent[a] < box.extent[b]; });
    return order;
}

/// The rotation of x, y and z, orthogonal unit vectors, onto the coordinate axes; x is reversed if
/// the three are left-handed.
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

/// Whether there is a box: if not, all its axes are the same.
bool isBox(const OrientedBox3& box) {
    return !(box.axis[0] == box.axis[1]);
}

bool isFinite(const UPoint3<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The centre of the mesh's box or, if a vertex that is not finite spoils that, of the box of the
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
    TESK_ASSERT(mesh != nullptr);
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

}  // namespace Tesk::placement

void OrientOptimizer::calculateOrients_minBoundingBox(MeshKernel* mesh, UMatrix4<float>& matrix,
                                                      std::function<void(int)> progress) {
    Tesk::placement::placeByMinBox(mesh, matrix, progress, /*layFlat=*/true);
}
