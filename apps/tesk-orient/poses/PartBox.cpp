#include "poses/PartBox.h"

namespace App {

double PartBox::volume() const {
    double volume = 8.0;
    for (const float half : halfExtents) volume *= static_cast<double>(half);
    return volume;
}

UMatrix4<float> PartBox::alignment() const {
    UMatrix4<float> turn;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            turn.at(row, col) = axes[static_cast<std::size_t>(col)][row];
        }
    }
    return UMatrix4<float>::CreateTransfMatrix({-center.x, -center.y, -center.z}) * turn *
           UMatrix4<float>::CreateTransfMatrix(center);
}

PartBox readAs(const OrientedBox3& found, Lengths extents) {
    PartBox box{found.center, {found.axis[0], found.axis[1], found.axis[2]}, {}};
    const float share = extents == Lengths::kFull ? 0.5f : 1.0f;
    for (int i = 0; i < 3; ++i) {
        box.halfExtents[static_cast<std::size_t>(i)] = found.extent[i] * share;
    }
    if (((box.axes[0] * box.axes[1]) | box.axes[2]) < 0.0f) {
        box.axes[0] = UVector3<float>() - box.axes[0];
    }
    return box;
}

TriangleMesh meshOf(const PartBox& box) {
    TriangleMesh mesh;
    for (int corner = 0; corner < 8; ++corner) {
        UVector3<float> p = box.center;
        for (int i = 0; i < 3; ++i) {
            const auto k = static_cast<std::size_t>(i);
            const float half = (corner >> i & 1) != 0 ? box.halfExtents[k] : -box.halfExtents[k];
            p = p + box.axes[k] * half;
        }
        mesh.positions.emplace_back(p.x, p.y, p.z);
    }
    mesh.triangles = {{0, 2, 3}, {0, 3, 1}, {4, 5, 7}, {4, 7, 6}, {0, 1, 5}, {0, 5, 4},
                      {2, 6, 7}, {2, 7, 3}, {0, 4, 6}, {0, 6, 2}, {1, 3, 7}, {1, 7, 5}};
    return mesh;
}

}  // namespace App
