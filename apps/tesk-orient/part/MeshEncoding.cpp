#include "part/MeshEncoding.h"

namespace App {

namespace {

template <Tesk::PartFormat Format>
std::string encode(const TriangleMesh& mesh) {
    return Tesk::encodePart(partMeshOf(mesh), Format);
}

}  // namespace

Encoder encoderFor(std::string_view extension) {
    if (extension == ".stl") return encode<Tesk::PartFormat::kStl>;
    if (extension == ".obj") return encode<Tesk::PartFormat::kObj>;
    if (extension == ".ply") return encode<Tesk::PartFormat::kPly>;
    if (extension == ".off") return encode<Tesk::PartFormat::kOff>;
    if (extension == ".3mf") return encode<Tesk::PartFormat::kThreeMf>;
    return nullptr;
}

}  // namespace App
