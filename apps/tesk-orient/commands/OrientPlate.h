#pragma once

#include <optional>

#include "commands/Report.h"
#include "options/Options.h"
#include "part/MeshOutput.h"

namespace App {

/// orientReport() of a file whose objects are parts of their own: each is oriented by itself, once
/// for all its items that scale and mirror it alike.
///
/// An item keeps its rotation where this is the chosen pose's, up to quarter turns about Z that the
/// pose does not mind, or (at rank 1) where it stands as it lies, is allowed and costs no more than
/// 1/0.99 times the best pose. Other items turn by the least rotation that brings them there.
///
/// @param output  null: write nothing
Report orientPlate(const OrientOptions& options, const WarningSink& warn, MeshOutput* output);

/// The height above the plate that parts are put at; nothing for the one that they have.
std::optional<double> heightOf(const OrientOptions& options);

}  // namespace App
