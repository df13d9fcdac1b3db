// Any mesh and any settings: the whole call must end, and the evaluation must have the bits of the
// plain one.

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "MeshInput.h"
#include "OrientOptimizer.h"
#include "orient/evaluation/EvaluateOrient.h"
#include "orient/grid/SampleGrid.h"
#include "orient/turn/Flatten.h"
#include "plain/PlainEvaluation.h"
#include "tools/FloatBits.h"

using namespace Tesk::orient;

namespace {

using OptimizeOrient::Configure;

/// Whether sampling this box takes more points than a fuzzer's patience allows.
bool isTooWide(const UBox3<float>& box) {
    const float x = box.MaxX() - box.MinX() + 2.0f;
    const float y = box.MaxY() - box.MinY() + 2.0f;
    const float z = box.MaxZ() - box.MinZ() + 2.0f;
    const float longest = std::max({x, y, z});
    return !(longest / std::min({x, y, z}) < 50.0f) && longest < 3e7f;
}

void expectSame(float a, float b) {
    if (!sameBits(a, b)) std::abort();
}

void expectSame(const PlainScores& a, const PlainScores& b) {
    expectSame(a.height, b.height);
    expectSame(a.supportVolume, b.supportVolume);
    expectSame(a.overhangArea, b.overhangArea);
    expectSame(a.projectedArea, b.projectedArea);
    expectSame(a.boxVolume, b.boxVolume);
}

/// Evaluates as one of the candidates, and by itself.
void compareWithPlain(const MeshKernel& mesh, const UVector3<float>& direction,
                      const Configure& config) {
    const std::vector<float> areas = plainAreas(mesh);
    const PlainScores plain =
        plainEvaluation(areas, mesh, direction, config.overhangAngle, /*computeSupport=*/true,
                        config.baseHeight, PlainSearch::kTrianglesOfColumn);
    const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
    OrientEvaluator evaluator(areas, flat, config.overhangAngle, /*computeSupport=*/true,
                              config.baseHeight);
    evaluator.begin({&direction, 1});
    const OrientMeasures m = evaluator.evaluate(0);
    expectSame(
        {m.height, m.supportVolume, m.overhangArea, m.projectedArea, m.boxVolume, m.reservedScore},
        plain);
    PlainScores s;
    evaluateOrient(areas, &mesh, direction, config.overhangAngle, /*computeSupport=*/true, s.height,
                   s.supportVolume, s.overhangArea, s.projectedArea, s.boxVolume, s.reservedScore,
                   config.baseHeight);
    expectSame(s, plain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Configure config;
    config.overhangAngle = takeCoordinate(input);
    config.supportAreaWeight = input.take<std::int32_t>();
    config.supportVolumeWeight = input.take<std::int32_t>();
    config.heightWeight = input.take<std::int32_t>();
    config.boxVolumeWeight = input.take<std::int32_t>();
    config.baseHeight = takeCoordinate(input);
    const UVector3<float> direction(takeCoordinate(input), takeCoordinate(input),
                                    takeCoordinate(input));
    MeshKernel mesh = takeMesh(input);
    if (isTooWide(mesh.GetBox())) return 0;

    compareWithPlain(mesh, direction, config);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
    OptimizeOrient::seedRandom(1);
    OrientOptimizer::calculateOrients(&mesh, config, axis, angle, &orientations, {});
    if (orientations.size() != 12) std::abort();
    return 0;
}
