#pragma once

#include <string>

#include "BuildPose.h"
#include "TriangleMesh.h"

namespace App {

enum class PictureFormat { kPng, kSvg };

/// A picture of a part as it lies in its file and, beside it at the same scale, in its chosen pose:
/// on a plate with lines every 10 mm, with support, overhangs and contact coloured as the report
/// page does, and with the figures below. Needs neither a browser nor a graphics processor.
///
/// @param mesh              in millimetres, not empty
/// @param overhangAngleDeg  as the poses were measured
/// @param rank              of the chosen pose
/// @return the file's bytes, the same for the same input. An SVG holds the pictures as pixels and
/// the
///         captions as text.
std::string pictureOf(const TriangleMesh& mesh, const OptimizeOrient::BuildPose& asItLies,
                      const OptimizeOrient::BuildPose& chosen, int rank, float overhangAngleDeg,
                      PictureFormat format);

}  // namespace App
