#include "part/PathText.h"

namespace App {

namespace fs = std::filesystem;

std::string displayName(const fs::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

fs::path pathOf(const std::string& name) {
#if defined(_WIN32)
    return {std::u8string(name.begin(), name.end())};
#else
    return {name};  // whatever bytes they are
#endif
}

}  // namespace App
