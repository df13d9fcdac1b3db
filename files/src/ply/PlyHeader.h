#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tesk::files {

enum class PlyForm { kAscii, kLittleEndian, kBigEndian };
enum class PlyType { kInt8, kUint8, kInt16, kUint16, kInt32, kUint32, kFloat, kDouble };

std::size_t sizeOf(PlyType type);

struct PlyProperty {
    std::string name;
    PlyType type = PlyType::kFloat;
    bool isList = false;
    PlyType countType = PlyType::kUint8;  ///< of a list
};

struct PlyElement {
    std::string name;
    std::size_t count = 0;
    std::vector<PlyProperty> properties;

    std::size_t leastSize(PlyForm form) const;  ///< bytes that one instance takes at least
};

struct PlyHeader {
    PlyForm form = PlyForm::kAscii;
    std::vector<PlyElement> elements;
    std::size_t bodyStart = 0;  ///< bytes from the start of the file
    std::size_t bodyLine = 1;   ///< its first line, counted from 1
};

/// Reads the header. Throws PartFileError with the line of anything that a PLY header cannot hold,
/// and for an element with more instances than the rest of the file has room for.
PlyHeader readPlyHeader(std::string_view bytes);

}  // namespace Tesk::files
