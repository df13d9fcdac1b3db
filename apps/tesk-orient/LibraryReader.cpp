#include "LibraryReader.h"

#include <assimp/MemoryIOWrapper.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <fmt/format.h>

#include <algorithm>
#include <assimp/Importer.hpp>
#include <limits>
#include <span>

#include "Failure.h"

namespace App {

namespace {

std::span<const aiMesh* const> meshesOf(const aiScene& scene) {
    return {scene.mMeshes, scene.mNumMeshes};
}

std::span<const aiFace> facesOf(const aiMesh& mesh) {
    return {mesh.mFaces, mesh.mNumFaces};
}

/// Before polygons are cut, which reads the positions that the indices name.
void compareWithCheck(const aiScene& scene, const FileContent& content) {
    std::size_t polygons = 0;
    std::size_t corners = 0;
    for (const aiMesh* mesh : meshesOf(scene)) {
        for (const aiFace& face : facesOf(*mesh)) {
            ++polygons;
            corners += face.mNumIndices;
            const bool isSound =
                std::all_of(face.mIndices, face.mIndices + face.mNumIndices,
                            [&](unsigned index) { return index < mesh->mNumVertices; });
            if (!isSound) throw InputFailure("a face names a vertex that the file does not have");
        }
    }
    if (polygons != content.polygons || corners != content.corners) {
        throw InputFailure(fmt::format("cannot be read in full: {} of {} faces were understood",
                                       polygons, content.polygons));
    }
}

void append(const aiMesh& source, TriangleMesh& mesh) {
    const auto base = static_cast<std::int32_t>(mesh.positions.size());
    for (const aiVector3D& p : std::span(source.mVertices, source.mNumVertices)) {
        mesh.positions.emplace_back(p.x, p.y, p.z);
    }
    for (const aiFace& face : facesOf(source)) {
        if (face.mNumIndices != 3) continue;
        mesh.triangles.push_back({base + static_cast<std::int32_t>(face.mIndices[0]),
                                  base + static_cast<std::int32_t>(face.mIndices[1]),
                                  base + static_cast<std::int32_t>(face.mIndices[2])});
    }
}

TriangleMesh flatten(const aiScene& scene) {
    std::size_t positions = 0;
    std::size_t triangles = 0;
    for (const aiMesh* mesh : meshesOf(scene)) {
        positions += mesh->mNumVertices;
        triangles += mesh->mNumFaces;
    }
    if (positions > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw InputFailure(fmt::format("is too big: {} vertices", positions));
    }
    TriangleMesh flat;
    flat.positions.reserve(positions);
    flat.triangles.reserve(triangles);
    for (const aiMesh* mesh : meshesOf(scene)) append(*mesh, flat);
    return flat;
}

}  // namespace

TriangleMesh readWithLibrary(const std::string& bytes, const std::string& extension,
                             FileContent& content) {
    Assimp::Importer importer;
    // The importer owns its file system. Without another one behind it, this one knows one file.
    importer.SetIOHandler(new Assimp::MemoryIOSystem(
        reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), nullptr));
    const aiScene* scene = importer.ReadFile(AI_MEMORYIO_MAGIC_FILENAME "." + extension, 0);
    if (scene == nullptr) {
        std::string reason = importer.GetErrorString();
        std::replace_if(
            reason.begin(), reason.end(), [](unsigned char c) { return c < 0x20; }, ' ');
        throw InputFailure("cannot be read: " + reason.substr(0, 200));
    }
    compareWithCheck(*scene, content);
    if (content.corners != content.polygons * 3) {
        scene = importer.ApplyPostProcessing(aiProcess_Triangulate);
        if (scene == nullptr) throw InputFailure("its polygons cannot be cut into triangles");
    }
    TriangleMesh mesh = flatten(*scene);
    const std::size_t expected = content.corners - content.polygons * 2;
    if (mesh.triangles.size() < expected) {
        const auto missing = static_cast<std::int64_t>(expected - mesh.triangles.size());
        content.warnings.push_back(
            {"uncut-polygons",
             fmt::format("{} triangles are missing: polygons that cross themselves or have no "
                         "area could not be cut",
                         missing),
             missing});
    }
    return mesh;
}

}  // namespace App
