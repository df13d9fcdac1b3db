#pragma once

#include <filesystem>
#include <string>

namespace App {

/// A path as the user would write it.
std::string displayName(const std::filesystem::path& path);

/// The path of a name in UTF-8, which is what arguments are on every platform.
std::filesystem::path pathOf(const std::string& name);

/// The whole content of a regular file. Throws InputFailure, which does not name the file, where
/// there is none, it is something else than a file, cannot be read, or is empty.
std::string readFileBytes(const std::filesystem::path& path);

}  // namespace App
