#include "stl/StlWriter.h"

#include <cmath>

#include "bytes/ByteOrder.h"
#include "stl/StlLayout.h"

namespace Tesk::files {

namespace {

/// The unit normal, or zero for a triangle without area.
PartPoint normalOf(const PartPoint& a, const PartPoint& b, const PartPoint& c) {
    const PartPoint u{b.x - a.x, b.y - a.y, b.z - a.z};
    const PartPoint v{c.x - a.x, c.y - a.y, c.z - a.z};
    const PartPoint n{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
    const auto x = static_cast<double>(n.x);
    const auto y = static_cast<double>(n.y);
    const auto z = static_cast<double>(n.z);
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0.0) return n;
    return {static_cast<float>(x / length), static_cast<float>(y / length),
            static_cast<float>(z / length)};
}

void appendPoint(std::string& bytes, const PartPoint& p) {
    for (const float value : {p.x, p.y, p.z}) appendNumber(bytes, value);
}

}  // namespace

std::string encodeStl(const PartMesh& mesh) {
    std::string bytes = "binary STL, millimetres";
    bytes.resize(80, ' ');
    bytes.reserve(kStlHeaderSize + mesh.triangles.size() * kStlRecordSize);
    appendNumber(bytes, static_cast<std::uint32_t>(mesh.triangles.size()));
    for (const auto& [i, j, k] : mesh.triangles) {
        const PartPoint& a = mesh.positions[static_cast<std::size_t>(i)];
        const PartPoint& b = mesh.positions[static_cast<std::size_t>(j)];
        const PartPoint& c = mesh.positions[static_cast<std::size_t>(k)];
        for (const PartPoint& p : {normalOf(a, b, c), a, b, c}) appendPoint(bytes, p);
        appendNumber(bytes, std::uint16_t{0});
    }
    return bytes;
}

}  // namespace Tesk::files
