#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace App {

/// Unpacks the files of a zip archive that lies in memory. What the archive's directory says of a
/// file counts, not what is repeated in front of its content; contents are checked against it.
class ZipReader {
 public:
    /// Throws InputFailure where the bytes are no zip archive, two of its files have the same name
    /// (letter case aside), or a name leads out of the archive: from a root or a drive, through
    /// "..", or with backslashes, which some systems take for separators.
    explicit ZipReader(std::string bytes);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    /// The files in the order of the archive's directory, in UTF-8; folders are left out.
    const std::vector<std::string>& names() const;

    /// The name of a file as names() gives it. ASCII letters compare without regard to case; a
    /// leading '/' is passed over.
    std::optional<std::string> find(std::string_view name) const;

    /// Passes a file's content on piece by piece. Throws InputFailure where there is no such file,
    /// it is damaged, encrypted or packed by a method that 3MF does not have, or the archive
    /// unpacks to far more than honest files do, all reads together.
    void read(std::string_view name, const std::function<void(std::string_view)>& sink);

    /// A file's content in one piece, as read() gives it.
    std::string contents(std::string_view name);

 private:
    struct Archive;
    std::unique_ptr<Archive> m_archive;
};

}  // namespace App
