#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace App {

/// What tells a file's content from another's.
struct FileIdentity {
    std::uint64_t size = 0;
    std::string hash;  ///< "xxh128:" and 32 hex digits
};

/// XXH3's hash of 128 bits, in the form of FileIdentity::hash. Not meant against forgers.
std::string contentHash(std::string_view bytes);

/// Reads the file once, in pieces. Empty where that fails, and after Ctrl-C.
std::optional<FileIdentity> identify(const std::filesystem::path& file);

}  // namespace App
