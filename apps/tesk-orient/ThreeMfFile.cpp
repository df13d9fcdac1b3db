#include "ThreeMfFile.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>
#include <utility>

#include "Failure.h"
#include "ThreeMfModel.h"
#include "XmlReader.h"
#include "ZipReader.h"

namespace App {

namespace {

constexpr std::string_view kModelRelationship =
    "http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel";
constexpr const char* kRelationships = "_rels/.rels";
constexpr const char* kUsualModel = "3D/3dmodel.model";
constexpr std::size_t kMostTriangles = 50'000'000;
constexpr int kDeepestNesting = 100;

std::optional<std::string> modelNamedByPackage(ZipReader& zip) {
    if (!zip.has(kRelationships)) return std::nullopt;
    std::optional<std::string> path;
    XmlReader xml(kRelationships, {[&](const XmlElement& element) {
                                       if (path || element.localName() != "Relationship") return;
                                       if (element.attribute("Type") != kModelRelationship) return;
                                       if (const auto target = element.attribute("Target"))
                                           path = *target;
                                   },
                                   [](std::string_view) {}});
    zip.read(kRelationships, [&](std::string_view piece) { xml.feed(piece); });
    xml.finish();
    return path;
}

std::string rootModel(ZipReader& zip, Warnings& warnings) {
    if (const auto path = modelNamedByPackage(zip)) return *path;
    if (!zip.has(kUsualModel)) throw InputFailure("is no 3MF: the archive holds no 3D model");
    warnings.push_back({"no-relationship",
                        fmt::format("the package does not say which file is its model; {} is taken",
                                    kUsualModel)});
    return kUsualModel;
}

/// Puts the objects of all model parts together.
class Assembly {
 public:
    explicit Assembly(ZipReader& zip) : m_zip(zip) {}

    ThreeMfModel& part(const std::string& path) {
        const auto found = m_parts.find(path);
        if (found != m_parts.end()) return found->second;
        return m_parts.emplace(path, readThreeMfModel(m_zip, path)).first->second;
    }

    /// Triangles of an object with its components; each object is counted once.
    std::size_t count(const ThreeMfPlacement& placement, int depth) {
        if (depth > kDeepestNesting) {
            throw InputFailure(
                fmt::format("object {} contains itself, or components nest more than {} deep",
                            placement.objectId, kDeepestNesting));
        }
        const auto key = std::pair(placement.path, placement.objectId);
        if (const auto known = m_counts.find(key); known != m_counts.end()) return known->second;
        const ThreeMfObject& object = find(placement);
        std::size_t total = object.triangles.size();
        for (const ThreeMfPlacement& component : object.components) {
            total = checkedSum(total, count(component, depth + 1));
        }
        return m_counts[key] = total;
    }

    static std::size_t checkedSum(std::size_t a, std::size_t b) {
        if (a + b > kMostTriangles) {
            throw InputFailure(
                fmt::format("its components come to more than {} triangles", kMostTriangles));
        }
        return a + b;
    }

    void append(const ThreeMfPlacement& placement, const ThreeMfTransform& outer,
                TriangleMesh& mesh) {
        if (count(placement, 0) == 0) return;
        const ThreeMfObject& object = find(placement);
        const ThreeMfTransform transform = placement.transform.then(outer);
        const auto base = static_cast<std::int32_t>(mesh.positions.size());
        if (!object.triangles.empty()) appendVertices(object, transform, placement.objectId, mesh);
        const bool isMirrored = transform.determinant() < 0.0;
        for (auto corners : object.triangles) {
            if (isMirrored) std::swap(corners[1], corners[2]);
            mesh.triangles.push_back({base + corners[0], base + corners[1], base + corners[2]});
        }
        for (const ThreeMfPlacement& component : object.components) {
            append(component, transform, mesh);
        }
    }

 private:
    const ThreeMfObject& find(const ThreeMfPlacement& placement) {
        ThreeMfModel& model = part(placement.path);
        const auto found = model.objects.find(placement.objectId);
        if (found == model.objects.end()) {
            throw InputFailure(fmt::format("{} has no object {}, which is to be built",
                                           placement.path, placement.objectId));
        }
        return found->second;
    }

    static void appendVertices(const ThreeMfObject& object, const ThreeMfTransform& transform,
                               std::uint32_t id, TriangleMesh& mesh) {
        // Every triangle needs a vertex that is not shared with all others, roughly; what stray
        // vertices could multiply into is bounded here.
        if (mesh.positions.size() + object.vertices.size() > 3 * kMostTriangles) {
            throw InputFailure("its components come to too many vertices");
        }
        for (const UPoint3<double>& vertex : object.vertices) {
            const UPoint3<double> p = transform.apply(vertex);
            const UPoint3<float> placed(static_cast<float>(p.x), static_cast<float>(p.y),
                                        static_cast<float>(p.z));
            if (!std::isfinite(placed.x) || !std::isfinite(placed.y) || !std::isfinite(placed.z)) {
                throw InputFailure(
                    fmt::format("vertex {} of object {} is not finite where its transform puts it",
                                &vertex - object.vertices.data() + 1, id));
            }
            mesh.positions.push_back(placed);
        }
    }

    ZipReader& m_zip;
    std::map<std::string, ThreeMfModel> m_parts;
    std::map<std::pair<std::string, std::uint32_t>, std::size_t> m_counts;
};

}  // namespace

ThreeMfContent readThreeMf(std::string bytes) {
    ZipReader zip(std::move(bytes));
    ThreeMfContent content;
    Assembly assembly(zip);
    const ThreeMfModel& root = assembly.part(rootModel(zip, content.warnings));
    if (root.items.empty()) throw InputFailure("holds nothing to build: it has no build items");
    std::size_t triangles = 0;
    for (const ThreeMfPlacement& item : root.items) {
        triangles = Assembly::checkedSum(triangles, assembly.count(item, 0));
    }
    if (triangles == 0) throw InputFailure("holds no triangles");
    content.mesh.triangles.reserve(triangles);
    for (const ThreeMfPlacement& item : root.items) {
        assembly.append(item, ThreeMfTransform(), content.mesh);
    }
    content.unit = root.unit;
    content.items = root.items.size();
    return content;
}

}  // namespace App
