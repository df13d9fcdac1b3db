#include "plate/Shapes.h"

#include <algorithm>
#include <utility>

#include "part/MeshFile.h"
#include "plate/Polar.h"

namespace App {

Shapes shapesOf(const LoadedPlate& plate) {
    const auto& items = plate.plate.items;
    Shapes result;
    result.places.resize(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (plate.isTaken[items[i].object] == 0) continue;
        result.places[i] = placeOf(plate, i);
        const UMatrix4<double> stretch = snapped(result.places[i].stretch);
        const auto shape =
            std::find_if(result.shapes.begin(), result.shapes.end(), [&](const Shape& known) {
                return known.object == items[i].object && areAlike(known.stretch, stretch);
            });
        if (shape != result.shapes.end()) {
            shape->items.push_back(i);
        } else {
            result.shapes.push_back({items[i].object, stretch, {i}});
        }
    }
    return result;
}

TriangleMesh moved(const Tesk::PartMesh& mesh, const UMatrix4<double>& matrix) {
    TriangleMesh result;
    result.triangles = mesh.triangles;
    if (determinantOf(matrix) < 0.0) {
        for (auto& corners : result.triangles) std::swap(corners[1], corners[2]);
    }
    result.positions.reserve(mesh.positions.size());
    for (const Tesk::PartPoint& p : mesh.positions) {
        const UPoint3<double> q =
            UPoint3<double>(static_cast<double>(p.x), static_cast<double>(p.y),
                            static_cast<double>(p.z)) *
            matrix;
        result.positions.emplace_back(static_cast<float>(q.x), static_cast<float>(q.y),
                                      static_cast<float>(q.z));
    }
    return result;
}

TriangleMesh meshOf(const LoadedPlate& plate, const Shape& shape) {
    UMatrix4<double> scale = shape.stretch;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) scale.at(row, col) *= plate.unit.millimetres;
    }
    TriangleMesh mesh = moved(plate.plate.objects[shape.object].mesh, scale);
    refuseNonFinite(mesh);
    return mesh;
}

}  // namespace App
