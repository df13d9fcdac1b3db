#include "batch/ProgramRuns.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>

extern char** environ;

namespace fs = std::filesystem;

pid_t startProgram(const std::vector<std::string>& arguments) {
    std::vector<char*> argv = {const_cast<char*>(TESK_PROGRAM)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int stream = 0; stream < 3; ++stream)
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    pid_t child = 0;
    const int failure = posix_spawn(&child, TESK_PROGRAM, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) throw std::runtime_error("cannot start " TESK_PROGRAM);
    return child;
}

int waitForProgram(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

ScratchFolder::ScratchFolder() {
    std::random_device random;
    do {
        m_path = fs::temp_directory_path() / ("tesk-orient-bench-" + std::to_string(random()));
    } while (!fs::create_directory(m_path));
    m_former = fs::current_path();
    fs::current_path(m_path);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::current_path(m_former, ignored);
    fs::remove_all(m_path, ignored);
}

std::vector<std::string> comparableLines(const fs::path& results) {
    std::ifstream in(results, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string text; std::getline(in, text);) {
        nlohmann::json line = nlohmann::json::parse(text);
        line.erase("seconds");
        line.erase("peakMemoryBytes");
        lines.push_back(line.dump());
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}
