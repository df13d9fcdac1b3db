#pragma once

#include <optional>

#include "options/Options.h"
#include "part/FileOutput.h"
#include "part/MeshOutput.h"

namespace App {

/// The files that a run is to write.
struct OrientOutputs {
    /// Checks, before the work, that each can be written. Throws Failure with ExitCode::kOutput.
    explicit OrientOutputs(const OrientOptions& options) {
        if (!options.page.empty()) page.emplace(options.page);
        if (!options.picture.empty()) picture.emplace(options.picture);
        if (!options.output.empty()) mesh.emplace(options.output);
    }

    std::optional<FileOutput> page;
    std::optional<FileOutput> picture;
    std::optional<MeshOutput> mesh;
};

}  // namespace App
