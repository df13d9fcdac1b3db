#pragma once

#include <cstddef>
#include <optional>

#include "TeskDataBasic/UBox3.h"
#include "TeskDataBasic/UMatrix4.h"
#include "plate/LoadedPlate.h"

namespace App {

/// Where an item is: its transform as a matrix for row vectors, from the object's frame in the
/// file's unit to the plate in mm; and its linear part, without the unit, taken apart.
struct ItemPlace {
    UMatrix4<double> toPlate;
    UMatrix4<double> stretch;
    UMatrix4<double> rotation;
};

/// Throws InputFailure, without the file's name, where the transform makes the object flat.
ItemPlace placeOf(const LoadedPlate& plate, std::size_t item);

/// What happens to an item.
enum class Change {
    kKept,    ///< nothing: it is in its pose, on the plate
    kMoved,   ///< it is only put down on the plate
    kTurned,  ///< it is turned, and put down on the plate
};

/// As reports print it: "kept", "moved", "turned".
const char* nameOf(Change change);

struct NewPlace {
    Change change = Change::kKept;
    Tesk::PartTransform transform;  ///< for the file; as it was where the item is kept
    UMatrix4<double> toPlate;       ///< what it says, as in ItemPlace
    UMatrix4<double> turn;          ///< of the item as it lies; no translation
};

/// The item's transform with its rotation replaced by another one: its box's centre keeps its place
/// in x and y, and its lowest point is at a height. A part whose rotation is the same within
/// a hundredth of a degree keeps it, and one that is at the height within 0.001 mm keeps its place,
/// too.
///
/// @param height  mm; empty where the box's centre is to keep its height, too
NewPlace withRotation(const LoadedPlate& plate, std::size_t item, const ItemPlace& place,
                      const UMatrix4<double>& rotation, std::optional<double> height = 0.0);

/// An item's transform followed by a motion on the plate, in mm.
Tesk::PartTransform followedBy(const LoadedPlate& plate, std::size_t item,
                               const UMatrix4<double>& motion);

/// The matrix of a transform of the file.
UMatrix4<double> toPlateOf(const LoadedPlate& plate, const Tesk::PartTransform& transform);

/// The box of a mesh that a matrix has moved.
UBox3<double> boxOf(const Tesk::PartMesh& mesh, const UMatrix4<double>& toPlate);

}  // namespace App
