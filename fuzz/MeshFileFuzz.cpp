// Any bytes as a mesh file of any kind: a mesh comes out, or an error that says what is wrong.

#include <cmath>
#include <cstdlib>
#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "part/MeshChecks.h"

namespace {

void expect(bool holds) {
    if (!holds) std::abort();
}

void expectSound(const Tesk::PartMesh& mesh) {
    expect(!mesh.triangles.empty());
    const auto count = static_cast<std::int32_t>(mesh.positions.size());
    for (const auto& triangle : mesh.triangles) {
        for (const std::int32_t corner : triangle) expect(corner >= 0 && corner < count);
    }
    for (const Tesk::PartPoint& p : mesh.positions) {
        expect(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z));
    }
    App::measure(App::triangleMeshOf(mesh));
}

/// However a file is read, its triangles are the same, and what is written reads back.
void readEveryWay(std::string_view bytes, Tesk::PartFormat format) {
    Tesk::ReadOptions options;
    options.threads = 1;
    const Tesk::PartFile part = Tesk::readPart(bytes, format, options);
    expectSound(part.mesh);
    options.weldsVertices = false;
    const Tesk::PartFile apart = Tesk::readPart(bytes, format, options);
    expectSound(apart.mesh);
    expect(Tesk::weld(apart.mesh, 3) == part.mesh);
    const std::string copy = Tesk::encodePart(part.mesh, format);
    expect(Tesk::readPart(copy, format).mesh == part.mesh);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    static_cast<void>(Tesk::formatOf(bytes));
    try {
        readEveryWay(bytes, static_cast<Tesk::PartFormat>(data[0] % 5));
    } catch (const Tesk::PartFileError& error) {
        expect(error.what()[0] != '\0');
    }
    return 0;
}
