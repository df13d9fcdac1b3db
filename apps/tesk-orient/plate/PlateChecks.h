#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "plate/ItemPlace.h"
#include "plate/LoadedPlate.h"

namespace App {

/// Where the items of a plate are, in the end: one for each, also for those that nobody asked for.
using NewPlaces = std::vector<NewPlace>;

/// All items where the file has them.
NewPlaces presentPlaces(const LoadedPlate& plate);

/// Something about a plate that the user should know.
struct PlateFinding {
    Warning warning;
    std::vector<std::size_t> items;  ///< that it is about; indices into Plate::items
    double distance = 0.0;           ///< mm
    bool isOfShape = false;          ///< about one shape's mesh, not about the plate
};

/// Items that overlap where at least one of the two has been moved or turned, seen from above by
/// their convex hulls, the deepest first; beyond 20 pairs, how many more. Items that are not
/// printed, or above one another, do not count.
std::vector<PlateFinding> overlapsOn(const LoadedPlate& plate, const NewPlaces& places);

/// Printed items that reach out of a build volume, with the farthest distance. The volume spans 0
/// to its size along X, Y and Z of the plate; a size of 0 is no limit.
std::vector<PlateFinding> leavingVolume(const LoadedPlate& plate, const NewPlaces& places,
                                        const UVector3<float>& size);

}  // namespace App
