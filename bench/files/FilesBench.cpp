// Reading and welding mesh files, against the plainest way, in turn. Both must give the same mesh,
// whose hash is printed.

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "TeskPartFiles/Plates.h"
#include "files/PlainReaders.h"
#include "shapes/Shapes.h"
#include "support/PairedTimer.h"
#include "tools/FloatBits.h"

namespace {

Tesk::PartMesh sphere(int triangles) {
    const Part part = makeSphere(30.0f, triangles).welded();
    Tesk::PartMesh mesh;
    for (const UPoint3<float>& p : part.positions) mesh.positions.push_back({p.x, p.y, p.z});
    mesh.triangles = part.triangles;
    return mesh;
}

/// An STL in the text form, which the library does not write.
std::string textStl(const Tesk::PartMesh& mesh) {
    std::string text = "solid\n";
    for (const auto& triangle : mesh.triangles) {
        text += "facet normal 0 0 1\n  outer loop\n";
        for (const std::int32_t corner : triangle) {
            const Tesk::PartPoint& p = mesh.positions[static_cast<std::size_t>(corner)];
            text += fmt::format("    vertex {:.6e} {:.6e} {:.6e}\n", p.x, p.y, p.z);
        }
        text += "  endloop\nendfacet\n";
    }
    return text + "endsolid\n";
}

std::uint64_t hashOf(const Tesk::PartMesh& mesh) {
    BitHash hash;
    for (const Tesk::PartPoint& p : mesh.positions) {
        for (const float value : {p.x, p.y, p.z}) hash.add(value);
    }
    for (const auto& triangle : mesh.triangles) {
        for (const std::int32_t corner : triangle) hash.add(static_cast<std::uint32_t>(corner));
    }
    return hash.value();
}

void run(const Tesk::PartMesh& mesh, Tesk::PartFormat format, int runs, unsigned threads) {
    const std::string bytes = Tesk::encodePart(mesh, format);
    Tesk::ReadOptions options;
    options.threads = threads;
    Tesk::PartMesh plain;
    Tesk::PartMesh shipped;
    const PairedTimes times = timeInTurn(
        runs, [&] { plain = plainlyRead(bytes, format); },
        [&] { shipped = Tesk::readPart(bytes, format, options).mesh; });
    fmt::print("{:<10} {:>9.1f} {:>10.1f} {:>10.1f} {:>7.2f}  {:016x}{}\n", Tesk::nameOf(format),
               static_cast<double>(bytes.size()) / 1e6, times.baselineSeconds * 1e3,
               times.shippedSeconds * 1e3, times.ratio, hashOf(shipped),
               plain == shipped ? "" : "  DIFFERS");
}

std::uint64_t hashOf(const std::string& bytes) {
    BitHash hash;
    for (const char c : bytes) hash.add(static_cast<std::uint32_t>(static_cast<unsigned char>(c)));
    return hash.value();
}

/// Without a plain version to compare with.
template <class Work>
void runAlone(const char* what, std::size_t bytes, int runs, Work work) {
    decltype(work()) result;
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) times.push_back(secondsOf([&] { result = work(); }));
    fmt::print("{:<10} {:>9.1f} {:>10} {:>10.1f} {:>7}  {:016x}\n", what,
               static_cast<double>(bytes) / 1e6, "", medianOf(times) * 1e3, "", hashOf(result));
}

void runTextStl(const Tesk::PartMesh& mesh, const Tesk::ReadOptions& options, int runs) {
    const std::string bytes = textStl(mesh);
    runAlone("STL, text", bytes.size(), runs,
             [&] { return Tesk::readPart(bytes, Tesk::PartFormat::kStl, options).mesh; });
}

/// Reading, and the change of a transform.
void runThreeMf(const Tesk::PartMesh& mesh, const Tesk::ReadOptions& options, int runs) {
    const std::string bytes = Tesk::encodePart(mesh, Tesk::PartFormat::kThreeMf);
    runAlone("3MF", bytes.size(), runs,
             [&] { return Tesk::readPart(bytes, Tesk::PartFormat::kThreeMf, options).mesh; });
    const std::optional<Tesk::PartTransform> moved({{1, 0, 0, 0, 1, 0, 0, 0, 1, 0.5, 0, 0}});
    runAlone("3MF, moved", bytes.size(), runs, [&] {
        return Tesk::withTransforms(bytes, {&moved, 1});
    });
}

}  // namespace

int main(int argc, char** argv) {
    int triangles = 1'000'000;
    int runs = 7;
    unsigned threads = 0;
    CLI::App app("Times the reading of mesh files");
    app.add_option("--triangles", triangles, "Size of the part");
    app.add_option("--runs", runs, "How often each is timed");
    app.add_option("--threads", threads, "Threads of the reader; 0 for all processors");
    CLI11_PARSE(app, argc, argv);
    const Tesk::PartMesh mesh = sphere(triangles);
    fmt::print("{} triangles\n{:<10} {:>9} {:>10} {:>10} {:>7}  {}\n", mesh.triangles.size(),
               "format", "MB", "plain ms", "shipped ms", "ratio", "hash");
    for (const Tesk::PartFormat format : {Tesk::PartFormat::kStl, Tesk::PartFormat::kObj,
                                          Tesk::PartFormat::kPly, Tesk::PartFormat::kOff}) {
        run(mesh, format, runs, threads);
    }
    Tesk::ReadOptions options;
    options.threads = threads;
    runTextStl(mesh, options, runs);
    runThreeMf(mesh, options, runs);
    return 0;
}
