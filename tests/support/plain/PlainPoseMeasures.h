#pragma once

#include <optional>

#include "BuildPose.h"
#include "TeskDataBasic/UVector3.h"
#include "plain/PlainEvaluation.h"

/// What a pose is like, as plainly as it can be said: loops over all facets, again for each, and
/// the convex hulls of everything. Float and double, and the order of every sum, are part of the
/// meaning.
OptimizeOrient::PoseMeasures plainPoseMeasures(const MeshKernel& mesh,
                                               const OptimizeOrient::PoseGoal& goal,
                                               const UMatrix4<float>& rotation, PlainSearch search);

/// The area of the largest face of the convex hull of all placed vertices that looks down to within
/// an angle, where `up` is up; facets within 0.1° of its largest one are one face. Nothing where
/// there is none.
std::optional<double> plainLargestFace(const MeshKernel& mesh, const UVector3<double>& up,
                                       double withinDeg);
