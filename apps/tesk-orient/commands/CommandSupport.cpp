#include "commands/CommandSupport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <future>
#include <thread>

#include "Failure.h"
#include "TeskDebug/Exception.h"
#include "TeskDebug/StopWatchLog.h"
#include "TeskMeshData/MeshKernel.h"
#include "commands/Interrupt.h"
#include "part/PathText.h"

namespace App {

void stopIfInterrupted() {
    if (Interrupt::isRequested()) throw Tesk::AbortException("Aborting...");
}

CheckedPart checkedPart(const CommonOptions& options, LoadedPart part, Purpose purpose) {
    StopWatchLog log;
    // Beside making the kernel, as each needs one thread only.
    const auto beside =
        std::launch::deferred | (options.threads == 1 ? std::launch::deferred : std::launch::async);
    std::future<Tesk::SurfaceMeasures> measures = std::async(beside, [&mesh = part.mesh] {
        return Tesk::measureSurface(mesh.positions, mesh.triangles);
    });
    MeshKernel kernel(part.mesh.positions, part.mesh.triangles);
    kernel.UpdateTopo(/*rebuild=*/true, MeshKernel::kEdgeCounts);
    part.topology = kernel.topology();
    part.measures = measures.get();
    for (Warning& warning :
         checkMesh(part.mesh, part.topology, part.measures, part.unit, purpose)) {
        part.warnings.push_back(std::move(warning));
    }
    log.logElapse("Part-Check");
    return {std::move(part), std::move(kernel)};
}

CheckedPart loadPart(const CommonOptions& options, Purpose purpose) {
    StopWatchLog log;
    LoadedPart part =
        readMeshFile(options.part, options.unit, static_cast<unsigned>(options.threads));
    log.logElapse("Part-Read");
    stopIfInterrupted();
    return checkedPart(options, std::move(part), purpose);
}

void tell(const WarningSink& warn, const Warnings& warnings) {
    if (!warn) return;
    for (const Warning& warning : warnings) warn(warning);
}

WarningSink warningPrinter(const CommonOptions& options) {
    if (options.isQuiet) return {};
    return [name = displayName(options.part)](const Warning& warning) {
        fmt::print(stderr, "tesk-orient: warning: {}: {}\n", name, warning.text);
    };
}

std::function<void(int)> progressOn(ProgressBar& bar, int end, WorkShare share) {
    return [&bar, end, share](int percent) {
        stopIfInterrupted();
        const int done = std::min(percent * 100 / end, 100);
        bar.show((share.index * 100 + done) / share.count);
    };
}

unsigned int threadCountOf(const CommonOptions& options) {
    if (options.threads > 0) return static_cast<unsigned int>(options.threads);
    return std::max(1u, std::thread::hardware_concurrency());
}

void printReport(const CommonOptions& options, const Report& report) {
    const std::string text = options.isJson ? textOf(report.json) : report.table;
    if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        throw Failure(ExitCode::kOutput, "cannot write to standard output");
    }
    if (!options.output.empty() && !options.isJson) {
        fmt::print("Written: {}\n", displayName(options.output));
    }
}

}  // namespace App
