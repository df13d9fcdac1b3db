#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "TeskDataBasic/UPoint3.h"
#include "ZipReader.h"

namespace App {

/// A 3MF transform: the first three columns of a 4×4 matrix for row vectors, row by row.
struct ThreeMfTransform {
    std::array<double, 12> m = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

    UPoint3<double> apply(const UPoint3<double>& p) const;
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
    std::vector<UPoint3<double>> vertices;  ///< in the model's unit
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

/// Reads one model part. Throws InputFailure that names part and line of whatever is missing, no
/// number, not finite or out of range, and of an extension that is needed and not known.
ThreeMfModel readThreeMfModel(ZipReader& zip, const std::string& path);

}  // namespace App
