#pragma once

#include "text/Message.h"
#include "text/TextScanner.h"

// What the reader of 3MF uses of the file library's inner parts, until it is one of them.
namespace App {

using Tesk::files::quoted;
using Tesk::files::TextScanner;

/// A file's name in UTF-8 for a message: whole unless it is very long, without control characters.
std::string quotedName(std::string_view name);

}  // namespace App
