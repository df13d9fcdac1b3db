#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "mesh/Progress.h"
#include "threemf/ThreeMfTransform.h"
#include "zip/ZipReader.h"

namespace Tesk::files {

/// A reference to an object, with a transform: in a build item, or as a component.
struct ThreeMfPlacement {
    std::string path;  ///< of the model part that holds the object, as the file spells it
    std::uint32_t objectId = 0;
    PartTransform transform;
};

struct ThreeMfObject {
    std::string name;
    std::string partNumber;
    std::vector<ThreeMfPoint> vertices;  ///< in the model's unit
    std::vector<std::array<std::int32_t, 3>> triangles;
    std::vector<ThreeMfPlacement> components;
    bool isAuxiliary = false;  ///< of type "support" or "other": its mesh is not part of the model
};

/// A build item.
struct ThreeMfItem {
    ThreeMfPlacement placement;
    std::string partNumber;
    bool isPrintable = true;
    std::size_t place = 0;  ///< among the items of its model part
};

/// One model part of a 3MF package.
struct ThreeMfModel {
    std::string unit = "millimeter";
    std::map<std::uint32_t, ThreeMfObject> objects;
    std::vector<ThreeMfItem> items;
};

/// Reads one model part. Throws PartFileError that names the part and the line of anything that is
/// missing, not a number, not finite or out of range, and of a required extension that is unknown.
ThreeMfModel readThreeMfModel(ZipReader& zip, const std::string& path, std::size_t maxTriangles,
                              Progress& progress);

}  // namespace Tesk::files
