#include "Pose.h"

#include "TeskDataBasic/UBox3.h"

namespace App {

namespace {

using Matrix = UMatrix4<float>;

Matrix turnOf(const OptimizeOrient::OptOrientation& orientation) {
    return Matrix::CreateRotateMatrix(orientation.angle, orientation.axis);
}

UBox3<float> boxOf(const TriangleMesh& mesh, const Matrix& m) {
    UBox3<float> box;
    for (const UPoint3<float>& p : mesh.positions) box.Extend(p * m);
    return box;
}

}  // namespace

Matrix poseOf(const OptimizeOrient::OptOrientation& orientation, const TriangleMesh& mesh,
              float baseHeight) {
    const UPoint3<float> k = boxOf(mesh, Matrix()).Center();
    const Matrix turn = Matrix::CreateTransfMatrix({-k.x, -k.y, -k.z}) * turnOf(orientation) *
                        Matrix::CreateTransfMatrix({k.x, k.y, k.z});
    return baseHeight > -1.0f ? setDown(mesh, turn, baseHeight) : turn;
}

Matrix setDown(const TriangleMesh& mesh, const Matrix& m, float height) {
    const float lift = height - boxOf(mesh, m).MinZ();
    return m * Matrix::CreateTransfMatrix({0.0f, 0.0f, lift});
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
