#include "ThreeMfAssembly.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "Failure.h"
#include "TextScanner.h"
#include "ThreeMfPackage.h"
#include "options/LengthUnit.h"

namespace App {

namespace {

constexpr std::size_t kMostTriangles = 50'000'000;
constexpr int kDeepestNesting = 100;

std::size_t checkedSum(std::size_t a, std::size_t b) {
    if (a + b > kMostTriangles) {
        throw InputFailure(
            fmt::format("its components come to more than {} triangles", kMostTriangles));
    }
    return a + b;
}

void checkNesting(int depth, const ThreeMfPlacement& placement) {
    if (depth <= kDeepestNesting) return;
    throw InputFailure(fmt::format("{}: the components of object {} nest more than {} deep",
                                   placement.path, placement.objectId, kDeepestNesting));
}

double millimetresOf(const std::string& unit) {
    return unitNamed(unit).value_or(lengthUnits().front()).millimetres;
}

void appendVertices(const ThreeMfObject& object, const ThreeMfTransform& transform,
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

void appendMesh(const ThreeMfObject& object, const ThreeMfTransform& transform, std::uint32_t id,
                TriangleMesh& mesh) {
    if (object.triangles.empty() || object.isAuxiliary) return;
    const auto base = static_cast<std::int32_t>(mesh.positions.size());
    appendVertices(object, transform, id, mesh);
    const bool isMirrored = transform.determinant() < 0.0;
    for (auto corners : object.triangles) {
        if (isMirrored) std::swap(corners[1], corners[2]);
        mesh.triangles.push_back({base + corners[0], base + corners[1], base + corners[2]});
    }
}

}  // namespace

ThreeMfModel& ThreeMfAssembly::part(const std::string& name) {
    const auto found = m_parts.find(name);
    if (found != m_parts.end()) return found->second;
    return m_parts.emplace(name, readThreeMfModel(m_zip, name)).first->second;
}

const std::string& ThreeMfAssembly::partName(const std::string& path) {
    const auto known = m_names.find(path);
    if (known != m_names.end()) return known->second;
    return m_names.emplace(path, partNamed(m_zip, path)).first->second;
}

ThreeMfObject& ThreeMfAssembly::find(const ThreeMfPlacement& placement) {
    const std::string& name = partName(placement.path);
    if (!m_zip.find(name)) {
        throw InputFailure(
            fmt::format("object {} is to come from {}, which the archive does not "
                        "hold",
                        placement.objectId, quotedName(placement.path)));
    }
    ThreeMfModel& model = part(name);
    const auto found = model.objects.find(placement.objectId);
    if (found == model.objects.end()) {
        throw InputFailure(
            fmt::format("{} has no object {}, which is to be built", name, placement.objectId));
    }
    return found->second;
}

ThreeMfAssembly::Extent ThreeMfAssembly::measure(const ThreeMfPlacement& placement, int depth) {
    checkNesting(depth, placement);
    const ObjectKey key(partName(placement.path), placement.objectId);
    const auto [entry, isNew] = m_extents.try_emplace(key);
    if (!isNew && !entry->second) {
        throw InputFailure(fmt::format("{}: object {} contains itself", key.first, key.second));
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

std::size_t ThreeMfAssembly::measureItems(ThreeMfModel& root) {
    std::size_t triangles = 0;
    std::erase_if(root.items, [&](const ThreeMfPlacement& item) {
        const std::size_t added = measure(item, 0).triangles;
        triangles = checkedSum(triangles, added);
        return added == 0;
    });
    return triangles;
}

double ThreeMfAssembly::unitRatio(const std::string& from, const std::string& to) {
    const std::string& unit = part(from).unit;
    const std::string& wanted = part(to).unit;
    return unit == wanted ? 1.0 : millimetresOf(unit) / millimetresOf(wanted);
}

void ThreeMfAssembly::append(const ThreeMfPlacement& placement, const Place& outer,
                             TriangleMesh& mesh) {
    const ThreeMfObject& object = find(placement);
    const std::string& name = partName(placement.path);
    const Place place = {
        name, placement.transform.ofScaled(unitRatio(name, outer.part)).then(outer.transform)};
    appendMesh(object, place.transform, placement.objectId, mesh);
    for (const ThreeMfPlacement& component : object.components) append(component, place, mesh);
}

void ThreeMfAssembly::warn(const std::string& root, Warnings& warnings) const {
    if (m_leftOut > 0) {
        warnings.push_back(
            {"not-built",
             fmt::format("{} of type \"support\" or \"other\" {} left out",
                         m_leftOut == 1 ? "1 object" : fmt::format("{} objects", m_leftOut),
                         m_leftOut == 1 ? "is" : "are"),
             static_cast<std::int64_t>(m_leftOut)});
    }
    for (const auto& [name, model] : m_parts) {
        if (name == root || unitNamed(model.unit)) continue;
        warnings.push_back(
            {"unknown-unit", fmt::format("{} gives its unit as {}, which 3MF does not know; "
                                         "millimetres are taken",
                                         quotedName(name), App::quoted(model.unit))});
    }
}

std::pair<TriangleMesh, std::size_t> ThreeMfAssembly::build(const std::string& root,
                                                            Warnings& warnings) {
    ThreeMfModel& model = part(root);
    if (model.items.empty()) throw InputFailure("holds nothing to build: it has no build items");
    const std::size_t triangles = measureItems(model);
    if (triangles == 0 && m_leftOut > 0) {
        throw InputFailure(
            "holds nothing to build: all its objects are of type \"support\" or \"other\"");
    }
    if (triangles == 0) throw InputFailure("holds no triangles");
    TriangleMesh mesh;
    mesh.triangles.reserve(triangles);
    for (const ThreeMfPlacement& item : model.items) append(item, {root, {}}, mesh);
    warn(root, warnings);
    return {std::move(mesh), model.items.size()};
}

}  // namespace App
