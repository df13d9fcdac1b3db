#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace App {

/// Something about the input that the user should know, though a result is still given.
struct Warning {
    std::string code;        ///< short and fixed, for programs: "open-edges"
    std::string text;        ///< one sentence for people
    std::int64_t count = 0;  ///< how many, where that makes sense; otherwise 0
};

using Warnings = std::vector<Warning>;

}  // namespace App
