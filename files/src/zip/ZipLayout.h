#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Tesk::files {

/// A number somewhere in an archive's bytes.
struct ZipField {
    std::uint64_t at = 0;
    unsigned width = 4;  ///< in bytes
    std::uint64_t value = 0;
};

/// A file of an archive: its record in the directory, and the header before its content.
struct ZipPlace {
    ZipField flags, crc, packedSize, size, offset;
    unsigned method = 0;
    ZipField localFlags, localCrc, localPackedSize, localSize;
    std::uint64_t dataStart = 0;
    std::uint64_t dataEnd = 0;
    std::uint64_t end = 0;  ///< after the data descriptor, if there is one
};

/// The positions of all parts of a zip archive.
struct ZipLayout {
    std::vector<ZipPlace> files;  ///< in the order of the directory
    std::uint64_t directoryStart = 0;
    /// All fields that give the position of the directory or of the ZIP64 end record.
    std::vector<ZipField> positions;
};

/// Throws PartFileError if the bytes are not a sound archive.
ZipLayout layoutOf(std::string_view archive);

}  // namespace Tesk::files
