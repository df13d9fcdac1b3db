#include "batch/ResultsFile.h"

#include <fmt/format.h>
#include <uv.h>

#include <fstream>
#include <system_error>
#include <utility>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/file.h>
#endif

#include "Failure.h"
#include "commands/Interrupt.h"
#include "part/PathText.h"

namespace App {

namespace {

/// One synchronous call on files. Its result is a value of at least 0 or libuv's error.
class FileCall {
 public:
    template <class Function, class... Arguments>
    explicit FileCall(Function function, Arguments... arguments) {
        m_result = function(nullptr, &m_request, arguments..., nullptr);
        if (m_result >= 0) m_result = m_request.result;
    }
    ~FileCall() { uv_fs_req_cleanup(&m_request); }
    FileCall(const FileCall&) = delete;
    FileCall& operator=(const FileCall&) = delete;

    std::int64_t result() const { return m_result; }
    const uv_stat_t& stat() const { return m_request.statbuf; }

 private:
    uv_fs_t m_request{};
    std::int64_t m_result = 0;
};

[[noreturn]] void failWith(const std::filesystem::path& path, ExitCode code,
                           const std::string& trouble) {
    throw Failure(code, displayName(path) + ": " + trouble);
}

}  // namespace

ResultsFile::ResultsFile(std::filesystem::path path, int flags) : m_path(std::move(path)) {
    std::error_code ignored;
    if (std::filesystem::is_directory(m_path, ignored)) {
        failWith(m_path, ExitCode::kOutput, "cannot be written: is a folder");
    }
    const std::string name = displayName(m_path);
    const std::int64_t file =
        FileCall(uv_fs_open, name.c_str(), flags | UV_FS_O_RDWR | UV_FS_O_CREAT, 0666).result();
    if (file == UV_EEXIST) {
        failWith(m_path, ExitCode::kOutput, "is there already; --resume goes on with it");
    }
    if (file < 0) fail(static_cast<int>(file));
    m_file = static_cast<int>(file);
}

ResultsFile::ResultsFile(ResultsFile&& other) noexcept
    : m_path(std::move(other.m_path)),
      m_file(std::exchange(other.m_file, -1)),
      m_size(other.m_size),
      m_held(std::move(other.m_held)) {}

ResultsFile::~ResultsFile() {
    if (m_file >= 0) FileCall(uv_fs_close, m_file);
}

ResultsFile ResultsFile::create(const std::filesystem::path& path) {
    ResultsFile file(path, UV_FS_O_EXCL);
    file.lock();
    return file;
}

ResultsFile ResultsFile::resume(const std::filesystem::path& path) {
    ResultsFile file(path, 0);
    file.lock();
    file.readHeld();
    const std::int64_t cut =
        FileCall(uv_fs_ftruncate, file.m_file, static_cast<std::int64_t>(file.m_size)).result();
    if (cut < 0) file.fail(static_cast<int>(cut));
    return file;
}

void ResultsFile::lock() const {
#if defined(_WIN32)
    // A byte that no line will reach, so that others can read.
    OVERLAPPED beyond{};
    beyond.OffsetHigh = 0x7fffffff;
    const bool isLocked =
        LockFileEx(uv_get_osfhandle(m_file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0,
                   1, 0, &beyond) != 0 ||
        GetLastError() != ERROR_LOCK_VIOLATION;
#else
    // Some network file systems have no locks.
    const bool isLocked = flock(m_file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
#endif
    if (!isLocked) failWith(m_path, ExitCode::kOutput, "another batch is writing to it");
}

void ResultsFile::readHeld() {
    std::ifstream in(m_path, std::ios::binary);
    std::string text;
    for (std::size_t number = 1; std::getline(in, text); ++number) {
        if (in.eof()) break;  // torn: it has no line feed
        std::optional<HeldLine> line = heldLineIn(text);
        // A last line of something else is torn, too: the system stopped while it was written.
        if (!line && in.peek() == std::ifstream::traits_type::eof()) break;
        if (!line) {
            failWith(m_path, ExitCode::kInput,
                     fmt::format("line {} is no result of a batch; nothing was changed", number));
        }
        m_held.push_back(std::move(*line));
        m_size += text.size() + 1;
    }
    if (in.bad()) failWith(m_path, ExitCode::kInput, "cannot be read");
}

void ResultsFile::refuseIfReplaced() const {
    const std::string name = displayName(m_path);
    const FileCall named(uv_fs_stat, name.c_str());
    const FileCall open(uv_fs_fstat, m_file);
    if (named.result() == UV_ENOENT || named.result() == UV_ENOTDIR) {
        failWith(m_path, ExitCode::kOutput, "has vanished; the batch ends, and its lines with it");
    }
    if (named.result() < 0) fail(static_cast<int>(named.result()));
    if (open.result() < 0) fail(static_cast<int>(open.result()));
    const bool isSame = named.stat().st_ino == open.stat().st_ino &&
                        named.stat().st_dev == open.stat().st_dev && open.stat().st_size == m_size;
    if (!isSame) {
        failWith(m_path, ExitCode::kOutput,
                 "was changed by another program; the batch ends, --resume goes on");
    }
}

void ResultsFile::append(const std::string& line) {
    // The process does not end in the middle of a line after Ctrl-C.
    const auto hold = Interrupt::hold();
    refuseIfReplaced();
    std::string rest = line;
    std::uint64_t at = m_size;
    while (!rest.empty()) {
        const uv_buf_t buffer = uv_buf_init(rest.data(), static_cast<unsigned int>(rest.size()));
        const std::int64_t count =
            FileCall(uv_fs_write, m_file, &buffer, 1u, static_cast<std::int64_t>(at)).result();
        if (count <= 0) {
            FileCall(uv_fs_ftruncate, m_file, static_cast<std::int64_t>(m_size));
            fail(count < 0 ? static_cast<int>(count) : UV_ENOSPC);
        }
        rest.erase(0, static_cast<std::size_t>(count));
        at += static_cast<std::uint64_t>(count);
    }
    m_size = at;
}

void ResultsFile::sync() const {
    const std::int64_t done = FileCall(uv_fs_fsync, m_file).result();
    // Devices and some file systems know of no such thing.
    if (done < 0 && done != UV_EINVAL && done != UV_ENOTSUP && done != UV_EROFS) {
        fail(static_cast<int>(done));
    }
}

void ResultsFile::fail(int uvError) const {
    failWith(m_path, ExitCode::kOutput, fmt::format("cannot be written: {}", uv_strerror(uvError)));
}

}  // namespace App
