#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "mesh/Progress.h"
#include "zip/ZipReader.h"

namespace Tesk::files {

struct ThreeMfPoint {
    double x;
    double y;
    double z;
};

/// A 3MF transform: the first three columns of a 4×4 matrix for row vectors, row by row.
struct ThreeMfTransform {
    std::array<double, 12> m = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

    ThreeMfPoint apply(const ThreeMfPoint& p) const;
    ThreeMfTransform then(const ThreeMfTransform& next) const;
    /// Of points that are multiplied by a factor first; 1 leaves it as it is.
    ThreeMfTransform ofScaled(double factor) const;
    double determinant() const;
};

/// An object put somewhere: a build item, or a component of another object.
struct ThreeMfPlacement {
    std::string path;  ///< the model part that holds the object, as it is named
    std::uint32_t objectId = 0;
    ThreeMfTransform transform;
};

struct ThreeMfObject {
    std::vector<ThreeMfPoint> vertices;  ///< in the model's unit
    std::vector<std::array<std::int32_t, 3>> triangles;
    std::vector<ThreeMfPlacement> components;
    bool isAuxiliary = false;  ///< its mesh is a support or of type "other", not part of the model
};

/// One model part of a 3MF package.
struct ThreeMfModel {
    std::string unit = "millimeter";
    std::map<std::uint32_t, ThreeMfObject> objects;
    std::vector<ThreeMfPlacement> items;
};

/// Reads one model part. Throws PartFileError that names the part and the line of anything that is
/// missing, not a number, not finite or out of range, and of a required extension that is unknown.
ThreeMfModel readThreeMfModel(ZipReader& zip, const std::string& path, std::size_t maxTriangles,
                              Progress& progress);

}  // namespace Tesk::files
