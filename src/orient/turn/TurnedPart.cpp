#include "orient/turn/TurnedPart.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "TeskCommon/Assert.h"
#include "orient/rotation/CandidateRotation.h"

namespace Tesk::orient {
namespace {

using Matrix = UMatrix4<float>;
using Ranges = std::array<CoordinateRange, 3>;

/// Few enough to stay in the first-level cache.
constexpr std::size_t kVerticesPerBlock = 1024;

/// A placement, then the turn about the centre of the placed box.
Matrix turnOntoUp(const Matrix& placement, const UBox3<float>& placedBox,
                  const UVector3<float>& direction) {
    const UPoint3<float> k = placedBox.Center();
    const Matrix toOrigin = Matrix::CreateTransfMatrix({-k.x, -k.y, -k.z});
    const Matrix turn =
        Matrix::CreateRotateMatrix(candidateAngle(direction), candidateAxis(direction));
    const Matrix back = Matrix::CreateTransfMatrix({k.x, k.y, k.z});
    return placement * toOrigin * turn * back;
}

TurnedCoordinate coordinateOf(const Matrix& m, int axis) {
    return {m.at(0, axis), m.at(1, axis), m.at(2, axis), m.at(3, axis)};
}

std::array<TurnedCoordinate, 3> coordinatesOf(const Matrix& m) {
    return {coordinateOf(m, 0), coordinateOf(m, 1), coordinateOf(m, 2)};
}

bool hasSameSlopes(const TurnedCoordinate& a, const TurnedCoordinate& b) {
    return a.fromX == b.fromX && a.fromY == b.fromY && a.fromZ == b.fromZ;
}

bool isFinite(const FlatMesh& mesh, const std::array<TurnedCoordinate, 3>& coordinates) {
    constexpr float kFarEnough = std::numeric_limits<float>::max() / 4.0f;
    return std::all_of(coordinates.begin(), coordinates.end(), [&](const TurnedCoordinate& c) {
        const float slope = std::fabs(c.fromX) + std::fabs(c.fromY) + std::fabs(c.fromZ);
        return slope * mesh.reach < kFarEnough && std::fabs(c.shift) < kFarEnough;
    });
}

/// The ranges of each part's coordinates over the kept vertices, without the shifts.
void unshiftedRanges(const FlatMesh& mesh, std::span<const TurnedPart> parts,
                     std::span<Ranges> ranges) {
    const TurnKernels& kernels = turnKernels();
    std::fill(ranges.begin(), ranges.end(), Ranges());
    for (std::size_t first = 0; first < mesh.keptVertices; first += kVerticesPerBlock) {
        const std::size_t count = std::min(kVerticesPerBlock, mesh.keptVertices - first);
        for (std::size_t k = 0; k < parts.size(); ++k) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                kernels.extendRange(mesh.x.data() + first, mesh.y.data() + first,
                                    mesh.z.data() + first, count, parts[k].coordinates[axis],
                                    ranges[k][axis]);
            }
        }
    }
}

/// The box if all coordinates are finite. Rounding preserves order, so the least shifted coordinate
/// is the least unshifted one, shifted.
UBox3<float> shiftedBox(const TurnedPart& part, const Ranges& ranges) {
    UPoint3<float> low;
    UPoint3<float> high;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto& [lowest, highest] = ranges[axis];
        const float shift = lowest <= highest ? part.coordinates[axis].shift : 0.0f;
        low[static_cast<int>(axis)] = lowest + shift;
        high[static_cast<int>(axis)] = highest + shift;
    }
    return {low, high};
}

/// The box whatever the coordinates are, point by point.
UBox3<float> boxOf(const FlatMesh& mesh, const TurnedPart& part) {
    UBox3<float> box;
    for (std::size_t v = 0; v < mesh.keptVertices; ++v) {
        box.Extend(part.point(mesh, static_cast<std::int32_t>(v)));
    }
    return box;
}

/// Turns a part by m, without its box.
void turnBy(const FlatMesh& mesh, const Matrix& m, TurnedPart& part) {
    part.coordinates = coordinatesOf(m);
    part.isFinite = isFinite(mesh, part.coordinates);
}

/// Sets the box. `ranges` are the part's unshifted ones.
void setBox(const FlatMesh& mesh, const Ranges& ranges, TurnedPart& part) {
    part.box = part.isFinite ? shiftedBox(part, ranges) : boxOf(mesh, part);
}

/// Lifts a part that `turn` has turned. Recomputes `ranges` if the product of the matrices rounds
/// to other slopes.
void liftTo(const FlatMesh& mesh, float baseHeight, const Matrix& turn, Ranges& ranges,
            TurnedPart& part) {
    const auto before = part.coordinates;
    const float lift = baseHeight - part.box.MinZ();
    turnBy(mesh, turn * Matrix::CreateTransfMatrix({0.0f, 0.0f, lift}), part);
    if (!std::equal(before.begin(), before.end(), part.coordinates.begin(), hasSameSlopes)) {
        unshiftedRanges(mesh, {&part, 1}, {&ranges, 1});
    }
    setBox(mesh, ranges, part);
}

}  // namespace

UBox3<float> boxThrough(const FlatMesh& mesh, const Matrix& matrix) {
    TurnedPart part;
    Ranges ranges;
    turnBy(mesh, matrix, part);
    unshiftedRanges(mesh, {&part, 1}, {&ranges, 1});
    setBox(mesh, ranges, part);
    return part.box;
}

void turnParts(const FlatMesh& mesh, std::span<const UVector3<float>> directions, float baseHeight,
               std::span<TurnedPart> parts) {
    TESK_ASSERT(directions.size() == parts.size() && parts.size() <= kGroupSize);
    std::array<Matrix, kGroupSize> turns;
    std::array<Ranges, kGroupSize> ranges;
    for (std::size_t k = 0; k < parts.size(); ++k) {
        turns[k] = turnOntoUp(mesh.placement, mesh.placedBox, directions[k]);
        turnBy(mesh, turns[k], parts[k]);
    }
    unshiftedRanges(mesh, parts, std::span(ranges).first(parts.size()));
    for (std::size_t k = 0; k < parts.size(); ++k) {
        setBox(mesh, ranges[k], parts[k]);
        if (baseHeight > -1.0f) liftTo(mesh, baseHeight, turns[k], ranges[k], parts[k]);
    }
}

void standParts(const FlatMesh& mesh, std::span<const Matrix> placements,
                std::span<TurnedPart> parts) {
    std::array<Ranges, kGroupSize> ranges;
    for (std::size_t k = 0; k < parts.size(); ++k) turnBy(mesh, placements[k], parts[k]);
    unshiftedRanges(mesh, parts, std::span(ranges).first(parts.size()));
    for (std::size_t k = 0; k < parts.size(); ++k) {
        setBox(mesh, ranges[k], parts[k]);
        // The turn about the box's centre moves nothing, but for rounding; the slopes stay.
        const Matrix turn = turnOntoUp(placements[k], parts[k].box, {0.0f, 0.0f, 1.0f});
        turnBy(mesh, turn, parts[k]);
        setBox(mesh, ranges[k], parts[k]);
        liftTo(mesh, /*baseHeight=*/0.0f, turn, ranges[k], parts[k]);
    }
}

}  // namespace Tesk::orient
