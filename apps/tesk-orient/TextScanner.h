#pragma once

#include "text/Message.h"
#include "text/TextScanner.h"

// What the reader of 3MF uses of the file library's inner parts, until it is one of them.
namespace App {

using Tesk::files::quoted;
using Tesk::files::TextScanner;

}  // namespace App
