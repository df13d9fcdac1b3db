// How the choice of build orientations grows: cost per triangle over mesh sizes, a thin part
// against a cube, and the memory that a call needs above its mesh. One thread where nothing else is
// said.

#include <fmt/format.h>
#include <omp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fstream>
#include <span>
#include <string>

#include "OrientOptimizer.h"
#include "orient/candidates/InitOrients.h"
#include "orient/evaluation/EvaluateOrient.h"
#include "orient/turn/Flatten.h"
#include "plain/PlainEvaluation.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "support/BenchMeshes.h"
#include "support/PairedTimer.h"
#include "tools/FloatBits.h"

using namespace Tesk::orient;

namespace {

using OptimizeOrient::Configure;

struct Evaluated {
    std::size_t triangles = 0;
    std::size_t candidates = 0;
    double seconds = 0.0;
    std::uint64_t hash = 0;
};

/// The evaluation of all candidates, the flat copy of the mesh included.
Evaluated evaluate(const Part& part, int runs) {
    const Configure config;
    MeshKernel mesh = part.kernel();
    OptimizeOrient::seedRandom(1);
    const std::vector<UVector3<float>> candidates = initOrients(&mesh);
    const std::vector<float> areas = plainAreas(mesh);
    Evaluated result{part.triangles.size(), candidates.size(), 0.0, 0};
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        BitHash hash;
        times.push_back(secondsOf([&] {
            const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
            OrientEvaluator evaluator(areas, flat, config.overhangAngle, true, config.baseHeight);
            for (std::size_t first = 0; first < candidates.size(); first += kGroupSize) {
                const std::size_t count = std::min(kGroupSize, candidates.size() - first);
                evaluator.begin(std::span(candidates).subspan(first, count));
                for (std::size_t k = 0; k < count; ++k) {
                    const OrientMeasures m = evaluator.evaluate(k);
                    for (const float value : {m.height, m.supportVolume, m.overhangArea,
                                              m.projectedArea, m.boxVolume}) {
                        hash.add(value);
                    }
                }
            }
        }));
        result.hash = hash.value();
    }
    result.seconds = medianOf(times);
    return result;
}

double nanosecondsPerTriangle(const Evaluated& e) {
    return e.seconds * 1e9 / static_cast<double>(e.triangles * e.candidates);
}

void printSizes(int runs, std::size_t most, const std::string& csvFile) {
    std::ofstream csv;
    if (!csvFile.empty()) csv.open(csvFile);
    if (csv) csv << "shape,triangles,candidates,milliseconds,nanoseconds_per_triangle\n";
    fmt::print("{:<10} {:>9} {:>6} {:>10} {:>26}  {}\n", "shape", "triangles", "cand.", "ms",
               "ns per triangle and cand.", "result hash");
    const auto print = [&](const char* shape, const Part& part) {
        const Evaluated e = evaluate(part, runs);
        fmt::print("{:<10} {:>9} {:>6} {:>10.2f} {:>26.2f}  {:016x}\n", shape, e.triangles,
                   e.candidates, e.seconds * 1e3, nanosecondsPerTriangle(e), e.hash);
        std::fflush(stdout);
        if (csv) {
            csv << fmt::format("{},{},{},{:.3f},{:.3f}\n", shape, e.triangles, e.candidates,
                               e.seconds * 1e3, nanosecondsPerTriangle(e));
        }
    };
    for (std::size_t size = 12'500; size <= most; size *= 2) {
        print("sphere", makeSphere(30.0f, static_cast<int>(size)));
    }
    const Part bracket = makeBracket(60.0f, 40.0f, 6.0f, 30.0f);
    for (std::size_t size = 10'000; size <= most; size *= 4) {
        print("bracket", refined(bracket, size));
    }
}

/// A plate on edge has half a million cells under it.
void printThin(int runs) {
    fmt::print("\nThin against thick, evaluation of all candidates:\n");
    for (const std::size_t size : {80'000, 300'000, 1'200'000}) {
        const Evaluated cube = evaluate(refined(makeBox({0, 0, 0}, {900, 900, 900}), size), runs);
        const Evaluated plate = evaluate(refined(makeBox({0, 0, 0}, {312, 312, 1}), size), runs);
        const double perCube = cube.seconds / static_cast<double>(cube.candidates);
        const double perPlate = plate.seconds / static_cast<double>(plate.candidates);
        fmt::print(
            "{:>9} triangles: cube {:.2f} ms, plate 312 x 312 x 1 {:.2f} ms per candidate, "
            "ratio {:.2f}\n",
            cube.triangles, perCube * 1e3, perPlate * 1e3, perPlate / perCube);
        std::fflush(stdout);
    }
}

/// A line of /proc/self/status, in bytes.
double memory(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name + ":", 0) == 0) return std::stod(line.substr(name.size() + 1)) * 1024;
    }
    return 0.0;
}

/// In a process of its own, as only a fresh one tells what a call needs.
void printMemory(int threads, const Part& part) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        omp_set_num_threads(threads);
        MeshKernel mesh = part.kernel();
        std::ofstream("/proc/self/clear_refs") << 5;  // the peak starts here
        const double before = memory("VmRSS");
        UVector3<float> axis;
        float angle = 0.0f;
        std::vector<OptimizeOrient::OptOrientation> records;
        OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, &records, {});
        const double above = memory("VmHWM") - before;
        fmt::print("{:>9} triangles, {:>2} threads: {:.0f} bytes per triangle\n",
                   part.triangles.size(), threads,
                   above / static_cast<double>(part.triangles.size()));
        std::fflush(stdout);
        _exit(0);
    }
    waitpid(child, nullptr, 0);
}

}  // namespace

int main(int argc, char** argv) {
    int runs = 3;
    std::size_t most = 4'100'000;
    std::string csvFile;
    CLI::App app("Tells how the choice of build orientations grows with the mesh");
    app.add_option("--runs", runs, "Runs of each")->check(CLI::Range(1, 1000));
    app.add_option("--max-triangles", most, "Leave out bigger meshes");
    app.add_option("--csv", csvFile, "Where to write the sizes' figures, too");
    CLI11_PARSE(app, argc, argv);
    // Before this process has started threads: a fork takes only the one that forks.
    fmt::print("Memory of a call above its mesh, at its peak:\n");
    const Part sphere = makeSphere(30.0f, static_cast<int>(std::min<std::size_t>(most, 1'000'000)));
    for (const int threads : {1, 2, 4, 16}) printMemory(threads, sphere);
    omp_set_num_threads(1);
    fmt::print("\nEvaluation of all candidates with support. Medians of {}.\n", runs);
    printSizes(runs, most, csvFile);
    if (most > 1'200'000) printThin(runs);
    return 0;
}
