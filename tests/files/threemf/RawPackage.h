#pragma once

#include <string>
#include <vector>

/// A file of a zip archive, taken apart byte by byte.
struct RawEntry {
    std::string name;
    std::string header;  ///< before the content, name and extra fields included
    std::string data;    ///< as it is packed
    std::string record;  ///< of the directory; where it says where the file is, zeros

    bool operator==(const RawEntry&) const = default;
};

/// An archive without ZIP64, in the order of its directory, and what is behind the directory, its
/// place not included.
struct RawPackage {
    std::vector<RawEntry> entries;
    std::string comment;
};

RawPackage rawPackage(const std::string& bytes);
