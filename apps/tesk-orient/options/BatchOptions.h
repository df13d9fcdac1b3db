#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace App {

/// What the command `batch` takes.
struct BatchOptions {
    std::vector<std::filesystem::path> inputs;  ///< files, folders
    bool readsList = false;                     ///< more of them from standard input
    std::vector<std::string> include;
    std::filesystem::path results;
    std::filesystem::path outputFolder;  ///< empty: write no parts
    std::string outputExtension;         ///< with its dot; empty: that of the input
    std::filesystem::path reportFolder;  ///< empty: write no pages; of "orient" only
    std::string command;                 ///< "orient", "box" or "lay-flat"
    std::vector<std::string> arguments;  ///< its options, as the command line takes them, sorted
    int jobs = 0;                        ///< 0: as many as the machine has processors
    std::optional<double> timeoutSeconds;
    std::uint64_t memoryLimit = 0;  ///< bytes of each job; 0: none
    bool isResumed = false;
    bool retriesFailed = false;
    bool isQuiet = false;
};

}  // namespace App
