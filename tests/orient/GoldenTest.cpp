// Results of whole calls against values kept in files, so that compilers and platforms compare
// equal. Rewritten only on demand: run with TESK_REWRITE_GOLDEN=1 in the environment.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "CompareRecords.h"
#include "ReferenceShapes.h"
#include "shapes/Shapes.h"

namespace {

std::string asText(const CallResult& result) {
    std::ostringstream text;
    text << "axis " << hexFloat(result.axis.x) << ' ' << hexFloat(result.axis.y) << ' '
         << hexFloat(result.axis.z) << " angle " << hexFloat(result.angle) << '\n';
    for (const auto& record : result.orientations) {
        for (const float value : valuesOf(record)) text << hexFloat(value) << ' ';
        text << '\n';
    }
    return text.str();
}

std::string goldenText(const NamedPart& shape) {
    std::string text =
        "# axis x y z, angle, overhangArea, supportVolume, projectedArea, height, "
        "boxVolume, score\n";
    for (const std::size_t placement : {std::size_t{0}, placements().size() - 1}) {
        MeshKernel mesh = shape.part.kernel(placements()[placement].matrix);
        text += "placement " + std::string(placements()[placement].name) + '\n';
        text += asText(
            calculated(mesh, {.overhangAngle = 50.0f, .supportAreaWeight = 1, .baseHeight = 2.0f}));
    }
    return text;
}

class Golden : public testing::TestWithParam<NamedPart> {};

TEST_P(Golden, ResultsAreThoseOnFile) {
    const std::filesystem::path file =
        std::filesystem::path(TESK_GOLDEN_DIR) / (GetParam().name + ".txt");
    const std::string text = goldenText(GetParam());
    const char* rewrite = std::getenv("TESK_REWRITE_GOLDEN");
    if (rewrite != nullptr && std::string(rewrite) == "1") {
        std::ofstream(file, std::ios::binary) << text;
        GTEST_SKIP() << "rewrote " << file;
    }
    std::ifstream stream(file, std::ios::binary);
    ASSERT_TRUE(stream) << "no file " << file;
    std::stringstream kept;
    kept << stream.rdbuf();
    EXPECT_EQ(text, kept.str());
}

INSTANTIATE_TEST_SUITE_P(Golden, Golden, testing::ValuesIn(referenceShapes()),
                         [](const auto& shape) { return shape.param.name; });

}  // namespace
