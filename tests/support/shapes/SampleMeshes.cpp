#include "shapes/SampleMeshes.h"

#include <algorithm>
#include <cstdlib>

#include "TeskPartFiles/PartFiles.h"

namespace {

std::filesystem::path folder() {
    const char* fromEnvironment = std::getenv("TESK_MESH_DIR");
    return fromEnvironment != nullptr ? fromEnvironment : TESK_MESH_DIR;
}

}  // namespace

std::vector<std::filesystem::path> sampleMeshes() {
    std::vector<std::filesystem::path> files;
    std::error_code isAbsent;
    for (const auto& entry : std::filesystem::directory_iterator(folder(), isAbsent)) {
        if (entry.is_regular_file() && Tesk::formatOf(entry.path())) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string whyNoSampleMeshes() {
    return "no sample meshes in " + folder().string() + " (set TESK_MESH_DIR)";
}

std::optional<Part> readSampleMesh(const std::filesystem::path& path) {
    try {
        const Tesk::PartFile file = Tesk::readPart(path);
        Part part;
        for (const Tesk::PartPoint& p : file.mesh.positions) part.add({p.x, p.y, p.z});
        part.triangles = file.mesh.triangles;
        return part;
    } catch (const Tesk::PartFileError&) {
        return std::nullopt;
    }
}
