#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

/// Starts tesk-orient with its output thrown away; the caller waits for it.
pid_t startProgram(const std::vector<std::string>& arguments);

/// The exit code of a process that was started, or the number of the signal that ended it, negated.
int waitForProgram(pid_t process);

/// A folder for one run's files, in which the process is as long as the object lives; removed at
/// the end.
class ScratchFolder {
 public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

 private:
    std::filesystem::path m_path;
    std::filesystem::path m_former;
};

/// The lines of a batch's results, sorted, without what differs from run to run.
std::vector<std::string> comparableLines(const std::filesystem::path& results);
