#include "part/FileBytes.h"

#include <fstream>
#include <system_error>

#include "Failure.h"

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

std::string readFileBytes(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) throw InputFailure("no such file");
    if (status.type() == fs::file_type::none) throw InputFailure(error.message());
    if (fs::is_directory(status)) throw InputFailure("is a folder, not a mesh file");
    if (!fs::is_regular_file(status)) throw InputFailure("is not a regular file");

    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputFailure("cannot be opened for reading");
    const std::uintmax_t size = fs::file_size(path, error);
    if (error) throw InputFailure(error.message());
    if (size == 0) throw InputFailure("the file is empty (0 bytes)");

    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (static_cast<std::uintmax_t>(file.gcount()) != size) {
        throw InputFailure("could not be read to its end");
    }
    return bytes;
}

}  // namespace App
