#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace Tesk::files {

/// The bytes of a file, mapped into memory for as long as the object lives.
class MappedFile {
 public:
    /// Throws PartFileError, without the file's name, if there is no such file, or it is not a
    /// regular file, cannot be read, or is empty.
    explicit MappedFile(const std::filesystem::path& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::string_view bytes() const { return {m_data, m_size}; }

 private:
    const char* m_data = nullptr;
    std::size_t m_size = 0;
};

/// A path as the user would write it, in UTF-8.
std::string displayName(const std::filesystem::path& path);

}  // namespace Tesk::files
