// What a call of the C interface costs over the same call of the C++ interface, on a box of twelve
// triangles: the median of the differences of runs in turn, on one thread. Fails where it is a
// microsecond or more, or where results differ.

#include <fmt/format.h>
#include <omp.h>

#include <CLI/CLI.hpp>
#include <cstring>
#include <functional>

#include "BuildPose.h"
#include "MinBoundingBox.h"
#include "OrientOptimizer.h"
#include "shapes/Shapes.h"
#include "support/PairedTimer.h"
#include "teskorient.h"
#include "tools/FloatBits.h"

namespace {

/// A call of each interface, which returns a float of its result.
struct Pair {
    const char* name;
    int callsPerRun;
    std::function<float()> inCpp;
    std::function<float()> inC;
};

bool measure(const Pair& pair, int runs) {
    const auto repeat = [&](const std::function<float()>& call) {
        return [&] {
            for (int i = 0; i < pair.callsPerRun; ++i) call();
        };
    };
    const double perCall = 1e6 / pair.callsPerRun;
    std::vector<double> inCpp;
    std::vector<double> inC;
    std::vector<double> more;
    for (int run = 0; run < runs; ++run) {
        inCpp.push_back(secondsOf(repeat(pair.inCpp)) * perCall);
        inC.push_back(secondsOf(repeat(pair.inC)) * perCall);
        more.push_back(inC.back() - inCpp.back());
    }
    const double overhead = medianOf(more);
    const float expected = pair.inCpp();
    BitHash hash;
    hash.add(pair.inC());
    fmt::print("{:<28} {:>10.3f} {:>10.3f} {:>10.3f} {:>8.3f}   {:016x}\n", pair.name,
               medianOf(inCpp), medianOf(inC), overhead, medianOf(inC) / medianOf(inCpp),
               hash.value());
    return overhead < 1.0 && sameBits(expected, pair.inC());
}

tesk_mesh* meshOf(const Part& part) {
    tesk_mesh_arrays arrays;
    std::memset(&arrays, 0, sizeof arrays);
    arrays.struct_size = sizeof arrays;
    arrays.positions = part.positions.data();
    arrays.position_count = static_cast<std::int64_t>(part.positions.size());
    arrays.triangles = part.triangles.data();
    arrays.triangle_count = static_cast<std::int64_t>(part.triangles.size());
    tesk_mesh* mesh = nullptr;
    tesk_mesh_create(&arrays, &mesh);
    return mesh;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("The overhead of the C interface");
    int runs = 301;
    app.add_option("--runs", runs, "How often each call is timed")->check(CLI::PositiveNumber);
    CLI11_PARSE(app, argc, argv);

    omp_set_num_threads(1);
    const Part part = makeBox({0, 0, 0}, {2, 3, 4});
    MeshKernel kernel = part.kernel();
    tesk_mesh* const mesh = meshOf(part);
    const tesk_points points = {sizeof points, TESK_FLOAT32, part.positions.data(), 8, 0};
    const tesk_call call = {sizeof call, 1, nullptr, nullptr};
    const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    const std::vector<Pair> pairs = {
        {"smallest box, principal", 1000,
         [&] { return MinBoundingBox::generateOBB(part.positions.data(), 8).extent[0] * 0.5f; },
         [&] {
             tesk_box box = {sizeof box, {}, {}, {}};
             tesk_smallest_box(&points, TESK_BOX_PRINCIPAL, nullptr, &call, &box);
             return box.half_extents[0];
         }},
        {"smallest box, base area", 20,
         [&] { return MinBoundingBox(1).minBaseAreaBox(8, part.positions.data()).extent[0]; },
         [&] {
             tesk_box box = {sizeof box, {}, {}, {}};
             tesk_smallest_box(&points, TESK_BOX_BASE_AREA, nullptr, &call, &box);
             return box.half_extents[0];
         }},
        {"measure a pose", 20,
         [&] { return OptimizeOrient::measurePose(kernel, {}, {}).cost.total(); },
         [&] {
             tesk_pose pose;
             pose.struct_size = sizeof pose;
             tesk_measure_pose(mesh, nullptr, nullptr, identity, &pose);
             return pose.support_volume_cost + pose.overhang_area_cost + pose.height_cost;
         }},
    };
    fmt::print("{:<28} {:>10} {:>10} {:>10} {:>8}   {}\n", "a box of 12 triangles", "C++, us",
               "C, us", "more, us", "ratio", "result");
    bool isCheap = true;
    for (const Pair& pair : pairs) isCheap &= measure(pair, runs);
    tesk_free(mesh);
    return isCheap ? 0 : 1;
}
