// Times the evaluation of all candidate orientations against the version that one would write down
// first, one thread each and in turn, and the whole call; prints ratios and result hashes, and
// fails where the two results differ in a bit.

#include <fmt/format.h>
#include <omp.h>

#include <CLI/CLI.hpp>

#include "OrientOptimizer.h"
#include "orient/TreePerCandidate.h"
#include "orient/candidates/InitOrients.h"
#include "orient/evaluation/EvaluateOrient.h"
#include "orient/turn/Flatten.h"
#include "plain/PlainEvaluation.h"
#include "support/BenchMeshes.h"
#include "support/PairedTimer.h"
#include "tools/FloatBits.h"

using namespace Tesk::orient;

namespace {

using OptimizeOrient::Configure;
using Directions = std::vector<UVector3<float>>;

constexpr std::uint32_t kSeed = 1;

struct Options {
    int runs = 3;
    std::size_t maxTriangles = 1'100'000;
};

std::uint64_t hashOfBaseline(const std::vector<float>& areas, MeshKernel& mesh,
                             const Directions& candidates, const Configure& config) {
    BitHash hash;
    for (const UVector3<float>& direction : candidates) {
        const BaselineMeasures m = evaluateWithTreePerCandidate(areas, mesh, direction, config);
        for (const float value :
             {m.height, m.supportVolume, m.overhangArea, m.projectedArea, m.boxVolume}) {
            hash.add(value);
        }
    }
    return hash.value();
}

std::uint64_t hashOfShipped(const std::vector<float>& areas, const MeshKernel& mesh,
                            const Directions& candidates, const Configure& config) {
    BitHash hash;
    const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
    OrientEvaluator evaluator(areas, flat, config.overhangAngle, /*computeSupport=*/true,
                              config.baseHeight);
    for (std::size_t first = 0; first < candidates.size(); first += kGroupSize) {
        const std::size_t count = std::min(kGroupSize, candidates.size() - first);
        evaluator.begin(std::span(candidates).subspan(first, count));
        for (std::size_t k = 0; k < count; ++k) {
            const OrientMeasures m = evaluator.evaluate(k);
            for (const float value :
                 {m.height, m.supportVolume, m.overhangArea, m.projectedArea, m.boxVolume}) {
                hash.add(value);
            }
        }
    }
    return hash.value();
}

void rankWith(int threads, MeshKernel& mesh, const Configure& config) {
    omp_set_num_threads(threads);
    OptimizeOrient::seedRandom(kSeed);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
    OrientOptimizer::calculateOrients(&mesh, config, axis, angle, &orientations, {});
}

/// Prints one line; false where the results differ.
bool benchMesh(const BenchMesh& bench, const Options& options) {
    const Configure config;
    MeshKernel mesh = bench.part.kernel();
    OptimizeOrient::seedRandom(kSeed);
    const Directions candidates = initOrients(&mesh);
    const std::vector<float> areas = plainAreas(mesh);
    std::uint64_t baselineHash = 0;
    std::uint64_t shippedHash = 0;
    const PairedTimes evaluation = timeInTurn(
        options.runs, [&] { baselineHash = hashOfBaseline(areas, mesh, candidates, config); },
        [&] { shippedHash = hashOfShipped(areas, mesh, candidates, config); });
    const PairedTimes whole = timeInTurn(
        options.runs, [&] { rankWith(1, mesh, config); }, [&] { rankWith(2, mesh, config); });
    fmt::print(
        "{:<18} {:>9} {:>5} {:>11.2f} {:>11.2f} {:>7.1f} {:>11.2f} {:>11.2f} {:>6.2f}  {:016x}{}\n",
        bench.name, bench.part.triangles.size(), candidates.size(),
        evaluation.baselineSeconds * 1e3, evaluation.shippedSeconds * 1e3, evaluation.ratio,
        whole.baselineSeconds * 1e3, whole.shippedSeconds * 1e3, whole.ratio, shippedHash,
        shippedHash == baselineHash ? "" : "  DIFFERS from the baseline");
    std::fflush(stdout);
    return shippedHash == baselineHash;
}

void printHead(const Options& options) {
    fmt::print(
        "Evaluation of all candidates with support, one thread: a tree over all triangles "
        "per candidate\n(baseline) and the shipped code in turn; then the whole call on one "
        "and two threads. Medians of {}.\n\n",
        options.runs);
    fmt::print("{:<18} {:>9} {:>5} {:>11} {:>11} {:>7} {:>11} {:>11} {:>6}  {}\n", "mesh",
               "triangles", "cand.", "baseline ms", "shipped ms", "ratio", "1 thread ms",
               "2 threads", "ratio", "result hash");
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Times the choice of build orientations");
    app.add_option("--runs", options.runs, "Runs of each")->check(CLI::Range(1, 1000));
    std::string only;
    app.add_option("--only", only, "The one mesh of this name");
    app.add_option("--max-triangles", options.maxTriangles, "Leave out bigger meshes");
    CLI11_PARSE(app, argc, argv);
    printHead(options);
    bool isSame = true;
    for (const BenchMesh& mesh : benchMeshes(options.maxTriangles)) {
        if (!only.empty() && mesh.name != only) continue;
        isSame = benchMesh(mesh, options) && isSame;
    }
    return isSame ? 0 : 1;
}
