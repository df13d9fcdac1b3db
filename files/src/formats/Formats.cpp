#include "formats/Formats.h"

#include <algorithm>
#include <array>

#include "obj/ObjReader.h"
#include "obj/ObjWriter.h"
#include "off/OffReader.h"
#include "off/OffWriter.h"
#include "ply/PlyReader.h"
#include "ply/PlyWriter.h"
#include "stl/StlReader.h"
#include "stl/StlWriter.h"
#include "text/Keyword.h"
#include "text/TextScanner.h"
#include "threemf/ThreeMfReader.h"
#include "threemf/ThreeMfWriter.h"

namespace Tesk::files {

namespace {

bool fitsPly(std::string_view start) {
    return start.starts_with("ply\n") || start.starts_with("ply\r") || start.starts_with("ply ");
}

bool fitsOff(std::string_view start) {
    return TextScanner(start.substr(0, 4096), '#').next().ends_with("OFF");
}

bool fitsStl(std::string_view bytes) {
    return fitsStlCount(bytes) || isKeyword(TextScanner(bytes.substr(0, 4096)).next(), "solid");
}

/// Of the formats here, only 3MF is a zip archive.
bool fitsThreeMf(std::string_view start) {
    return start.starts_with("PK\3\4");
}

/// OBJ has no first word of its own: a keyword that often comes first.
bool fitsObj(std::string_view start) {
    const std::string_view word = TextScanner(start.substr(0, 65536), '#').next();
    constexpr std::array<std::string_view, 8> kFirstWords = {"v", "vt", "vn",     "o",
                                                             "g", "s",  "mtllib", "usemtl"};
    return std::find(kFirstWords.begin(), kFirstWords.end(), word) != kFirstWords.end();
}

constexpr std::array<Format, 5> kFormats = {{
    {PartFormat::kStl, "STL", ".stl", fitsStl, readStl, encodeStl, /*weldsItself=*/true, nullptr},
    {PartFormat::kObj, "OBJ", ".obj", fitsObj, readObj, encodeObj, /*weldsItself=*/false, nullptr},
    {PartFormat::kPly, "PLY", ".ply", fitsPly, readPly, encodePly, /*weldsItself=*/false, nullptr},
    {PartFormat::kOff, "OFF", ".off", fitsOff, readOff, encodeOff, /*weldsItself=*/false, nullptr},
    {PartFormat::kThreeMf, "3MF", ".3mf", fitsThreeMf, readThreeMf, encodeThreeMf,
     /*weldsItself=*/false, readThreeMfPlate},
}};

}  // namespace

std::span<const Format> allFormats() {
    return kFormats;
}

const Format& rowOf(PartFormat format) {
    return *std::find_if(kFormats.begin(), kFormats.end(),
                         [&](const Format& row) { return row.format == format; });
}

}  // namespace Tesk::files
