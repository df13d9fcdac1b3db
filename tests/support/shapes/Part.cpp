#include "shapes/Part.h"

#include <array>
#include <bit>
#include <map>

namespace {

std::array<std::uint32_t, 3> positionBits(const UPoint3<float>& p) {
    return {std::bit_cast<std::uint32_t>(p.x + 0.0f), std::bit_cast<std::uint32_t>(p.y + 0.0f),
            std::bit_cast<std::uint32_t>(p.z + 0.0f)};
}

}  // namespace

MeshKernel Part::kernel(const UMatrix4<float>& placement) const {
    MeshKernel mesh(positions, triangles);
    mesh.setMatrix(placement);
    return mesh;
}

std::int32_t Part::add(const UPoint3<float>& position) {
    positions.push_back(position);
    return static_cast<std::int32_t>(positions.size()) - 1;
}

Part& Part::join(const Part& other) {
    const auto first = static_cast<std::int32_t>(positions.size());
    positions.insert(positions.end(), other.positions.begin(), other.positions.end());
    for (const Corners& c : other.triangles) {
        triangles.push_back({c[0] + first, c[1] + first, c[2] + first});
    }
    return *this;
}

Part Part::moved(float dx, float dy, float dz) const {
    Part part = *this;
    for (UPoint3<float>& p : part.positions) p = p + UVector3<float>(dx, dy, dz);
    return part;
}

Part Part::scaled(float sx, float sy, float sz) const {
    Part part = *this;
    for (UPoint3<float>& p : part.positions) p = {p.x * sx, p.y * sy, p.z * sz};
    return part;
}

Part Part::placed(const UMatrix4<float>& matrix) const {
    Part part = *this;
    for (UPoint3<float>& p : part.positions) p = p * matrix;
    return part;
}

Part Part::withoutEvery(std::size_t n) const {
    Part part;
    part.positions = positions;
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        if (i % n != 0) part.triangles.push_back(triangles[i]);
    }
    return part;
}

Part Part::turnedInsideOut() const {
    Part part = *this;
    for (Corners& c : part.triangles) c = {c[0], c[2], c[1]};
    return part;
}

Part Part::welded() const {
    Part part;
    std::map<std::array<std::uint32_t, 3>, std::int32_t> indexOf;
    std::vector<std::int32_t> newIndex;
    newIndex.reserve(positions.size());
    for (const UPoint3<float>& p : positions) {
        const auto [entry, isNew] =
            indexOf.try_emplace(positionBits(p), static_cast<std::int32_t>(part.positions.size()));
        if (isNew) part.positions.push_back(p);
        newIndex.push_back(entry->second);
    }
    const auto mapped = [&](std::int32_t old) { return newIndex[static_cast<std::size_t>(old)]; };
    for (const Corners& c : triangles) {
        part.triangles.push_back({mapped(c[0]), mapped(c[1]), mapped(c[2])});
    }
    return part;
}

Part Part::withUnusedVertices(int n) const {
    Part part = *this;
    const UPoint3<float> base = positions.empty() ? UPoint3<float>() : positions.front();
    for (int i = 0; i < n; ++i) {
        const auto f = static_cast<float>(i);
        part.add({base.x + 0.75f * f, base.y - 0.5f * f, base.z + 0.25f * f});
    }
    return part;
}

Part Part::withDegenerateTriangles() const {
    Part part = *this;
    const std::int32_t a = part.add({0.25f, 0.25f, 0.25f});
    const std::int32_t b = part.add({0.5f, 0.5f, 0.5f});
    const std::int32_t c = part.add({1.0f, 1.0f, 1.0f});
    part.triangles.push_back({a, a, a});
    part.triangles.push_back({a, b, a});
    part.triangles.push_back({a, b, c});
    part.triangles.push_back({c, c, b});
    return part;
}
