#include "poses/Pose.h"

#include <limits>

#include "TeskDataBasic/UBox3.h"

namespace App {

namespace {

using Matrix = UMatrix4<float>;

Matrix turnOf(const OptimizeOrient::OptOrientation& orientation) {
    return Matrix::CreateRotateMatrix(orientation.angle, orientation.axis);
}

/// The z of the lowest vertex, taken through a matrix: (p * m).z of each, without the rest.
float lowestZ(const TriangleMesh& mesh, const Matrix& m) {
    const UVector3<float> row(m.at(0, 2), m.at(1, 2), m.at(2, 2));
    const float shift = m.at(3, 2);
    float lowest = std::numeric_limits<float>::infinity();
    for (const UPoint3<float>& p : mesh.positions) {
        const float z = p.x * row.x + p.y * row.y + p.z * row.z + shift;
        lowest = z < lowest ? z : lowest;
    }
    return lowest;
}

Matrix aboutPoint(const UPoint3<float>& k, const Matrix& turn) {
    return Matrix::CreateTransfMatrix({-k.x, -k.y, -k.z}) * turn *
           Matrix::CreateTransfMatrix({k.x, k.y, k.z});
}

}  // namespace

UPoint3<float> centerOf(const TriangleMesh& mesh) {
    UBox3<float> box;
    for (const UPoint3<float>& p : mesh.positions) box.Extend(p);
    return box.Center();
}

Matrix poseOf(const OptimizeOrient::OptOrientation& orientation, const TriangleMesh& mesh,
              const UPoint3<float>& k, float baseHeight) {
    const Matrix turn = aboutPoint(k, turnOf(orientation));
    return baseHeight > -1.0f ? setDown(mesh, turn, baseHeight) : turn;
}

Matrix poseOf(const Matrix& rotation, const TriangleMesh& mesh) {
    return setDown(mesh, aboutPoint(centerOf(mesh), rotation), 0.0f);
}

Matrix setDown(const TriangleMesh& mesh, const Matrix& m, float height) {
    const float lift = height - lowestZ(mesh, m);
    return m * Matrix::CreateTransfMatrix({0.0f, 0.0f, lift});
}

Matrix inPlace(const Matrix& m, const TriangleMesh& mesh) {
    UBox3<float> turned;
    for (const UPoint3<float>& p : mesh.positions) turned.Extend(p * m);
    const UVector3<float> way = centerOf(mesh) - turned.Center();
    return m * Matrix::CreateTransfMatrix({way.x, way.y, 0.0f});
}

UVector3<float> upOf(const OptimizeOrient::OptOrientation& orientation) {
    const Matrix turn = turnOf(orientation);
    return {turn.at(0, 2), turn.at(1, 2), turn.at(2, 2)};
}

TriangleMesh moved(TriangleMesh mesh, const Matrix& m) {
    for (UPoint3<float>& p : mesh.positions) p = p * m;
    return mesh;
}

}  // namespace App
