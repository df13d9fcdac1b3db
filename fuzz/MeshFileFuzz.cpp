// Any bytes as a mesh file of any kind: a mesh comes out, or an error that says what is wrong.

#include <cmath>
#include <cstdlib>
#include <string>

#include "Failure.h"
#include "FormatCheck.h"
#include "LibraryReader.h"
#include "MeshChecks.h"
#include "ThreeMfFile.h"
#include "Welding.h"

namespace {

App::TriangleMesh meshIn(int kind, std::string bytes) {
    if (kind == 4) return App::readThreeMf(std::move(bytes)).mesh;
    App::FileContent content;
    const char* extension = "";
    switch (kind) {
        case 0:
            content = App::checkStl(bytes);
            extension = "stl";
            break;
        case 1:
            content = App::checkObj(bytes);
            extension = "obj";
            break;
        case 2:
            content = App::checkPly(bytes);
            extension = "ply";
            break;
        default:
            content = App::checkOff(bytes);
            extension = "off";
    }
    return App::readWithLibrary(bytes, extension, content);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    try {
        const App::TriangleMesh mesh = App::weld(
            meshIn(data[0] % 5, std::string(reinterpret_cast<const char*>(data) + 1, size - 1)));
        const auto count = static_cast<std::int32_t>(mesh.positions.size());
        for (const auto& triangle : mesh.triangles) {
            for (const std::int32_t corner : triangle) {
                if (corner < 0 || corner >= count) std::abort();
            }
        }
        App::countDegenerate(mesh);
    } catch (const App::Failure& failure) {
        if (failure.what()[0] == '\0') std::abort();
    }
    return 0;
}
