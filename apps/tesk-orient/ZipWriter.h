#pragma once

#include <string>
#include <vector>

namespace App {

struct ZipEntry {
    std::string name;
    std::string content;
};

/// A zip archive of these files, at least one, in this order, compressed, with the same bytes at
/// every call. Throws Failure where two have the same name.
std::string zipped(const std::vector<ZipEntry>& entries);

}  // namespace App
