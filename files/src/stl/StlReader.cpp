#include "stl/StlReader.h"

#include "bytes/ByteOrder.h"
#include "stl/StlLayout.h"
#include "text/Keyword.h"

namespace Tesk::files {

namespace {

/// Binary headers may begin with "solid" as well; only text goes on with a facet or the end.
bool looksLikeText(std::string_view bytes) {
    std::string_view start = bytes.substr(0, 1024);
    if (start.starts_with("\xef\xbb\xbf")) start.remove_prefix(3);
    const std::size_t solid = start.find_first_not_of(" \t\r\n");
    if (solid == start.npos || !isKeyword(start.substr(solid, 5), "solid")) return false;
    // Read as a count, four characters of text come to at least 150 million triangles: a file
    // with a believable count behind its 80 bytes is a damaged binary one.
    const bool hasNul = start.find('\0') != start.npos;
    const bool hasSmallCount =
        bytes.size() >= kStlHeaderSize && stlCount(bytes) / 4 < bytes.size() && hasNul;
    if (hasSmallCount) return false;
    return !hasNul || hasKeyword(start, "facet") || hasKeyword(start, "endsolid");
}

}  // namespace

bool fitsStlCount(std::string_view bytes) {
    return bytes.size() >= kStlHeaderSize &&
           bytes.size() == kStlHeaderSize + kStlRecordSize * std::size_t{stlCount(bytes)};
}

PartFile readStl(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    const bool isText = !fitsStlCount(bytes) && looksLikeText(bytes);
    return isText ? readTextStl(bytes, options, progress) : readBinaryStl(bytes, options, progress);
}

}  // namespace Tesk::files
