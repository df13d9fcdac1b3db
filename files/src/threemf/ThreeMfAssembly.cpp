#include "threemf/ThreeMfAssembly.h"

#include <algorithm>
#include <set>
#include <utility>

#include "TeskPartFiles/LengthUnits.h"
#include "mesh/Welding.h"
#include "text/Message.h"
#include "threemf/ThreeMfPackage.h"

namespace Tesk::files {

namespace {

constexpr std::size_t kMostTriangles = 50'000'000;
constexpr int kDeepestNesting = 100;

double millimetresOf(std::string_view unit) {
    return millimetresPer(unit).value_or(1.0);
}

void checkNesting(int depth, const ThreeMfPlacement& placement) {
    if (depth <= kDeepestNesting) return;
    throw PartFileError(message(placement.path, ": the components of object ", placement.objectId,
                                " nest more than ", kDeepestNesting, " deep"));
}

}  // namespace

ThreeMfModel& ThreeMfAssembly::part(const std::string& name) {
    const auto found = m_parts.find(name);
    if (found != m_parts.end()) return found->second;
    return m_parts.emplace(name, readThreeMfModel(m_zip, name, m_options.maxTriangles, m_progress))
        .first->second;
}

const std::string& ThreeMfAssembly::partName(const std::string& path) {
    const auto known = m_names.find(path);
    if (known != m_names.end()) return known->second;
    return m_names.emplace(path, partNamed(m_zip, path)).first->second;
}

ThreeMfObject& ThreeMfAssembly::find(const ThreeMfPlacement& placement) {
    const std::string& name = partName(placement.path);
    if (!m_zip.find(name)) {
        throw PartFileError(message("object ", placement.objectId, " is to come from ",
                                    quotedName(placement.path), ", which is not in the archive"));
    }
    ThreeMfModel& model = part(name);
    const auto found = model.objects.find(placement.objectId);
    if (found == model.objects.end()) {
        throw PartFileError(
            message(name, " has no object ", placement.objectId, ", which a build item refers to"));
    }
    return found->second;
}

ThreeMfAssembly::Extent ThreeMfAssembly::measure(const ThreeMfPlacement& placement, int depth) {
    checkNesting(depth, placement);
    const ObjectKey key(partName(placement.path), placement.objectId);
    const auto [entry, isNew] = m_extents.try_emplace(key);
    if (!isNew && !entry->second) {
        throw PartFileError(message(key.first, ": object ", key.second, " contains itself"));
    }
    if (isNew) entry->second = measureNew(find(placement), depth);
    // Reached by another way, an object that is already measured may lie deeper.
    checkNesting(depth + entry->second->height, placement);
    return *entry->second;
}

ThreeMfAssembly::Extent ThreeMfAssembly::measureNew(ThreeMfObject& object, int depth) {
    Extent extent;
    if (object.isAuxiliary && !object.triangles.empty()) {
        ++m_leftOut;
    } else {
        extent.triangles = object.triangles.size();
    }
    // What comes to nothing is dropped: it could be placed any number of times.
    std::erase_if(object.components, [&](const ThreeMfPlacement& component) {
        const Extent inner = measure(component, depth + 1);
        extent.triangles = checkedSum(extent.triangles, inner.triangles);
        extent.height = std::max(extent.height, inner.height + 1);
        return inner.triangles == 0;
    });
    return extent;
}

std::size_t ThreeMfAssembly::measureItems(ThreeMfModel& root, Count count) {
    if (root.items.empty()) throw PartFileError("contains no build items");
    std::size_t triangles = 0;
    std::set<ObjectKey> counted;
    std::erase_if(root.items, [&](const ThreeMfItem& item) {
        const ThreeMfPlacement& placement = item.placement;
        const std::size_t added = measure(placement, 0).triangles;
        const bool isNew = counted.emplace(partName(placement.path), placement.objectId).second;
        if (isNew || count == Count::kEveryUse) triangles = checkedSum(triangles, added);
        return added == 0;
    });
    if (triangles == 0 && m_leftOut > 0) {
        throw PartFileError(
            "contains no build items other than objects of type \"support\" or \"other\"");
    }
    if (triangles == 0) throw PartFileError("contains no triangles");
    return triangles;
}

double ThreeMfAssembly::unitRatio(const std::string& from, const std::string& to) {
    const std::string& unit = part(from).unit;
    const std::string& wanted = part(to).unit;
    return unit == wanted ? 1.0 : millimetresOf(unit) / millimetresOf(wanted);
}

void ThreeMfAssembly::appendVertices(const ThreeMfObject& object, const PartTransform& transform,
                                     std::uint32_t id, PartMesh& mesh) {
    // The triangles are limited already; this limits vertices that no triangle uses.
    m_vertices += object.vertices.size();
    if (m_vertices > 3 * kMostTriangles) {
        throw PartFileError("its components expand to too many vertices");
    }
    for (const ThreeMfPoint& vertex : object.vertices) {
        const ThreeMfPoint p = mapped(vertex, transform);
        const PartPoint placed = {static_cast<float>(p.x), static_cast<float>(p.y),
                                  static_cast<float>(p.z)};
        if (!isFinite(placed)) {
            throw PartFileError(message("vertex ", &vertex - object.vertices.data() + 1,
                                        " of object ", id,
                                        " is not finite where its transform puts it"));
        }
        mesh.positions.push_back(placed);
    }
}

void ThreeMfAssembly::appendMesh(const ThreeMfObject& object, const PartTransform& transform,
                                 std::uint32_t id, PartMesh& mesh) {
    if (object.triangles.empty() || object.isAuxiliary) return;
    const auto base = static_cast<std::int32_t>(mesh.positions.size());
    appendVertices(object, transform, id, mesh);
    const bool isMirrored = isMirroring(transform);
    for (auto corners : object.triangles) {
        if (isMirrored) std::swap(corners[1], corners[2]);
        mesh.triangles.push_back({base + corners[0], base + corners[1], base + corners[2]});
    }
}

void ThreeMfAssembly::append(const ThreeMfPlacement& placement, const Place& outer,
                             PartMesh& mesh) {
    const ThreeMfObject& object = find(placement);
    const std::string& name = partName(placement.path);
    const Place place = {name, composed(ofScaled(placement.transform, unitRatio(name, outer.part)),
                                        outer.transform)};
    appendMesh(object, place.transform, placement.objectId, mesh);
    for (const ThreeMfPlacement& component : object.components) append(component, place, mesh);
}

void ThreeMfAssembly::warn(const std::string& root, std::vector<PartWarning>& warnings) const {
    if (m_leftOut > 0) {
        warnings.push_back({"not-built",
                            message(m_leftOut == 1 ? "1 object" : message(m_leftOut, " objects"),
                                    " of type \"support\" or \"other\" ",
                                    m_leftOut == 1 ? "is" : "are", " left out"),
                            static_cast<std::int64_t>(m_leftOut)});
    }
    for (const auto& [name, model] : m_parts) {
        if (name == root || millimetresPer(model.unit)) continue;
        warnings.push_back(
            {"unknown-unit",
             message(quotedName(name), " gives its unit as ", files::quoted(model.unit),
                     ", which 3MF does not know; millimetres are taken")});
    }
}

std::size_t ThreeMfAssembly::checkedSum(std::size_t a, std::size_t b) const {
    const std::size_t most = std::min(kMostTriangles, m_options.maxTriangles);
    if (a + b <= most) return a + b;
    throw PartFileError(message("its components expand to more than ", most, " triangles"));
}

PlateObject ThreeMfAssembly::objectOf(const ThreeMfPlacement& item, const std::string& root) {
    const ThreeMfObject& object = find(item);
    PlateObject made{.id = item.objectId,
                     .modelPart = partName(item.path),
                     .name = object.name,
                     .partNumber = object.partNumber,
                     .mesh = {}};
    made.mesh.triangles.reserve(measure(item, 0).triangles);
    append({item.path, item.objectId, {}}, {root, {}}, made.mesh);
    return made;
}

void ThreeMfAssembly::build(const std::string& root, PartFile& file) {
    ThreeMfModel& model = part(root);
    file.mesh.triangles.reserve(measureItems(model, Count::kEveryUse));
    file.unit = model.unit;
    for (const ThreeMfItem& item : model.items) append(item.placement, {root, {}}, file.mesh);
    warn(root, file.warnings);
    if (model.items.size() < 2) return;
    file.warnings.push_back({"several-items",
                             message("the file builds ", model.items.size(),
                                     " items; they are taken together, as one part"),
                             static_cast<std::int64_t>(model.items.size())});
}

void ThreeMfAssembly::build(const std::string& root, Plate& plate) {
    ThreeMfModel& model = part(root);
    plate.itemCount = model.items.size();
    measureItems(model, Count::kEachObjectOnce);
    plate.unit = model.unit;
    std::map<ObjectKey, std::size_t> known;
    for (ThreeMfItem& item : model.items) {
        const ObjectKey key(partName(item.placement.path), item.placement.objectId);
        const auto [entry, isNew] = known.try_emplace(key, plate.objects.size());
        if (isNew) plate.objects.push_back(objectOf(item.placement, root));
        plate.items.push_back({.object = entry->second,
                               .transform = item.placement.transform,
                               .partNumber = std::move(item.partNumber),
                               .isPrintable = item.isPrintable,
                               .place = item.place});
    }
    warn(root, plate.warnings);
}

}  // namespace Tesk::files
