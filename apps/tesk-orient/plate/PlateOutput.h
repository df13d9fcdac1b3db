#pragma once

#include <optional>

#include "part/MeshOutput.h"
#include "plate/PlateChecks.h"

namespace App {

/// Writes a plate with its items in new places. A 3MF made from a 3MF differs from it in the
/// transforms of the items that are not kept only; where all are, it is the same bytes. Other files
/// hold all items as one mesh, in mm. Throws Failure with ExitCode::kOutput.
void write(MeshOutput& output, const LoadedPlate& plate, const NewPlaces& places);

/// Whether an output can be made of the bytes of a 3MF that is taken together.
bool canKeepPackage(const MeshOutput& output, const CommonOptions& options);

/// Writes a 3MF that is taken together, all items turned as one: the package with other transforms.
/// Where the matrix leaves it where it is, it is the same bytes. Throws Failure.
///
/// @param mesh    all items as one mesh, in mm
/// @param pose    its turn about the centre of its box; its translation does not count
/// @param height  of the lowest point, mm; empty for the one that the turn gives
void writeTogether(MeshOutput& output, const CommonOptions& options, const TriangleMesh& mesh,
                   const UMatrix4<float>& pose, std::optional<double> height);

}  // namespace App
