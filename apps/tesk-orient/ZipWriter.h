#pragma once

#include <string>
#include <vector>

namespace App {

struct ZipEntry {
    std::string name;
    std::string content;
};

/// A zip archive of these files, compressed, with the same bytes at every call.
std::string zipped(const std::vector<ZipEntry>& entries);

}  // namespace App
