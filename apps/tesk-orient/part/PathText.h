#pragma once

#include <filesystem>
#include <string>

namespace App {

/// A path as the user would write it.
std::string displayName(const std::filesystem::path& path);

/// The path of a name in UTF-8, which is what arguments are on every platform.
std::filesystem::path pathOf(const std::string& name);

}  // namespace App
