#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace App {

/// Unpacks the files of a zip archive that lies in memory.
class ZipReader {
 public:
    /// Throws InputFailure where the bytes are no zip archive.
    explicit ZipReader(std::string bytes);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    /// Names compare without regard to case; a leading '/' is passed over.
    bool has(std::string_view name);

    /// Passes a file's content on piece by piece. Throws InputFailure where there is no such file,
    /// it is damaged, or the archive unpacks to far more than honest files do, all reads together.
    void read(std::string_view name, const std::function<void(std::string_view)>& sink);

 private:
    struct Archive;
    std::unique_ptr<Archive> m_archive;
};

}  // namespace App
