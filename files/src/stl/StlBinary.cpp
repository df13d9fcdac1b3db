#include "mesh/FaceCollector.h"
#include "mesh/Welding.h"
#include "stl/StlLayout.h"
#include "stl/StlReader.h"
#include "text/Message.h"

namespace Tesk::files {

namespace {

std::size_t offsetOfCorner(std::size_t corner) {
    return kStlHeaderSize + corner / 3 * kStlRecordSize + kStlNormalSize + corner % 3 * 12;
}

/// The triangles that the header declares and the file holds.
std::size_t soundCount(std::string_view bytes, const ReadOptions& options) {
    if (bytes.size() < kStlHeaderSize) {
        throw PartFileError(message("is not an STL file: ", bytes.size(),
                                    " bytes are too few for a binary one, and it does not begin "
                                    "with \"solid\" as a text one does"));
    }
    const std::size_t count = stlCount(bytes);
    const std::size_t expected = kStlHeaderSize + kStlRecordSize * count;
    if (bytes.size() < expected) {
        throw PartFileError(message("is cut short, or not an STL file: its header declares ", count,
                                    " triangles (", expected, " bytes), but it has ", bytes.size(),
                                    " bytes, enough for ",
                                    (bytes.size() - kStlHeaderSize) / kStlRecordSize));
    }
    if (count == 0) throw PartFileError("contains no triangles");
    if (count > options.maxTriangles) throw tooManyTriangles(options.maxTriangles);
    return count;
}

void warnOfExtraBytes(std::size_t extra, std::vector<PartWarning>& warnings) {
    if (extra == 0) return;
    warnings.push_back({"extra-bytes",
                        message(counted(extra, "byte", "bytes"), " after the last triangle ",
                                extra == 1 ? "is" : "are", " ignored"),
                        static_cast<std::int64_t>(extra)});
}

}  // namespace

PartFile readBinaryStl(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    const std::size_t count = soundCount(bytes, options);
    const auto load = [&](std::size_t corner) {
        const char* const at = bytes.data() + offsetOfCorner(corner);
        return PartPoint{numberAt<float>(at), numberAt<float>(at + 4), numberAt<float>(at + 8)};
    };
    const auto describe = [&](std::size_t corner) {
        const PartPoint p = load(corner);
        return PartFileError(
            message("vertex ", corner + 1, " has a coordinate that is not finite: (", p.x, ", ",
                    p.y, ", ", p.z, ")"),
            0, offsetOfCorner(corner));
    };
    PartFile part;
    part.form = "binary";
    part.mesh = soupOf(count, load, describe, options, progress);
    warnOfExtraBytes(bytes.size() - kStlHeaderSize - kStlRecordSize * count, part.warnings);
    return part;
}

}  // namespace Tesk::files
