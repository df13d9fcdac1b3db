#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "TeskPartFiles/Plates.h"
#include "threemf/ThreeMfModel.h"
#include "zip/ZipReader.h"

namespace Tesk::files {

/// Puts the objects of a package's model parts together. Each part is read once, when one of its
/// objects is first needed; lengths are converted to the root part's unit.
class ThreeMfAssembly {
 public:
    ThreeMfAssembly(ZipReader& zip, const ReadOptions& options, Progress& progress)
        : m_zip(zip), m_options(options), m_progress(progress) {}

    /// Both fill in what the items of a root part build, its unit and the warnings: as one mesh, or
    /// object by object, not welded. Throw PartFileError if an object is missing, contains itself,
    /// nests more than 100 deep or expands to too many triangles, and if nothing is left to build.
    void build(const std::string& root, PartFile& file);
    void build(const std::string& root, Plate& plate);

 private:
    /// An object with all that it is made of.
    struct Extent {
        std::size_t triangles = 0;
        int height = 0;  ///< how deep its components nest
    };
    using ObjectKey = std::pair<std::string, std::uint32_t>;

    struct Place {
        std::string part;  ///< that the transform belongs to
        PartTransform transform;
    };

    ThreeMfModel& part(const std::string& name);
    const std::string& partName(const std::string& path);
    ThreeMfObject& find(const ThreeMfPlacement& placement);
    Extent measure(const ThreeMfPlacement& placement, int depth);
    Extent measureNew(ThreeMfObject& object, int depth);
    enum class Count { kEveryUse, kEachObjectOnce };

    /// Drops the items that build nothing and counts the triangles of the others. Throws where
    /// there are none.
    std::size_t measureItems(ThreeMfModel& root, Count count);
    std::size_t checkedSum(std::size_t a, std::size_t b) const;
    double unitRatio(const std::string& from, const std::string& to);
    void append(const ThreeMfPlacement& placement, const Place& outer, PartMesh& mesh);
    void appendVertices(const ThreeMfObject& object, const PartTransform& transform,
                        std::uint32_t id, PartMesh& mesh);
    void appendMesh(const ThreeMfObject& object, const PartTransform& transform, std::uint32_t id,
                    PartMesh& mesh);
    PlateObject objectOf(const ThreeMfPlacement& item, const std::string& root);
    void warn(const std::string& root, std::vector<PartWarning>& warnings) const;

    ZipReader& m_zip;
    const ReadOptions& m_options;
    Progress& m_progress;
    std::map<std::string, std::string> m_names;  ///< in the archive, of paths
    std::map<std::string, ThreeMfModel> m_parts;
    std::map<ObjectKey, std::optional<Extent>> m_extents;  ///< empty while being measured
    std::size_t m_vertices = 0;                            ///< put into meshes so far
    std::size_t m_leftOut = 0;                             ///< objects that are not to be built
};

}  // namespace Tesk::files
