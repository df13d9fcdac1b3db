#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "CompareEvaluations.h"
#include "plain/PlainCandidates.h"
#include "shapes/SampleMeshes.h"
#include "tools/TestSize.h"

using namespace Tesk::orient;

namespace {

/// One parameter per file; a single empty path where there are none, so that a test can say so.
std::vector<std::filesystem::path> filesOrNone() {
    std::vector<std::filesystem::path> files = sampleMeshes();
    if (files.empty()) files.emplace_back();
    return files;
}

class EvaluateOrientOnSampleMeshes : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(EvaluateOrientOnSampleMeshes, AgreesWithThePlainVersion) {
    if (GetParam().empty()) GTEST_SKIP() << whyNoSampleMeshes();
    const std::optional<Part> part = readSampleMesh(GetParam());
    if (!part) GTEST_SKIP() << "built without a reader for " << GetParam();
    MeshKernel mesh = part->kernel();
    PlainRandom random(1);
    std::vector<UVector3<float>> directions = plainCandidates(mesh, random);
    if (testsAreSmall()) {
        const std::size_t stride = part->triangles.size() > 50000 ? 29 : 11;
        std::vector<UVector3<float>> few;
        for (std::size_t i = 0; i < directions.size(); i += stride) few.push_back(directions[i]);
        directions = few;
    }
    expectSameAsPlain(mesh, directions, {});
    directions.resize(std::min<std::size_t>(directions.size(), 4));
    expectSameAsPlain(mesh, directions, {.baseHeight = -1.0f});
}

std::string nameOf(const testing::TestParamInfo<std::filesystem::path>& info) {
    if (info.param.empty()) return "NoneFound";
    std::string name = info.param.filename().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Reference, EvaluateOrientOnSampleMeshes, testing::ValuesIn(filesOrNone()),
                         nameOf);

}  // namespace
