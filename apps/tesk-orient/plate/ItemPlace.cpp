#include "plate/ItemPlace.h"

#include <fmt/format.h>

#include <cmath>

#include "Failure.h"
#include "plate/ItemTurn.h"
#include "plate/Polar.h"

namespace App {

namespace {

using Matrix = UMatrix4<double>;

/// A transform's numbers as they stand, in the file's unit.
Matrix matrixOf(const Tesk::PartTransform& transform) {
    Matrix m;
    for (int i = 0; i < 12; ++i) m.at(i / 3, i % 3) = transform.m[static_cast<std::size_t>(i)];
    return m;
}

Tesk::PartTransform transformOf(const Matrix& m) {
    Tesk::PartTransform transform;
    for (int i = 0; i < 12; ++i) {
        transform.m[static_cast<std::size_t>(i)] = m.at(i / 3, i % 3) + 0.0;
    }
    return transform;
}

/// Whole nanometres, in the file's unit: more digits say nothing.
double tidied(double millimetres, double unit) {
    return std::round(millimetres * 1e6) / 1e6 / unit;
}

/// A stretch without rounding errors where there is none, or only of mirroring.
Matrix tidied(const Matrix& stretch) {
    constexpr double kNoise = 1e-6;
    const double sign = stretch.at(0, 0) < 0.0 ? -1.0 : 1.0;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            const double plain = row == col ? sign : 0.0;
            if (std::fabs(stretch.at(row, col) - plain) > kNoise) return stretch;
        }
    }
    Matrix plain;
    for (int i = 0; i < 3; ++i) plain.at(i, i) = sign;
    return plain;
}

const Tesk::PartMesh& meshOf(const LoadedPlate& plate, std::size_t item) {
    return plate.plate.objects[plate.plate.items[item].object].mesh;
}

/// Moves a transform, whose translation is in the file's unit, so that a box comes to where it is
/// to be.
void move(Matrix& transform, const UBox3<double>& from, const UBox3<double>& to,
          std::optional<double> height, double unit) {
    const UVector3<double> way = to.Center() - from.Center();
    const double up = height ? *height - from.MinZ() : way.z;
    transform.at(3, 0) = tidied(transform.at(3, 0) * unit + way.x, unit);
    transform.at(3, 1) = tidied(transform.at(3, 1) * unit + way.y, unit);
    transform.at(3, 2) = tidied(transform.at(3, 2) * unit + up, unit);
}

}  // namespace

const char* nameOf(Change change) {
    switch (change) {
        case Change::kKept:
            return "kept";
        case Change::kMoved:
            return "moved";
        case Change::kTurned:
            return "turned";
    }
    return "";
}

Matrix toPlateOf(const LoadedPlate& plate, const Tesk::PartTransform& transform) {
    Matrix m = matrixOf(transform);
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 3; ++col) m.at(row, col) *= plate.unit.millimetres;
    }
    return m;
}

ItemPlace placeOf(const LoadedPlate& plate, std::size_t item) {
    const Tesk::PartTransform& transform = plate.plate.items[item].transform;
    const auto parts = polarPartsOf(matrixOf(transform));
    if (!parts) {
        throw InputFailure(
            fmt::format("the transform of {} makes it flat, or larger than numbers "
                        "can hold, so that it cannot be turned",
                        nameOfItem(plate, item)));
    }
    return {toPlateOf(plate, transform), parts->stretch, parts->rotation};
}

UBox3<double> boxOf(const Tesk::PartMesh& mesh, const Matrix& toPlate) {
    UBox3<double> box;
    for (const Tesk::PartPoint& p : mesh.positions) {
        box.Extend(UPoint3<double>(static_cast<double>(p.x), static_cast<double>(p.y),
                                   static_cast<double>(p.z)) *
                   toPlate);
    }
    return box;
}

NewPlace withRotation(const LoadedPlate& plate, std::size_t item, const ItemPlace& place,
                      const Matrix& rotation, std::optional<double> height) {
    constexpr double kOnPlate = 0.001;
    const double unit = plate.unit.millimetres;
    const Tesk::PartMesh& mesh = meshOf(plate, item);
    const UBox3<double> present = boxOf(mesh, place.toPlate);
    NewPlace result{Change::kKept, plate.plate.items[item].transform, place.toPlate, {}};
    Matrix m = matrixOf(result.transform);
    if (isSameRotation(place.rotation, rotation)) {
        if (!height || std::fabs(present.MinZ() - *height) <= kOnPlate) return result;
        m.at(3, 2) = tidied(m.at(3, 2) * unit + *height - present.MinZ(), unit);
        result.change = Change::kMoved;
    } else {
        m = tidied(place.stretch) * rotation;
        const UBox3<double> turned = boxOf(mesh, toPlateOf(plate, transformOf(m)));
        move(m, turned, present, height, unit);
        result.change = Change::kTurned;
        result.turn = turnBetween(place.rotation, rotation);
    }
    result.transform = transformOf(m);
    result.toPlate = toPlateOf(plate, result.transform);
    return result;
}

Tesk::PartTransform followedBy(const LoadedPlate& plate, std::size_t item, const Matrix& motion) {
    const double unit = plate.unit.millimetres;
    Matrix inFile = motion;
    for (int col = 0; col < 3; ++col) inFile.at(3, col) /= unit;
    Matrix m = matrixOf(plate.plate.items[item].transform) * inFile;
    for (int col = 0; col < 3; ++col) m.at(3, col) = tidied(m.at(3, col) * unit, unit);
    return transformOf(m);
}

}  // namespace App
