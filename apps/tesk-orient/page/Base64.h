#pragma once

#include <span>
#include <string>

namespace App {

/// Bytes as text of RFC 4648, padded.
std::string base64Of(std::span<const unsigned char> bytes);

}  // namespace App
