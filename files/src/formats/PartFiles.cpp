#include "TeskPartFiles/PartFiles.h"

#include <cstdio>
#include <memory>
#include <random>
#include <system_error>
#include <utility>

#include "formats/Formats.h"
#include "formats/NamedFile.h"
#include "mesh/Welding.h"
#include "text/Message.h"

namespace Tesk {

namespace fs = std::filesystem;

namespace {

std::string whole(const std::string& file, const std::string& trouble, std::size_t line,
                  std::optional<std::uint64_t> offset) {
    std::string text = file.empty() ? "" : file + ": ";
    if (line > 0) text += files::message("line ", line, ": ");
    text += trouble;
    if (offset) text += files::message(" (at byte ", *offset, ")");
    return text;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openForWriting(const fs::path& path) {
#if defined(_WIN32)
    return {_wfopen(path.c_str(), L"wb"), std::fclose};
#else
    return {std::fopen(path.c_str(), "wb"), std::fclose};
#endif
}

/// Removes a file that has not taken its place.
class TemporaryFile {
 public:
    explicit TemporaryFile(const fs::path& target) : m_path(target) {
        m_path += files::message(".", std::random_device()(), ".tmp");
    }
    ~TemporaryFile() {
        std::error_code ignored;
        if (!m_isMoved) fs::remove(m_path, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool write(const std::string& bytes) const {
        const File file = openForWriting(m_path);
        return file != nullptr &&
               std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() &&
               std::fflush(file.get()) == 0;
    }

    std::error_code moveTo(const fs::path& target) {
        std::error_code error;
        fs::rename(m_path, target, error);
        m_isMoved = !error;
        return error;
    }

 private:
    fs::path m_path;
    bool m_isMoved = false;
};

}  // namespace

PartFileError::PartFileError(std::string trouble, std::size_t line,
                             std::optional<std::uint64_t> offset, std::string file)
    : std::runtime_error(whole(file, trouble, line, offset)),
      m_trouble(std::move(trouble)),
      m_line(line),
      m_offset(offset),
      m_file(std::move(file)) {}

std::string PartFileError::place() const {
    return whole("", m_trouble, m_line, m_offset);
}

const char* nameOf(PartFormat format) {
    return files::rowOf(format).name;
}

std::string_view extensionOf(PartFormat format) {
    return files::rowOf(format).extension;
}

std::optional<PartFormat> formatOf(const fs::path& path) {
    const std::string extension = files::extensionOf(path);
    for (const files::Format& row : files::allFormats()) {
        if (row.extension == extension) return row.format;
    }
    return std::nullopt;
}

std::optional<PartFormat> formatOf(std::string_view bytes) {
    for (const files::Format& row : files::allFormats()) {
        if (row.fits(bytes)) return row.format;
    }
    return std::nullopt;
}

PartFile readPart(std::string_view bytes, PartFormat format, const ReadOptions& options) {
    files::refuseEmpty(bytes);
    const files::Format& row = files::rowOf(format);
    files::Progress progress(options.progress);
    PartFile part = row.read(bytes, options, progress);
    part.format = format;
    if (options.weldsVertices && !row.weldsItself) {
        files::weldMesh(part.mesh, options.threads, progress);
    }
    progress.report(1, 1, 0, 100);
    return part;
}

PartFile readPart(const fs::path& path, const ReadOptions& options) {
    return files::withFile(path, [&](std::string_view bytes, PartFormat format) {
        return readPart(bytes, format, options);
    });
}

PartMesh weld(PartMesh mesh, unsigned threads) {
    const std::function<void(int)> none;
    files::Progress progress(none);
    files::weldMesh(mesh, threads, progress);
    return mesh;
}

std::string encodePart(const PartMesh& mesh, PartFormat format) {
    return files::rowOf(format).encode(mesh);
}

void writePart(const fs::path& path, const PartMesh& mesh) {
    try {
        const std::string bytes = encodePart(mesh, files::expectFormat(path));
        TemporaryFile temporary(path);
        if (!temporary.write(bytes)) {
            throw PartFileError("cannot be written: no permission, or the disk is full");
        }
        if (const std::error_code error = temporary.moveTo(path)) {
            throw PartFileError("cannot be written: " + error.message());
        }
    } catch (const PartFileError& error) {
        files::rethrow(error, path);
    }
}

}  // namespace Tesk
