#pragma once

#include <string_view>

namespace App {

/// Whether a pattern of the shell's kind matches all of a name: `?` is one byte but "/", `*` any
/// number of them, `**` any number of any bytes, `[a-z]` and `[!a-z]` one of a set. A "[" without
/// its "]" is itself. ASCII letters match in either case.
bool globMatches(std::string_view pattern, std::string_view name);

/// The same for a file below a folder: a pattern with "/" is for the whole relative path (with "/"
/// between its parts), any other for the file's name.
bool globMatchesFile(std::string_view pattern, std::string_view relativePath);

}  // namespace App
