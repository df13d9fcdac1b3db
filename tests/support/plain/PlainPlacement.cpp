#include "plain/PlainPlacement.h"

#include <map>

#include "TeskMeshData/TeskMath.h"

namespace {

bool isAlong(const UVector3<float>& axis, const UVector3<float>& coordinateAxis) {
    const float angle = TeskMath<float>::AngleBetween(axis, coordinateAxis);
    return static_cast<double>(angle) == 0.0;
}

/// The rotation whose columns are the box's sides in the order x, y, z; x is turned round where
/// they are left-handed.
UMatrix4<float> rotationOf(UVector3<float> x, const UVector3<float>& y, const UVector3<float>& z) {
    UMatrix4<float> rotation;
    if (isAlong(x, {1, 0, 0}) && isAlong(y, {0, 1, 0}) && isAlong(z, {0, 0, 1})) return rotation;
    const double d = static_cast<double>(x.Dot(y * z));
    if (d < 1e-6) x = UVector3<float>(0, 0, 0) - x;
    for (int i = 0; i < 3; ++i) {
        rotation.at(i, 0) = x[i];
        rotation.at(i, 1) = y[i];
        rotation.at(i, 2) = z[i];
    }
    return rotation;
}

}  // namespace

std::vector<UPoint3<float>> plainPlacedPoints(const MeshKernel& mesh) {
    std::vector<UPoint3<float>> points;
    const std::shared_ptr<UMesh<float>> vertices = mesh.getMesh();
    for (int i = 0; i < vertices->VertexCount(); ++i) {
        points.push_back(vertices->Vertex(i)->P() * mesh.getMatrix());
    }
    return points;
}

UMatrix4<float> plainPlacement(MeshKernel& mesh, const OrientedBox3& box, bool layFlat) {
    std::multimap<float, int> byExtent;
    for (int i = 0; i < 3; ++i) byExtent.emplace(box.extent[i], i);
    auto entry = byExtent.begin();
    const UVector3<float> s = box.axis[entry->second];
    const UVector3<float> m = box.axis[(++entry)->second];
    const UVector3<float> l = box.axis[(++entry)->second];
    const UMatrix4<float> rotation = layFlat ? rotationOf(l, m, s) : rotationOf(s, m, l);
    const UPoint3<float> c = mesh.GetBox().Center();
    const UPoint3<float> zero(0, 0, 0);
    return (UMatrix4<float>::CreateTransfMatrix(zero - c) * rotation) *
           UMatrix4<float>::CreateTransfMatrix(c - zero);
}
