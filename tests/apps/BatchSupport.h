#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "shapes/BatchParts.h"

/// The lines of a results file. Fails the test where one is no JSON or the last has no line feed.
std::vector<nlohmann::json> linesOf(const std::filesystem::path& results);

/// The lines by the input's path (pathBytes where there are any); fails the test where a path comes
/// twice.
std::map<std::string, nlohmann::json> linesByPath(const std::filesystem::path& results);

/// The lines as a sorted list, without what differs from run to run: seconds, peakMemoryBytes.
std::vector<std::string> comparableLines(const std::filesystem::path& results);

/// All files below a folder with their bytes, by relative path in UTF-8.
std::map<std::string, std::string> filesBelow(const std::filesystem::path& folder);
