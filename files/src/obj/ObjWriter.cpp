#include "obj/ObjWriter.h"

#include "text/MeshText.h"
#include "text/Message.h"

namespace Tesk::files {

std::string encodeObj(const PartMesh& mesh) {
    std::string text = "# millimetres\n";
    for (const PartPoint& point : mesh.positions) {
        text += "v ";
        appendPoint(text, point);
        text += '\n';
    }
    for (const auto& [a, b, c] : mesh.triangles) {
        text += message("f ", a + 1, " ", b + 1, " ", c + 1, "\n");
    }
    return text;
}

}  // namespace Tesk::files
