#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tesk::files {

/// Unpacks the files of a zip archive in memory. The archive's directory decides, not the local
/// headers; contents are checked against it.
class ZipReader {
 public:
    /// The bytes must outlive the reader. Throws PartFileError if they are not a zip archive, two
    /// files have the same name (ignoring case), or a name points outside the archive: an absolute
    /// path, a drive, "..", or backslashes, which some systems treat as separators.
    explicit ZipReader(std::string_view bytes);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    /// The files in the order of the archive's directory, in UTF-8; folders are left out.
    const std::vector<std::string>& names() const;

    /// The name of a file as names() gives it. Ignores the case of ASCII letters and a leading '/'.
    std::optional<std::string> find(std::string_view name) const;

    /// The index of a file in the archive's directory; nothing if there is no such file.
    std::optional<std::size_t> indexOf(std::string_view name) const;

    /// Passes a file's content to `sink` piece by piece. Throws PartFileError if there is no such
    /// file, it is damaged, encrypted or compressed by a method that 3MF does not allow, or if all
    /// reads together exceed 200 times the archive's size (plus 1 MiB).
    void read(std::string_view name, const std::function<void(std::string_view)>& sink);

    /// A file's content in one piece, as read() gives it.
    std::string contents(std::string_view name);

    /// For progress: the bytes unpacked so far, and what the directory says all files come to.
    std::size_t unpackedSize() const;
    std::size_t totalSize() const;

 private:
    struct Archive;
    std::unique_ptr<Archive> m_archive;
};

}  // namespace Tesk::files
