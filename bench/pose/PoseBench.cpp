// Times the finding of build poses against the ranking of all candidate orientations of the same
// mesh, in turn, on as many threads as asked for; prints the ratio and a hash of the poses, and
// fails where the ratio of a big mesh is above a limit.

#include <fmt/format.h>
#include <omp.h>

#include <CLI/CLI.hpp>

#include "BuildPose.h"
#include "OrientOptimizer.h"
#include "shapes/SampleMeshes.h"
#include "support/BenchMeshes.h"
#include "support/PairedTimer.h"
#include "tools/FloatBits.h"

namespace {

constexpr std::size_t kBig = 900'000;

struct Options {
    int runs = 5;
    int threads = 2;
    std::size_t minTriangles = 0;
    std::size_t maxTriangles = 1'200'000;
    double limit = 1.5;
};

std::uint64_t hashOf(const OptimizeOrient::BuildPoses& result) {
    BitHash hash;
    for (const OptimizeOrient::BuildPose& pose : result.poses) {
        for (int row = 0; row < 3; ++row) {
            for (int col = 0; col < 3; ++col) hash.add(pose.rotation.at(row, col));
        }
        for (const float value : {pose.cost.total(), pose.measures.contactArea,
                                  pose.measures.overhangAreaOnPart, pose.measures.tiltMarginDeg}) {
            hash.add(value);
        }
    }
    return hash.value();
}

void rank(MeshKernel& mesh) {
    OptimizeOrient::seedRandom(1);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
    OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, &orientations, {});
}

/// Prints one line; false where a big mesh takes too long.
bool benchMesh(const std::string& name, const Part& part, const Options& options) {
    MeshKernel mesh = part.kernel();
    OptimizeOrient::BuildPoses found;
    const PairedTimes times = timeInTurn(
        options.runs, [&] { rank(mesh); },
        [&] { found = findBuildPoses(mesh, OptimizeOrient::PoseGoal::balanced()); });
    const double ratio = 1.0 / times.ratio;
    fmt::print("{:<22} {:>9} {:>6} {:>9.2f} {:>9.2f} {:>7.2f}  {:016x}\n", name,
               part.triangles.size(), found.poses.size(), times.baselineSeconds * 1e3,
               times.shippedSeconds * 1e3, ratio, hashOf(found));
    std::fflush(stdout);
    return part.triangles.size() < kBig || ratio <= options.limit;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Times the finding of build poses");
    app.add_option("--runs", options.runs, "Runs of each")->check(CLI::Range(1, 1000));
    app.add_option("--threads", options.threads, "Threads")->check(CLI::Range(1, 1024));
    std::string only;
    app.add_option("--only", only, "The one mesh of this name");
    app.add_option("--min-triangles", options.minTriangles, "Leave out smaller meshes");
    app.add_option("--max-triangles", options.maxTriangles, "Leave out bigger meshes");
    app.add_option("--limit", options.limit, "The largest ratio of a mesh of 900,000 and more");
    std::vector<std::string> files;
    app.add_option("files", files, "Mesh files to time, too, refined to at least --min-triangles");
    CLI11_PARSE(app, argc, argv);
    omp_set_num_threads(options.threads);
    fmt::print("calculateOrients and findBuildPoses in turn, {} threads. Medians of {}.\n\n",
               options.threads, options.runs);
    fmt::print("{:<22} {:>9} {:>6} {:>9} {:>9} {:>7}  {}\n", "mesh", "triangles", "poses",
               "rank ms", "poses ms", "ratio", "hash of the poses");
    bool isQuick = true;
    for (const BenchMesh& mesh : benchMeshes(options.maxTriangles)) {
        if (!only.empty() && mesh.name != only) continue;
        if (mesh.part.triangles.size() < options.minTriangles) continue;
        isQuick = benchMesh(mesh.name, mesh.part, options) && isQuick;
    }
    for (const std::string& file : files) {
        std::optional<Part> part = readSampleMesh(file);
        if (!part) continue;
        isQuick = benchMesh(std::filesystem::path(file).stem().string(),
                            refined(std::move(*part), options.minTriangles), options) &&
                  isQuick;
    }
    return isQuick ? 0 : 1;
}
