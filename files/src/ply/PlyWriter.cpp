#include "ply/PlyWriter.h"

#include "bytes/ByteOrder.h"
#include "text/Message.h"

namespace Tesk::files {

std::string encodePly(const PartMesh& mesh) {
    std::string bytes =
        message("ply\nformat binary_little_endian 1.0\ncomment millimetres\nelement vertex ",
                mesh.positions.size(),
                "\nproperty float x\nproperty float y\nproperty float z\nelement face ",
                mesh.triangles.size(), "\nproperty list uchar int vertex_indices\nend_header\n");
    bytes.reserve(bytes.size() + mesh.positions.size() * 12 + mesh.triangles.size() * 13);
    for (const PartPoint& point : mesh.positions) {
        for (const float value : {point.x, point.y, point.z}) appendNumber(bytes, value);
    }
    for (const auto& corners : mesh.triangles) {
        appendNumber(bytes, std::uint8_t{3});
        for (const std::int32_t corner : corners) appendNumber(bytes, corner);
    }
    return bytes;
}

}  // namespace Tesk::files
