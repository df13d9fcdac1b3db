// One line per piece of work: name, milliseconds, result hash, with tabs between. Runs each once; a
// script runs this program of two commits in turn and compares.

#include <fmt/format.h>
#include <omp.h>

#include <CLI/CLI.hpp>

#include "OrientOptimizer.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "support/BenchMeshes.h"
#include "support/BenchPoints.h"
#include "support/PairedTimer.h"
#include "tools/FloatBits.h"

namespace {

void printLine(const std::string& name, double seconds, std::uint64_t hash) {
    fmt::print("{}\t{:.3f}\t{:016x}\n", name, seconds * 1e3, hash);
    std::fflush(stdout);
}

void runOrientation(const BenchMesh& bench, int threads) {
    omp_set_num_threads(threads);
    MeshKernel mesh = bench.part.kernel();
    OptimizeOrient::seedRandom(1);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> records;
    const double seconds =
        secondsOf([&] { OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, &records, {}); });
    BitHash hash;
    for (const auto& record : records) {
        for (const float value :
             {record.axis.x, record.axis.y, record.axis.z, record.angle, record.score}) {
            hash.add(value);
        }
    }
    printLine(fmt::format("orientations, {}, {} threads", bench.name, threads), seconds,
              hash.value());
}

void runBoxes(const NamedPoints& set) {
    const int count = static_cast<int>(set.points.size());
    const auto run = [&](const char* operation, auto make) {
        OrientedBox3 box;
        const double seconds = secondsOf([&] { box = make(); });
        printLine(fmt::format("{}, {}", operation, set.name), seconds, hashOf(box));
    };
    const auto* points = set.points.data();
    BitHash vertices;
    const double hullSeconds = secondsOf([&] {
        const gte::ConvexHull3 hull(points, count, 3);
        for (const UPoint3<float>& p : hull.getVertices()) {
            for (int i = 0; i < 3; ++i) vertices.add(p[i]);
        }
    });
    printLine(fmt::format("hull, {}", set.name), hullSeconds, vertices.value());
    run("least volume", [&] { return MinBoundingBox()(count, points); });
    run("least base area", [&] { return MinBoundingBox().minBaseAreaBox(count, points); });
    run("least height", [&] { return MinBoundingBox().minBaseAreaAndHeightBox(count, points); });
    run("principal axes", [&] { return MinBoundingBox::generateOBB(points, count); });
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t maxTriangles = 1'100'000;
    std::size_t maxPoints = 20'000;
    CLI::App app("Times our own work, for a comparison of two commits");
    app.add_option("--max-triangles", maxTriangles, "Leave out bigger meshes");
    app.add_option("--max-points", maxPoints, "Leave out bigger sets of points");
    CLI11_PARSE(app, argc, argv);
    for (const BenchMesh& mesh : benchMeshes(maxTriangles)) {
        for (const int threads : {1, 2}) runOrientation(mesh, threads);
    }
    for (const NamedPoints& set : benchPointSets(maxPoints)) runBoxes(set);
    return 0;
}
