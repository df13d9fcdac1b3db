#pragma once

#include <optional>

#include "commands/OrientOutputs.h"
#include "options/Options.h"
#include "reports/Report.h"

namespace App {

/// orientReport() of a file whose objects are parts of their own: each is oriented by itself, once
/// for all its items that scale and mirror it alike.
///
/// An item keeps its rotation where this is the chosen pose's, up to quarter turns about Z that the
/// pose does not mind, or (at rank 1) where it stands as it lies, is allowed and costs no more than
/// 1/0.99 times the best pose. Other items turn by the least rotation that brings them there.
///
/// A page has a section for each shape; a picture is of the only one: throws Failure with
/// ExitCode::kUsage where there are several.
Report orientPlate(const OrientOptions& options, const WarningSink& warn, OrientOutputs& outputs);

/// The height above the plate that parts are put at; nothing for the one that they have.
std::optional<double> heightOf(const OrientOptions& options);

}  // namespace App
