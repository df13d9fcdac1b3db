#include "off/OffWriter.h"

#include "text/MeshText.h"
#include "text/Message.h"

namespace Tesk::files {

std::string encodeOff(const PartMesh& mesh) {
    std::string text = message("OFF\n", mesh.positions.size(), " ", mesh.triangles.size(), " 0\n");
    for (const PartPoint& point : mesh.positions) {
        appendPoint(text, point);
        text += '\n';
    }
    for (const auto& [a, b, c] : mesh.triangles) {
        text += message("3 ", a, " ", b, " ", c, "\n");
    }
    return text;
}

}  // namespace Tesk::files
