#include "RunProgram.h"

#include <fstream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

ProgramResult runTeskOrient(const std::vector<std::string>& arguments, int interruptAfterMs,
                            InheritedSigint inherited) {
    return run(TESK_PROGRAM, arguments, interruptAfterMs, inherited);
}

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    do {
        m_path = fs::temp_directory_path() / ("tesk-orient-test-" + std::to_string(random()));
    } while (!fs::create_directory(m_path));
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& bytes) const {
    std::ofstream(m_path / name, std::ios::binary) << bytes;
    return file(name);
}

std::size_t TemporaryFolder::countFiles() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(m_path), fs::directory_iterator()));
}

std::string readAll(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
