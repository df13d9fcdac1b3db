#include "support/BenchMeshes.h"

#include <algorithm>
#include <map>
#include <utility>

#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

Part refinedOnce(const Part& part) {
    Part finer;
    finer.positions = part.positions;
    finer.triangles.reserve(part.triangles.size() * 4);
    std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> middles;
    const auto middle = [&](std::int32_t a, std::int32_t b) {
        const auto [entry, isNew] = middles.try_emplace({std::min(a, b), std::max(a, b)});
        if (isNew) {
            const UPoint3<float> p = part.positions[static_cast<std::size_t>(a)];
            const UPoint3<float> q = part.positions[static_cast<std::size_t>(b)];
            entry->second = finer.add(p + (q - p) * 0.5f);
        }
        return entry->second;
    };
    for (const auto& [a, b, c] : part.triangles) {
        const std::int32_t ab = middle(a, b);
        const std::int32_t bc = middle(b, c);
        const std::int32_t ca = middle(c, a);
        finer.triangles.insert(finer.triangles.end(),
                               {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
    }
    return finer;
}

/// A pose in which nothing lies along an axis.
Part tilted(const Part& part) {
    return part.placed(UMatrix4<float>::CreateRotateMatrix(0.7f, {0.3f, 1.0f, 0.2f}));
}

}  // namespace

Part refined(Part part, std::size_t triangles) {
    part = part.welded();
    while (part.triangles.size() < triangles) part = refinedOnce(part);
    return part;
}

std::vector<BenchMesh> benchMeshes(std::size_t maxTriangles) {
    const Part bracket = tilted(makeBracket(60.0f, 40.0f, 6.0f, 30.0f));
    const Part plate = tilted(makePlateWithHoles(6, 4, 15.0f, 5.0f, 24));
    std::vector<BenchMesh> meshes;
    meshes.push_back({"box", makeBox({0, 0, 0}, {20, 30, 40})});
    meshes.push_back({"plate with holes", plate});
    meshes.push_back({"gear", tilted(makeGear(400, 40.0f, 10.0f))});
    meshes.push_back({"bracket, fine", refined(bracket, 14'000)});
    meshes.push_back({"sphere", makeSphere(30.0f, 70'000)});
    meshes.push_back({"plate, fine", refined(plate, 150'000)});
    meshes.push_back({"bracket, finer", refined(bracket, 300'000)});
    meshes.push_back({"sphere, finer", makeSphere(30.0f, 1'000'000)});
    meshes.push_back({"plate, finer", refined(plate, 700'000)});
    std::erase_if(meshes,
                  [&](const BenchMesh& mesh) { return mesh.part.triangles.size() > maxTriangles; });
    return meshes;
}
