#pragma once

#include <string>
#include <vector>

#include "OrientOptimizer.h"
#include "options/Options.h"
#include "part/MeshFile.h"

namespace App {

/// What a run found.
struct OrientResult {
    LoadedPart part;  ///< warnings of the file and of the mesh together
    std::vector<OptimizeOrient::OptOrientation> orientations;
};

/// A table for people, and what to do.
std::string reportTable(const OrientOptions& options, const OrientResult& result);

/// The same for programs: one JSON object, whose "schema" names its version.
std::string reportJson(const OrientOptions& options, const OrientResult& result);

}  // namespace App
