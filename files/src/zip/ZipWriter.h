#pragma once

#include <string>
#include <vector>

namespace Tesk::files {

struct ZipEntry {
    std::string name;
    std::string content;
};

/// A zip archive of these files, at least one, in this order, compressed, with the same bytes at
/// every call. Throws PartFileError if two have the same name.
std::string zipped(const std::vector<ZipEntry>& entries);

}  // namespace Tesk::files
