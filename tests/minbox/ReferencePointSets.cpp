#include "ReferencePointSets.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "PreparedHull.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "shapes/CadShapes.h"
#include "shapes/SampleMeshes.h"
#include "shapes/Shapes.h"
#include "tools/TestSize.h"

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

void addParts(std::vector<ReferenceSet>& sets, TestRandom& random) {
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
        sets.push_back({name, part.positions, {}});
        sets.push_back({name + "Turned", transformed(part.positions, randomTurn(random)), {}});
        sets.push_back({name + "Noisy", withNoise(part.positions, 1e-5, random), {}});
    }
}

void addFlatShapes(std::vector<ReferenceSet>& sets, TestRandom& random) {
    sets.push_back({"FlatSquare", {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {}});
    sets.push_back({"FlatTriangle", {{0, 0, 0}, {3, 1, 2}, {1, 4, 2}}, {}});
    Points oblique = pointsOnGrid(60, 9, random);
    for (UPoint3<float>& p : oblique) p.z = p.x + 2 * p.y;
    sets.push_back({"FlatOblique", oblique, {}});
}

void addTies(std::vector<ReferenceSet>& sets, TestRandom& random) {
    sets.push_back(
        {"Octahedron", {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}}, {}});
    for (int i = 0; i < 8; ++i) {
        const std::string n = std::to_string(i);
        sets.push_back({"RoundedSphere" + n, rounded(pointsOnSphere(150, random), 0.125f), {}});
        sets.push_back({"RoundedPrism" + n, rounded(prismCorners(9 + 5 * i, 2), 0.0625f), {}});
        sets.push_back({"SlantedGrid" + n, slantedGrid(random), {}});
        sets.push_back({"SmallGrid" + n, pointsOnGrid(8 + i, 2 + i % 3, random), {}});
    }
}

}  // namespace

Points ReferenceSet::load() const {
    if (meshFile.empty()) return points;
    const std::optional<Part> part = readSampleMesh(meshFile);
    return part ? part->positions : Points();
}

std::ostream& operator<<(std::ostream& out, const ReferenceSet& set) {
    return out << set.name;
}

std::vector<ReferenceSet> referenceShapes() {
    std::vector<ReferenceSet> sets;
    for (const NamedPoints& named : comparisonPoints()) {
        sets.push_back({named.name, named.points, {}});
    }
    TestRandom random(5);
    addParts(sets, random);
    addFlatShapes(sets, random);
    addTies(sets, random);
    sets.push_back({"FarBox", moved(boxCorners(2, 3, 4), 1000, -2000, 500), {}});
    sets.push_back({"FarBall", moved(pointsInBall(100, random), 300, 200, -100), {}});
    return sets;
}

std::vector<ReferenceSet> referenceShapesAndMeshes() {
    std::vector<ReferenceSet> sets = referenceShapes();
    const std::vector<std::filesystem::path> files = sampleMeshes();
    for (const auto& file : files) sets.push_back({file.filename().string(), {}, file});
    if (files.empty()) sets.push_back({"NoSampleMeshes", {}, {}});
    return sets;
}

std::string nameOfSet(const testing::TestParamInfo<ReferenceSet>& tested) {
    std::string name = tested.param.name;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

Points slantedGrid(TestRandom& random) {
    const UVector3<float> frames[2][3] = {{{1, 2, 2}, {2, 1, -2}, {2, -2, 1}},
                                          {{2, 3, 6}, {3, -6, 2}, {6, 2, -3}}};
    const UVector3<float>* frame = frames[random.below(2)];
    const float unit = static_cast<float>(1 + random.below(random.below(2) == 0 ? 9 : 200000));
    Points points;
    const int count = 6 + random.below(60);
    const int steps = 2 + random.below(4);
    for (const UPoint3<float>& p : pointsOnGrid(count, steps, random)) {
        const UVector3<float> v =
            frame[0] * (unit * p.x) + frame[1] * (unit * p.y) + frame[2] * (unit * p.z);
        points.emplace_back(v.x, v.y, v.z);
    }
    return points;
}

Points randomSolid(TestRandom& random) {
    Points points;
    int count = 0;
    switch (random.below(6)) {
        case 0:
            count = 5 + random.below(60);
            points = pointsOnGrid(count, 2 + random.below(6), random);
            break;
        case 1:
            points = transformed(prismCorners(3 + random.below(60), random.in(1e-3f, 3)),
                                 randomTurn(random));
            points = withNoise(points, std::pow(10.0, -4 - random.below(6)), random);
            break;
        case 2:
            points = slantedGrid(random);
            break;
        default:
            points = noisyPart(random);
    }
    // Thin ones, too: their silhouettes have edges nearly parallel to the direction.
    if (random.below(3) == 0) {
        for (UPoint3<float>& p : points) p.z *= 1e-4f;
    }
    return points;
}

bool isInUsualUnit(const Points& points) {
    return hullOf(points).points().unitLength() == 1.0;
}

void OnReferenceSets::SetUp() {
    m_points = GetParam().load();
    if (m_points.empty()) {
        if (GetParam().meshFile.empty()) GTEST_SKIP() << whyNoSampleMeshes();
        GTEST_SKIP() << "built without a reader for " << GetParam().meshFile;
    }
    const gte::ConvexHull3 hull(m_points.data(), count(), 3);
    ASSERT_FALSE(hull.getTriangles().empty());
    const std::size_t most = testsAreSmall() ? 300 : 2000;
    if (hull.getVertices().size() > most) GTEST_SKIP() << "a hull of many vertices";
}
