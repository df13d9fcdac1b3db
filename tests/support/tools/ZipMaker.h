#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A file of a zip archive, and how it is written into it: honestly, unless a member says
/// otherwise.
struct ZipFile {
    std::string name = {};
    std::string content = {};
    /// 8 deflates; 0 stores; any other number is written as such, in front of content as it is.
    std::uint16_t method = 8;
    /// Sizes of all ones and a ZIP64 record in front of the content.
    bool isZip64 = false;
    /// The same in the directory, and where the file begins.
    bool isZip64Central = false;
    /// Checksum and sizes behind the content, zeros (or a ZIP64 record of zeros) in front of it.
    bool hasDescriptor = false;
    std::uint16_t flags = 0;     ///< more of them: 1 is encrypted, 0x800 a name in UTF-8
    std::string extra = {};      ///< records beside the ZIP64 ones, in both places
    std::uint32_t wrongCrc = 0;  ///< xored onto the checksum in both places
    std::optional<std::string> localName = {};    ///< in front of the content
    std::optional<std::uint32_t> localSize = {};  ///< both sizes in front of the content
    std::optional<std::uint16_t> localMethod = {};
};

/// The end of a zip archive.
struct ZipEnd {
    std::string comment = {};
    bool isZip64 = false;           ///< with a ZIP64 end record, which then holds the numbers
    std::uint16_t moreFiles = 0;    ///< than there are
    std::uint32_t wrongOffset = 0;  ///< added to where the directory begins
    std::uint16_t disk = 0;
};

/// A zip archive in bytes, and nothing in it but what is asked for.
std::string makeZip(const std::vector<ZipFile>& files, const ZipEnd& end = {});
