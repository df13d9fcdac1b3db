// What threads gain in the choice of build orientations: stage by stage on a machine that has
// nothing else to do, and the whole call on one whose processors are busy with other work. Calls on
// one thread and on several run in turn; fails where their results differ.

#include <fmt/format.h>
#include <omp.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <ctime>
#include <map>
#include <string>
#include <thread>

#include "OrientOptimizer.h"
#include "TeskDebug/StopWatchLog.h"
#include "orient/BusyProcessors.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "support/BenchMeshes.h"
#include "support/PairedTimer.h"
#include "tools/FloatBits.h"

namespace {

struct Options {
    int runs = 7;
    int threads = omp_get_max_threads();
    int processors = omp_get_num_procs();
    std::size_t maxTriangles = 1'100'000;
    std::string only;
    std::string part;
};

/// The times of all calls on so many threads.
struct Times {
    std::vector<double> wall;
    std::vector<double> processor;
    std::map<std::string, std::vector<double>> stages;
};

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Runs one call and notes its times; returns a hash of its records.
std::uint64_t timeCall(MeshKernel& mesh, int threads, Times& times) {
    omp_set_num_threads(threads);
    OptimizeOrient::seedRandom(1);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> records;
    StopWatchLog::Sink before = StopWatchLog::setSink(
        [&](const char* label, double seconds) { times.stages[label].push_back(seconds); });
    const double processorBefore = processorSeconds();
    times.wall.push_back(secondsOf(
        [&] { OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, &records, {}); }));
    // What threads go on with after the call belongs to it, and not to the next one.
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
    times.processor.push_back(processorSeconds() - processorBefore);
    StopWatchLog::setSink(std::move(before));
    BitHash hash;
    for (const auto& record : records) {
        for (const float value :
             {record.axis.x, record.axis.y, record.axis.z, record.angle, record.score}) {
            hash.add(value);
        }
    }
    return hash.value();
}

struct Compared {
    Times one;
    Times many;
    std::uint64_t hash = 0;
    bool isSame = true;
};

Compared compare(const Part& part, const Options& options) {
    MeshKernel mesh = part.kernel();
    Times warmUp;
    Compared compared;
    compared.hash = timeCall(mesh, options.threads, warmUp);
    for (int run = 0; run < options.runs; ++run) {
        for (const bool isMany : {false, true}) {
            Times& times = isMany ? compared.many : compared.one;
            const std::uint64_t hash = timeCall(mesh, isMany ? options.threads : 1, times);
            compared.isSame = compared.isSame && hash == compared.hash;
        }
    }
    return compared;
}

double medianRatio(const std::vector<double>& a, const std::vector<double>& b) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < a.size(); ++i) ratios.push_back(a[i] / b[i]);
    return medianOf(ratios);
}

/// The stages in their order, by the labels that the library logs them under.
constexpr std::array<std::pair<const char*, const char*>, 4> kStages = {
    {{"Orient-UpdateTopo", "topology"},
     {"Orient-InitOri", "candidates"},
     {"Orient-0", "flat copy, areas"},
     {"Orient-2", "evaluation"}}};

const char* verdict(const Compared& compared) {
    return compared.isSame ? "" : "  DIFFERS between calls";
}

void printStages(const std::string& name, std::size_t triangles, const Compared& compared) {
    const auto print = [&](const std::string& stage, const std::vector<double>& one,
                           const std::vector<double>& many) {
        fmt::print("{:<18} {:>9}  {:<18} {:>10.2f} {:>10.2f} {:>6.2f}  {:016x}{}\n", name,
                   triangles, stage, medianOf(one) * 1e3, medianOf(many) * 1e3,
                   medianRatio(one, many), compared.hash, verdict(compared));
    };
    for (const auto& [label, stage] : kStages) {
        print(stage, compared.one.stages.at(label), compared.many.stages.at(label));
    }
    print("whole", compared.one.wall, compared.many.wall);
    std::fflush(stdout);
}

