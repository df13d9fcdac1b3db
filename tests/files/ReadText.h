#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TeskPartFiles/PartFiles.h"

using Triangles = std::vector<std::array<std::int32_t, 3>>;
using Points = std::vector<Tesk::PartPoint>;

/// The error's one line; empty where the bytes are read.
inline std::string troubleOf(std::string_view bytes, Tesk::PartFormat format) {
    try {
        Tesk::readPart(bytes, format);
        return "";
    } catch (const Tesk::PartFileError& error) {
        return error.what();
    }
}

/// The codes of a file's warnings.
inline std::vector<std::string> codesOf(const Tesk::PartFile& part) {
    std::vector<std::string> codes;
    for (const Tesk::PartWarning& warning : part.warnings) codes.push_back(warning.code);
    return codes;
}

/// A text with its line ends replaced.
inline std::string withLineEnds(std::string_view text, std::string_view lineEnd) {
    std::string changed;
    for (const char c : text) {
        if (c == '\n') {
            changed += lineEnd;
        } else {
            changed += c;
        }
    }
    return changed;
}
