#include "part/FileOutput.h"

#include <fmt/format.h>

#include <cstdio>
#include <memory>
#include <random>
#include <system_error>
#include <utility>

#include "Failure.h"
#include "commands/Interrupt.h"
#include "part/PathText.h"

namespace App {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, const std::string& trouble) {
    throw Failure(ExitCode::kOutput, displayName(path) + ": " + trouble);
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openForWriting(const fs::path& path) {
#if defined(_WIN32)
    return {_wfopen(path.c_str(), L"wb"), std::fclose};
#else
    return {std::fopen(path.c_str(), "wb"), std::fclose};
#endif
}

/// A file beside the wanted one, which takes its name in one step or goes away; Ctrl-C removes it.
class TemporaryFile {
 public:
    explicit TemporaryFile(const fs::path& path) : m_path(path) {
        m_path += fmt::format(".{:08x}.tmp", std::random_device()());
        Interrupt::setTemporaryFile(m_path);
        const auto hold = Interrupt::hold();
        m_file = openForWriting(m_path);
    }
    ~TemporaryFile() {
        m_file.reset();
        std::error_code ignored;
        fs::remove(m_path, ignored);
        Interrupt::setTemporaryFile({});
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool isOpen() const { return m_file != nullptr; }

    bool write(std::string_view bytes) {
        const bool isWritten =
            std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) == bytes.size();
        return std::fclose(m_file.release()) == 0 && isWritten;
    }

    std::error_code rename(const fs::path& to) {
        std::error_code error;
        fs::rename(m_path, to, error);
        return error;
    }

 private:
    fs::path m_path;
    File m_file{nullptr, std::fclose};
};

}  // namespace

FileOutput::FileOutput(fs::path path) : m_path(std::move(path)) {
    std::error_code ignored;
    if (fs::is_directory(m_path, ignored)) fail(m_path, "is a folder");
    const fs::path folder = m_path.has_parent_path() ? m_path.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, ignored)) {
        fail(m_path, "cannot be written: there is no folder " + displayName(folder));
    }
    if (!TemporaryFile(m_path).isOpen()) {
        fail(m_path, "cannot be written: no permission in folder " + displayName(folder));
    }
}

void FileOutput::write(std::string_view bytes) {
    TemporaryFile file(m_path);
    if (!file.isOpen()) {
        fail(m_path, "cannot be written: its folder takes no files any more");
    }
    if (!file.write(bytes)) fail(m_path, "cannot be written: is the disk full?");
    if (const std::error_code error = file.rename(m_path)) {
        fail(m_path, "cannot be written: " + error.message());
    }
}

}  // namespace App
