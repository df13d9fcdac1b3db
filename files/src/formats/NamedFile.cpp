#include "formats/NamedFile.h"

#include <algorithm>

#include "formats/Formats.h"
#include "text/Keyword.h"
#include "text/Message.h"

namespace Tesk::files {

namespace fs = std::filesystem;

std::string extensionOf(const fs::path& path) {
    std::string extension = displayName(path.extension());
    std::transform(extension.begin(), extension.end(), extension.begin(), lowered);
    return extension;
}

PartFormat expectFormat(const fs::path& path) {
    if (const auto format = formatOf(path)) return *format;
    std::string supported;
    for (const Format& row : allFormats()) {
        supported += message(supported.empty() ? "" : ", ", row.extension);
    }
    const std::string extension = extensionOf(path);
    throw PartFileError(message("unknown file type ",
                                extension.empty() ? "(no extension)" : extension,
                                "; supported: ", supported));
}

void refuseEmpty(std::string_view bytes) {
    if (bytes.empty()) throw PartFileError("the file is empty (0 bytes)");
}

void rethrow(const PartFileError& error, const fs::path& path) {
    throw PartFileError(error.trouble(), error.line(), error.offset(), displayName(path));
}

}  // namespace Tesk::files
