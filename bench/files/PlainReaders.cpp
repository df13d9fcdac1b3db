#include "files/PlainReaders.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <unordered_map>

namespace {

using Tesk::PartMesh;
using Tesk::PartPoint;

struct PointHash {
    std::size_t operator()(const PartPoint& p) const {
        const std::hash<float> hash;
        return hash(p.x) * 31 * 31 + hash(p.y) * 31 + hash(p.z);
    }
};

PartMesh plainlyWelded(const PartMesh& mesh) {
    PartMesh welded;
    std::unordered_map<PartPoint, std::int32_t, PointHash> seen;
    for (const auto& triangle : mesh.triangles) {
        auto& corners = welded.triangles.emplace_back();
        for (std::size_t k = 0; k < 3; ++k) {
            const PartPoint& p = mesh.positions[static_cast<std::size_t>(triangle[k])];
            const auto [place, isNew] =
                seen.try_emplace(p, static_cast<std::int32_t>(welded.positions.size()));
            if (isNew) welded.positions.push_back({p.x + 0.0f, p.y + 0.0f, p.z + 0.0f});
            corners[k] = place->second;
        }
    }
    return welded;
}

template <class Number>
Number take(const char*& at) {
    Number value;
    std::memcpy(&value, at, sizeof(Number));
    at += sizeof(Number);
    return value;
}

PartPoint takePoint(const char*& at) {
    const auto x = take<float>(at);
    const auto y = take<float>(at);
    const auto z = take<float>(at);
    return {x, y, z};
}

PartMesh readStl(const std::string& bytes) {
    PartMesh mesh;
    const char* at = bytes.data() + 80;
    const auto count = take<std::uint32_t>(at);
    for (std::uint32_t i = 0; i < count; ++i) {
        at += 12;
        const auto first = static_cast<std::int32_t>(mesh.positions.size());
        for (int k = 0; k < 3; ++k) mesh.positions.push_back(takePoint(at));
        mesh.triangles.push_back({first, first + 1, first + 2});
        at += 2;
    }
    return mesh;
}

float floatAt(char*& at) {
    return std::strtof(at, &at);
}

std::int32_t indexAt(char*& at) {
    return static_cast<std::int32_t>(std::strtol(at, &at, 10));
}

PartMesh readObj(std::string bytes) {
    PartMesh mesh;
    char* at = bytes.data();
    while (*at != '\0') {
        if (at[0] == 'v') {
            ++at;
            const float x = floatAt(at);
            const float y = floatAt(at);
            mesh.positions.push_back({x, y, floatAt(at)});
        } else if (at[0] == 'f') {
            ++at;
            const std::int32_t a = indexAt(at) - 1;
            const std::int32_t b = indexAt(at) - 1;
            mesh.triangles.push_back({a, b, indexAt(at) - 1});
        }
        at = std::strchr(at, '\n') + 1;
    }
    return mesh;
}

PartMesh readOff(std::string bytes) {
    PartMesh mesh;
    char* at = bytes.data() + 3;
    const std::int32_t vertices = indexAt(at);
    const std::int32_t faces = indexAt(at);
    indexAt(at);
    for (std::int32_t i = 0; i < vertices; ++i) {
        const float x = floatAt(at);
        const float y = floatAt(at);
        mesh.positions.push_back({x, y, floatAt(at)});
    }
    for (std::int32_t i = 0; i < faces; ++i) {
        indexAt(at);
        const std::int32_t a = indexAt(at);
        const std::int32_t b = indexAt(at);
        mesh.triangles.push_back({a, b, indexAt(at)});
    }
    return mesh;
}

std::size_t countAfter(const std::string& bytes, const char* what) {
    return std::strtoull(bytes.c_str() + bytes.find(what) + std::strlen(what), nullptr, 10);
}

PartMesh readPly(const std::string& bytes) {
    PartMesh mesh;
    const std::size_t vertices = countAfter(bytes, "element vertex ");
    const std::size_t faces = countAfter(bytes, "element face ");
    const char* at = bytes.data() + bytes.find("end_header\n") + 11;
    for (std::size_t i = 0; i < vertices; ++i) mesh.positions.push_back(takePoint(at));
    for (std::size_t i = 0; i < faces; ++i) {
        ++at;
        const auto a = take<std::int32_t>(at);
        const auto b = take<std::int32_t>(at);
        mesh.triangles.push_back({a, b, take<std::int32_t>(at)});
    }
    return mesh;
}

}  // namespace

Tesk::PartMesh plainlyRead(const std::string& bytes, Tesk::PartFormat format) {
    switch (format) {
        case Tesk::PartFormat::kStl:
            return plainlyWelded(readStl(bytes));
        case Tesk::PartFormat::kObj:
            return plainlyWelded(readObj(bytes));
        case Tesk::PartFormat::kPly:
            return plainlyWelded(readPly(bytes));
        case Tesk::PartFormat::kOff:
            return plainlyWelded(readOff(bytes));
        case Tesk::PartFormat::kThreeMf:
            break;
    }
    throw std::invalid_argument("no plain reader of 3MF");
}
