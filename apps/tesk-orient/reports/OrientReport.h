#pragma once

#include <string>
#include <vector>

#include "OrientOptimizer.h"
#include "options/Options.h"
#include "part/MeshFile.h"
#include "reports/ReportValues.h"

namespace App {

/// What a run found.
struct OrientResult {
    LoadedPart part;  ///< warnings of the file and of the mesh together
    std::vector<OptimizeOrient::OptOrientation> orientations;  ///< by weights
    OptimizeOrient::BuildPoses poses;                          ///< by the other goals
    /// Poses keep the box's centre in x and y, not the centre of the turn. Of objects on a plate.
    bool keepsPlace = false;
};

/// A table for people, and what to do, of a ranking by weights.
std::string reportTable(const OrientOptions& options, const OrientResult& result);

/// The same for programs: one JSON object, whose "schema" names its version.
Json reportJson(const OrientOptions& options, const OrientResult& result);

/// The same two of poses, of which there is at least one.
std::string posesTable(const OrientOptions& options, const OrientResult& result);
Json posesJson(const OrientOptions& options, const OrientResult& result);

/// What these consist of, for reports of several parts: the tables without their heading, and the
/// members of the JSON objects that say how to read them and what was found. The result's mesh
/// gives the matrices.
std::string rankingText(const OrientOptions& options, const OrientResult& result);
std::string posesText(const OrientOptions& options, const OrientResult& result);
Json settingsOf(const OrientOptions& options);
Json poseSettings(const OrientOptions& options);
Json poseConventions();
Json conventionsOf(const OrientOptions& options);
Json rankingMembers(const OrientOptions& options, const OrientResult& result);
Json posesMembers(const OrientOptions& options, const OrientResult& result);

/// Why the chosen pose, in one sentence.
std::string reasonFor(const OrientOptions& options, const OptimizeOrient::BuildPoses& poses);

/// Why there is no pose, in one line.
std::string whyNoPose(const OrientOptions& options, const OptimizeOrient::BuildPoses& poses);

}  // namespace App
