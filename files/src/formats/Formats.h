#pragma once

#include <span>
#include <string>
#include <string_view>

#include "TeskPartFiles/Plates.h"
#include "mesh/Progress.h"

namespace Tesk::files {

/// What the library knows of a format. A further format is a further row of the table.
struct Format {
    PartFormat format;
    const char* name;
    std::string_view extension;  ///< in lower case, with its dot
    bool (*fits)(std::string_view start);
    PartFile (*read)(std::string_view bytes, const ReadOptions& options, Progress& progress);
    std::string (*encode)(const PartMesh& mesh);
    /// Whether read() itself merges equal vertices if the options ask for it.
    bool weldsItself;
    /// Reads object by object, without welding; null if a file is always one object.
    Plate (*readPlate)(std::string_view bytes, const ReadOptions& options, Progress& progress);
};

std::span<const Format> allFormats();
const Format& rowOf(PartFormat format);

}  // namespace Tesk::files
