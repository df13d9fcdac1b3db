#include "part/MeshOutput.h"

#include <algorithm>
#include <cctype>

#include "Failure.h"
#include "part/MeshEncoding.h"
#include "part/PathText.h"

namespace App {

namespace {

namespace fs = std::filesystem;

std::string extensionOf(const fs::path& path) {
    std::string extension = displayName(path.extension());
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

/// The path, if it names a format that can be written.
const fs::path& withKnownFormat(const fs::path& path) {
    if (encoderFor(extensionOf(path)) != nullptr) return path;
    throw Failure(ExitCode::kOutput,
                  displayName(path) +
                      ": cannot be written: its name must end in .stl, .obj, .ply, .off or .3mf");
}

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

}  // namespace

fs::path outputOfTemporary(const fs::path& name) {
    const fs::path output = name.stem().stem();
    const std::string tag = displayName(name.stem().extension());
    const bool isTemporary = name.extension() == ".tmp" && tag.size() == 9 &&
                             std::all_of(tag.begin() + 1, tag.end(), isHexDigit);
    return isTemporary ? output : fs::path();
}

MeshOutput::MeshOutput(const fs::path& path) : m_path(path), m_file(withKnownFormat(path)) {}

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
        throw Failure(ExitCode::kOutput, displayName(m_path) + ": " + error.place());
    }
    m_file.write(bytes);
}

}  // namespace App
