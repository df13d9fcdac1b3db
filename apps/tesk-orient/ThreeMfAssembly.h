#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "ThreeMfModel.h"
#include "TriangleMesh.h"
#include "Warning.h"
#include "ZipReader.h"

namespace App {

/// Puts the objects of a package's model parts together. Each part is read once, when an object of
/// it is first asked for; lengths of a part in another unit than the root's are converted.
class ThreeMfAssembly {
 public:
    explicit ThreeMfAssembly(ZipReader& zip) : m_zip(zip) {}

    /// A model part by its name in the archive.
    ThreeMfModel& part(const std::string& name);

    /// What the items of a root part build, and how many of them build anything. Throws
    /// InputFailure where an object is missing, contains itself, nests too deep or multiplies into
    /// more than any part has, and where nothing is left to build.
    std::pair<TriangleMesh, std::size_t> build(const std::string& root, Warnings& warnings);

 private:
    /// An object with all that it is made of.
    struct Extent {
        std::size_t triangles = 0;
        int height = 0;  ///< how deep its components nest
    };
    using ObjectKey = std::pair<std::string, std::uint32_t>;

    struct Place {
        std::string part;  ///< that the transform belongs to
        ThreeMfTransform transform;
    };

    const std::string& partName(const std::string& path);
    ThreeMfObject& find(const ThreeMfPlacement& placement);
    Extent measure(const ThreeMfPlacement& placement, int depth);
    Extent measureNew(ThreeMfObject& object, int depth);
    std::size_t measureItems(ThreeMfModel& root);
    double unitRatio(const std::string& from, const std::string& to);
    void append(const ThreeMfPlacement& placement, const Place& outer, TriangleMesh& mesh);
    void warn(const std::string& root, Warnings& warnings) const;

    ZipReader& m_zip;
    std::map<std::string, std::string> m_names;  ///< in the archive, of paths
    std::map<std::string, ThreeMfModel> m_parts;
    std::map<ObjectKey, std::optional<Extent>> m_extents;  ///< empty while being measured
    std::size_t m_leftOut = 0;                             ///< objects that are not to be built
};

}  // namespace App
