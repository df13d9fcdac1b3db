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
    /// With the record of sizes and checksum behind the content, if there is one.
    std::uint64_t end = 0;
};

/// Where everything is in a zip archive.
struct ZipLayout {
    std::vector<ZipPlace> files;  ///< in the order of the directory
    std::uint64_t directoryStart = 0;
    /// The places of the directory and of the ZIP64 end record, wherever they are written.
    std::vector<ZipField> places;
};

/// Throws PartFileError where the bytes are not a sound archive.
ZipLayout layoutOf(std::string_view archive);

}  // namespace Tesk::files
