#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrientOptimizer.h"
#include "commands/CommandSupport.h"
#include "options/Options.h"
#include "part/MeshFile.h"

namespace App {

/// Ranks a part's orientations by weights. Throws Tesk::AbortException after Ctrl-C.
std::vector<OptimizeOrient::OptOrientation> rankedOrientations(MeshKernel& mesh,
                                                               const OrientOptions& options,
                                                               WorkShare share = {});

/// Finds a part's poses by a goal, which may differ from the options'. Throws Tesk::AbortException
/// after Ctrl-C.
OptimizeOrient::BuildPoses foundPoses(const MeshKernel& mesh, const OrientOptions& options,
                                      const OptimizeOrient::PoseGoal& goal, WorkShare share = {});

/// Why a part cannot be oriented: none of its triangles has an area. Nothing where one has.
std::optional<std::string> whyNoArea(const LoadedPart& part);

/// Throws a Failure where there is no pose of the rank that the options ask for.
///
/// @param count  how many poses there are, at least one
/// @param where  whose they are, to put in front: empty, or "name: "
void refuseMissingRank(const OrientOptions& options, std::size_t count, const std::string& where);

}  // namespace App
