#include "part/MeshEncoding.h"

#include <array>
#include <utility>

namespace App {

namespace {

template <Tesk::PartFormat Format>
std::string encode(const TriangleMesh& mesh) {
    return Tesk::encodePart(partMeshOf(mesh), Format);
}

constexpr std::array<std::pair<Tesk::PartFormat, Encoder>, 5> kEncoders = {{
    {Tesk::PartFormat::kStl, encode<Tesk::PartFormat::kStl>},
    {Tesk::PartFormat::kObj, encode<Tesk::PartFormat::kObj>},
    {Tesk::PartFormat::kPly, encode<Tesk::PartFormat::kPly>},
    {Tesk::PartFormat::kOff, encode<Tesk::PartFormat::kOff>},
    {Tesk::PartFormat::kThreeMf, encode<Tesk::PartFormat::kThreeMf>},
}};

}  // namespace

Encoder encoderFor(std::string_view extension) {
    for (const auto& [format, encoder] : kEncoders) {
        if (extension == Tesk::extensionOf(format)) return encoder;
    }
    return nullptr;
}

}  // namespace App
