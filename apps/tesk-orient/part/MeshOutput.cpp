#include "part/MeshOutput.h"

#include <fmt/format.h>

#include <cctype>
#include <cstdio>
#include <memory>
#include <random>
#include <system_error>

#include "Failure.h"
#include "commands/Interrupt.h"
#include "part/FileBytes.h"
#include "part/MeshEncoding.h"

namespace App {

namespace {

namespace fs = std::filesystem;

std::string extensionOf(const fs::path& path) {
    std::string extension = displayName(path.extension());
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

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

/// Beside the file, so that it can take its name in one step.
fs::path temporaryBeside(const fs::path& path) {
    fs::path temporary = path;
    temporary += fmt::format(".{:08x}.tmp", std::random_device()());
    return temporary;
}

}  // namespace

MeshOutput::MeshOutput(const fs::path& path) : m_path(path), m_temporary(temporaryBeside(path)) {
    if (encoderFor(extensionOf(path)) == nullptr) {
        fail(path, "cannot be written: its name must end in .stl, .obj, .ply, .off or .3mf");
    }
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) fail(path, "is a folder");
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, ignored)) {
        fail(path, "cannot be written: there is no folder " + displayName(folder));
    }
    Interrupt::setTemporaryFile(m_temporary);
    bool canWrite = false;
    {
        const auto hold = Interrupt::hold();
        canWrite = openForWriting(m_temporary) != nullptr;
        fs::remove(m_temporary, ignored);
    }
    if (!canWrite) fail(path, "cannot be written: no permission in folder " + displayName(folder));
}

MeshOutput::~MeshOutput() {
    std::error_code ignored;
    fs::remove(m_temporary, ignored);
    Interrupt::setTemporaryFile({});
}

bool MeshOutput::isThreeMf() const {
    return extensionOf(m_path) == ".3mf";
}

void MeshOutput::write(const TriangleMesh& mesh) {
    writeBytes([&] { return encoderFor(extensionOf(m_path))(mesh); });
}

void MeshOutput::writeBytes(const std::function<std::string()>& make) {
    std::string bytes;
    try {
        bytes = make();
    } catch (const Tesk::PartFileError& error) {
        fail(m_path, error.place());
    }
    File file(nullptr, std::fclose);
    {
        const auto hold = Interrupt::hold();
        file = openForWriting(m_temporary);
    }
    const bool isWritten = file != nullptr &&
                           std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() &&
                           std::fflush(file.get()) == 0;
    file.reset();
    if (!isWritten) fail(m_path, "cannot be written: is the disk full?");
    std::error_code error;
    fs::rename(m_temporary, m_path, error);
    if (error) fail(m_path, "cannot be written: " + error.message());
}

}  // namespace App
