#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "batch/BatchFormat.h"

namespace App {

/// The file that a batch appends its lines to. It is locked against other batches while it is open,
/// and only this object may write to it meanwhile: each line is checked to go where the last one
/// ended.
///
/// Lines are handed to the system one by one, so that a process that is killed leaves at most its
/// last line torn. sync() carries them to the disk; whoever calls it decides how many lines a power
/// failure may cost.
///
/// All members throw Failure with ExitCode::kOutput that names the file, resume() also with
/// ExitCode::kInput.
class ResultsFile {
 public:
    /// A new file. One that is there is not overwritten.
    static ResultsFile create(const std::filesystem::path& path);

    /// A file that may be there already. A torn last line is cut off; the others, which have to be
    /// lines of a batch, are in held().
    static ResultsFile resume(const std::filesystem::path& path);

    ResultsFile(ResultsFile&& other) noexcept;
    ResultsFile& operator=(ResultsFile&&) = delete;
    ~ResultsFile();

    const std::vector<HeldLine>& held() const { return m_held; }

    /// Writes a line with its line feed. Where that fails, nothing of it stays.
    void append(const std::string& line);

    /// Waits until all lines are on the disk. May run on another thread than append().
    void sync() const;

 private:
    ResultsFile(std::filesystem::path path, int flags);
    void lock() const;
    void readHeld();
    void refuseIfReplaced() const;
    [[noreturn]] void fail(int uvError) const;

    std::filesystem::path m_path;
    int m_file = -1;
    std::uint64_t m_size = 0;
    std::vector<HeldLine> m_held;
};

}  // namespace App
