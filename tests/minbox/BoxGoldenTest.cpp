// Hulls, boxes and placements against values kept in a file, so that compilers and platforms
// compare equal. Rewritten only on demand: run with TESK_REWRITE_GOLDEN=1 in the environment.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "BoxTestSupport.h"
#include "OrientOptimizer.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

namespace {

std::string hexText(const std::vector<float>& values) {
    std::string text;
    for (const float value : values) text += hexFloat(value) + ' ';
    return text;
}

/// Size and hash of a hull: its vertices, triangles and edges in order.
std::string hullText(const Points& points) {
    const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
    BitHash hash;
    for (const UPoint3<float>& p : hull.getVertices()) {
        for (int i = 0; i < 3; ++i) hash.add(p[i]);
    }
    for (const auto& triangle : hull.getTriangles()) {
        for (const int corner : triangle) hash.add(static_cast<std::uint32_t>(corner));
    }
    for (const gte::HullEdge& edge : hull.getHullEdges()) {
        for (const int i : {edge.a, edge.b, edge.f0, edge.f1}) {
            hash.add(static_cast<std::uint32_t>(i));
        }
    }
    std::ostringstream text;
    text << "hull " << hull.getVertices().size() << ' ' << hull.getTriangles().size() << ' '
         << std::hex << hash.value() << '\n';
    return text.str();
}

std::string placementText(const Points& points) {
    MeshKernel mesh(points, {});
    UMatrix4<float> matrix;
    OrientOptimizer::calculateOrients_minBoundingBox(&mesh, matrix, nullptr);
    std::vector<float> cells;
    for (int i = 0; i < 16; ++i) cells.push_back(matrix.at(i / 4, i % 4));
    return "placement " + hexText(cells) + '\n';
}

std::string goldenText() {
    std::string text =
        "# per set: hull (vertices, triangles, hash), per operation centre, axes, extent; "
        "placement\n";
    TestRandom random(51);
    std::vector<NamedPoints> sets = comparisonPoints(/*isSmall=*/true);
    for (int i = 0; i < 20; ++i) {
        const Points upright = bracketCorners(random);
        const Points part = transformed(upright, randomTurn(random));
        sets.push_back({"NoisyBracket" + std::to_string(i), withNoise(part, 1e-5, random)});
    }
    for (const NamedPoints& set : sets) {
        text += set.name + '\n' + hullText(set.points);
        for (const Operation& operation : allOperations()) {
            MinBoundingBox calculator;
            const OrientedBox3 box = operation.run(calculator, set.points);
            text += operation.name + ' ' + hexText(floatsOf(box)) + '\n';
        }
        const OrientedBox3 box =
            MinBoundingBox::generateOBB(set.points.data(), countOf(set.points));
        text += "principal " + hexText(floatsOf(box)) + '\n' + placementText(set.points);
    }
    return text;
}

TEST(BoxGolden, ResultsAreThoseOnFile) {
    const std::filesystem::path file = std::filesystem::path(TESK_GOLDEN_DIR) / "boxes.txt";
    const std::string text = goldenText();
    const char* rewrite = std::getenv("TESK_REWRITE_GOLDEN");
    if (rewrite != nullptr && std::string(rewrite) == "1") {
        std::ofstream(file, std::ios::binary) << text;
        GTEST_SKIP() << "rewrote " << file;
    }
    std::ifstream kept(file, std::ios::binary);
    ASSERT_TRUE(kept) << "no file " << file;
    std::istringstream found(text);
    std::string expected;
    std::string line;
    std::string set;
    while (std::getline(kept, expected)) {
        ASSERT_TRUE(std::getline(found, line));
        if (expected.find(' ') == std::string::npos) set = expected;
        ASSERT_EQ(line, expected) << "in " << set;
    }
    EXPECT_FALSE(std::getline(found, line)) << "more than on file";
}

}  // namespace
