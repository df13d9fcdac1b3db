#pragma once

#include <string_view>

namespace Tesk::files {

/// The text of a file without a byte order mark in front and a DOS end-of-file mark behind.
///
/// @param format  goes into the messages: "STL"
///
/// Throws PartFileError for UTF-16, and for a NUL byte, whose line it names.
std::string_view plainText(std::string_view bytes, const char* format);

}  // namespace Tesk::files