void printBusy(const std::string& name, std::size_t triangles, const Compared& compared) {
    fmt::print(
        "{:<18} {:>9} {:>10.2f} {:>10.2f} {:>6.2f} {:>12.2f} {:>10.2f} {:>6.2f}  {:016x}{}\n", name,
        triangles, medianOf(compared.one.wall) * 1e3, medianOf(compared.many.wall) * 1e3,
        medianRatio(compared.one.wall, compared.many.wall), medianOf(compared.one.processor) * 1e3,
        medianOf(compared.many.processor) * 1e3,
        medianRatio(compared.one.processor, compared.many.processor), compared.hash,
        verdict(compared));
    std::fflush(stdout);
}

std::vector<BenchMesh> meshesFor(const Options& options) {
    std::vector<BenchMesh> meshes;
    meshes.push_back({"sphere, coarse", makeSphere(30.0f, 1000)});
    meshes.push_back({"sphere, small", makeSphere(30.0f, 15'000)});
    for (BenchMesh& mesh : benchMeshes(options.maxTriangles)) {
        if (mesh.part.triangles.size() > 60'000) meshes.push_back(std::move(mesh));
    }
    std::erase_if(meshes, [&](const BenchMesh& mesh) {
        return (!options.only.empty() && mesh.name != options.only) ||
               mesh.part.triangles.size() > options.maxTriangles;
    });
    return meshes;
}

bool benchStages(const std::vector<BenchMesh>& meshes, const Options& options) {
    fmt::print("Stages on 1 and {} threads. Medians of {}, ms.\n\n", options.threads, options.runs);
    fmt::print("{:<18} {:>9}  {:<18} {:>10} {:>10} {:>6}  {}\n", "mesh", "triangles", "stage",
               "1 thread", fmt::format("{} threads", options.threads), "ratio", "result hash");
    bool isSame = true;
    for (const auto& [name, part] : meshes) {
        const Compared compared = compare(part, options);
        printStages(name, part.triangles.size(), compared);
        isSame = isSame && compared.isSame;
    }
    return isSame;
}

bool benchBusy(const std::vector<BenchMesh>& meshes, const Options& options) {
    fmt::print("\nThe whole call while {} other processes compute. Medians of {}, ms.\n\n",
               options.processors, options.runs);
    fmt::print("{:<18} {:>9} {:>10} {:>10} {:>6} {:>12} {:>10} {:>6}  {}\n", "mesh", "triangles",
               "1 thread", fmt::format("{} threads", options.threads), "ratio", "processor 1",
               fmt::format("{} threads", options.threads), "ratio", "result hash");
    const BusyProcessors others(options.processors);
    bool isSame = true;
    for (const auto& [name, part] : meshes) {
        const Compared compared = compare(part, options);
        printBusy(name, part.triangles.size(), compared);
        isSame = isSame && compared.isSame;
    }
    return isSame;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Tells what threads gain in the choice of build orientations");
    app.add_option("--runs", options.runs, "Runs of each")->check(CLI::Range(1, 1000));
    app.add_option("--threads", options.threads, "To compare with one")->check(CLI::Range(1, 256));
    app.add_option("--others", options.processors, "Other processes at work in the second part")
        ->check(CLI::Range(0, 256));
    app.add_option("--only", options.only, "The one mesh of this name");
    app.add_option("--part", options.part, "One of the two")
        ->check(CLI::IsMember({"stages", "busy"}));
    app.add_option("--max-triangles", options.maxTriangles, "Leave out bigger meshes");
    CLI11_PARSE(app, argc, argv);
    const std::vector<BenchMesh> meshes = meshesFor(options);
    bool isSame = true;
    if (options.part != "busy") isSame = benchStages(meshes, options) && isSame;
    if (options.part != "stages") isSame = benchBusy(meshes, options) && isSame;
    return isSame ? 0 : 1;
}
