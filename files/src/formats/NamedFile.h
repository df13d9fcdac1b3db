#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "bytes/MappedFile.h"

namespace Tesk::files {

/// A path's extension in lower case, with its dot.
std::string extensionOf(const std::filesystem::path& path);

/// The format of a path's extension. Throws PartFileError that lists those that are known.
PartFormat expectFormat(const std::filesystem::path& path);

/// Throws PartFileError if there are no bytes.
void refuseEmpty(std::string_view bytes);

/// Throws the error again, with the file's name.
[[noreturn]] void rethrow(const PartFileError& error, const std::filesystem::path& path);

/// Returns read(bytes, format) for a mesh file, and adds the file's name to its errors.
template <class Read>
auto withFile(const std::filesystem::path& path, const Read& read) {
    try {
        const MappedFile file(path);
        return read(file.bytes(), expectFormat(path));
    } catch (const PartFileError& error) {
        rethrow(error, path);
    }
}

}  // namespace Tesk::files
