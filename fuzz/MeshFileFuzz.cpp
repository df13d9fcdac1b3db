// Any bytes as a mesh file of any kind: a mesh comes out, or an error that says what is wrong. The
// first byte chooses the format; for kModelText the rest is a 3MF's model, which is packed first,
// as few changed archives are sound.

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "TeskMeshData/SurfaceMeasures.h"
#include "TeskPartFiles/Plates.h"
#include "TriangleMesh.h"
#include "tools/ZipMaker.h"

namespace {

constexpr int kModelText = 5;

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
}

/// However a file is read, its triangles are the same, and what is written reads back.
void readEveryWay(std::string_view bytes, Tesk::PartFormat format) {
    Tesk::ReadOptions options;
    options.threads = 1;
    const Tesk::PartFile part = Tesk::readPart(bytes, format, options);
    expectSound(part.mesh);
    const App::TriangleMesh mesh = App::triangleMeshOf(part.mesh);
    Tesk::measureSurface(mesh.positions, mesh.triangles);
    options.weldsVertices = false;
    const Tesk::PartFile apart = Tesk::readPart(bytes, format, options);
    expectSound(apart.mesh);
    expect(Tesk::weld(apart.mesh, 3) == part.mesh);
    const std::string copy = Tesk::encodePart(part.mesh, format);
    expect(Tesk::readPart(copy, format).mesh == part.mesh);
    // What one mesh holds, the items' objects hold together.
    std::size_t triangles = 0;
    const Tesk::Plate plate = Tesk::readPlate(bytes, format, options);
    for (const Tesk::PlateItem& item : plate.items) {
        triangles += plate.objects.at(item.object).mesh.triangles.size();
    }
    expect(triangles == part.mesh.triangles.size());
}

/// A transform for two of three items.
std::vector<std::optional<Tesk::PartTransform>> someTransforms(std::size_t count) {
    std::vector<std::optional<Tesk::PartTransform>> transforms(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 3 == 1) continue;
        transforms[i].emplace();
        for (std::size_t k = 0; k < 12; ++k) {
            transforms[i]->m[k] = std::ldexp(1.0 / static_cast<double>(3 + i + k), 7 - int(k) * 3);
        }
    }
    return transforms;
}

/// A package with new transforms differs from the old one in nothing else that the reader sees.
void expectRewritten(const std::string& changed, const Tesk::Plate& plate,
                     const std::vector<std::optional<Tesk::PartTransform>>& transforms) {
    const Tesk::Plate after = Tesk::readPlate(changed, plate.format);
    expect(after.itemCount == plate.itemCount && after.items.size() == plate.items.size() &&
           after.objects.size() == plate.objects.size() && after.unit == plate.unit);
    for (std::size_t i = 0; i < plate.items.size(); ++i) {
        const Tesk::PlateItem& before = plate.items[i];
        const Tesk::PlateItem& item = after.items[i];
        expect(item.place == before.place && item.object == before.object);
        expect(item.transform == transforms[item.place].value_or(before.transform));
    }
    for (std::size_t i = 0; i < plate.objects.size(); ++i) {
        expect(after.objects[i].mesh == plate.objects[i].mesh);
        expect(after.objects[i].name == plate.objects[i].name);
    }
    // The same transforms once more are written in the same characters.
    expect(Tesk::withTransforms(changed, transforms) == changed);
}

void readObjects(std::string_view bytes) {
    const Tesk::Plate plate = Tesk::readPlate(bytes, Tesk::PartFormat::kThreeMf);
    expect(!plate.items.empty() && plate.items.size() <= plate.itemCount);
    for (const Tesk::PlateObject& object : plate.objects) expectSound(object.mesh);
    const std::vector<std::optional<Tesk::PartTransform>> none(plate.itemCount);
    expect(Tesk::withTransforms(bytes, none) == bytes);
    const auto transforms = someTransforms(plate.itemCount);
    const std::string changed = Tesk::withTransforms(bytes, transforms);
    try {
        expectRewritten(changed, plate, transforms);
    } catch (const Tesk::PartFileError&) {
        expect(false);
    }
}

template <class Work>
void tried(Work work) {
    try {
        work();
    } catch (const Tesk::PartFileError& error) {
        expect(error.what()[0] != '\0');
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] % 6 == kModelText) {
        const std::string package =
            makeZip({{.name = "3D/3dmodel.model", .content = std::string(bytes), .method = 0},
                     {.name = "a.png", .content = "a picture", .hasDescriptor = true}});
        tried([&] { readEveryWay(package, Tesk::PartFormat::kThreeMf); });
        tried([&] { readObjects(package); });
        return 0;
    }
    static_cast<void>(Tesk::formatOf(bytes));
    const auto format = static_cast<Tesk::PartFormat>(data[0] % 6);
    tried([&] { readEveryWay(bytes, format); });
    if (format == Tesk::PartFormat::kThreeMf) tried([&] { readObjects(bytes); });
    return 0;
}
