#include "ReferencePointSets.h"

#include <cmath>

#include "CadShapes.h"
#include "SampleMeshes.h"
#include "Shapes.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

namespace {

Points moved(Points points, float dx, float dy, float dz) {
    for (UPoint3<float>& p : points) p = p + UVector3<float>(dx, dy, dz);
    return points;
}

/// Every coordinate to the next whole multiple of a step: many edges in exactly right angles.
Points rounded(Points points, float step) {
    for (UPoint3<float>& p : points) {
        for (int c = 0; c < 3; ++c) p[c] = std::round(p[c] / step) * step;
    }
    return points;
}

void addParts(std::vector<NamedPoints>& sets, TestRandom& random) {
    const std::vector<std::pair<std::string, Part>> parts = {
        {"Column", makeColumnWithArm()},
        {"BracketPart", makeBracket(30, 20, 4, 12)},
        {"Gear", makeGear(11, 20, 5)},
        {"Table", makeTable()},
        {"TouchingSolids", makeTouchingSolids()},
        {"Cylinder", makeCylinder(7, 30, 48)},
        {"Assembly1", makeRandomAssembly(1)},
        {"Assembly2", makeRandomAssembly(2)},
        {"Assembly3", makeRandomAssembly(3)}};
    for (const auto& [name, part] : parts) {
        sets.push_back({name, part.positions});
        sets.push_back({name + "Turned", transformed(part.positions, randomTurn(random))});
        sets.push_back({name + "Noisy", withNoise(part.positions, 1e-5, random)});
    }
}

}  // namespace

std::vector<NamedPoints> referenceSolids() {
    std::vector<NamedPoints> sets = comparisonPoints();
    TestRandom random(5);
    addParts(sets, random);
    sets.push_back(
        {"Octahedron", {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}}});
    sets.push_back({"FlatSquare", {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}});
    sets.push_back({"FlatTriangle", {{0, 0, 0}, {3, 1, 2}, {1, 4, 2}}});
    sets.push_back({"FarBox", moved(boxCorners(2, 3, 4), 1000, -2000, 500)});
    sets.push_back({"FarBall", moved(pointsInBall(100, random), 300, 200, -100)});
    for (int i = 0; i < 8; ++i) {
        const std::string n = std::to_string(i);
        sets.push_back({"RoundedSphere" + n, rounded(pointsOnSphere(150, random), 0.125f)});
        sets.push_back({"RoundedPrism" + n, rounded(prismCorners(9 + 5 * i, 2), 0.0625f)});
        sets.push_back({"SmallGrid" + n, pointsOnGrid(8 + i, 2 + i % 3, random)});
    }
    Points flat = pointsOnGrid(60, 9, random);
    for (UPoint3<float>& p : flat) p.z = p.x + 2 * p.y;
    sets.push_back({"FlatOblique", flat});
    return sets;
}

std::vector<NamedPoints> referenceSolidsAndMeshes(std::size_t hullVertices) {
    std::vector<NamedPoints> sets = referenceSolids();
    for (const std::filesystem::path& file : sampleMeshes()) {
        const std::optional<Part> part = readSampleMesh(file);
        if (!part) continue;
        const gte::ConvexHull3 hull(part->positions.data(),
                                    static_cast<int>(part->positions.size()), 3);
        if (hull.getTriangles().empty() || hull.getVertices().size() > hullVertices) continue;
        sets.push_back({file.filename().string(), part->positions});
    }
    return sets;
}
