#include "SampleMeshes.h"

#include <algorithm>
#include <cstdlib>

#if TESK_HAVE_ASSIMP
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <assimp/Importer.hpp>
#endif

namespace {

std::filesystem::path folder() {
    const char* fromEnvironment = std::getenv("TESK_MESH_DIR");
    return fromEnvironment != nullptr ? fromEnvironment : TESK_MESH_DIR;
}

#if TESK_HAVE_ASSIMP

void addNode(const aiScene& scene, const aiNode& node, const aiMatrix4x4& parent, Part& part) {
    const aiMatrix4x4 toScene = parent * node.mTransformation;
    for (unsigned m = 0; m < node.mNumMeshes; ++m) {
        const aiMesh& mesh = *scene.mMeshes[node.mMeshes[m]];
        const auto first = static_cast<std::int32_t>(part.positions.size());
        for (unsigned v = 0; v < mesh.mNumVertices; ++v) {
            const aiVector3D p = toScene * mesh.mVertices[v];
            part.add({p.x, p.y, p.z});
        }
        for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
            const aiFace& face = mesh.mFaces[f];
            if (face.mNumIndices != 3) continue;
            const auto corner = [&](int k) {
                return first + static_cast<std::int32_t>(face.mIndices[k]);
            };
            part.triangles.push_back({corner(0), corner(1), corner(2)});
        }
    }
    for (unsigned c = 0; c < node.mNumChildren; ++c) {
        addNode(scene, *node.mChildren[c], toScene, part);
    }
}

#endif

}  // namespace

std::vector<std::filesystem::path> sampleMeshes() {
    std::vector<std::filesystem::path> files;
    std::error_code isAbsent;
    for (const auto& entry : std::filesystem::directory_iterator(folder(), isAbsent)) {
        const std::string extension = entry.path().extension().string();
        if (extension == ".stl" || extension == ".obj" || extension == ".ply" ||
            extension == ".3mf") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string whyNoSampleMeshes() {
    return "no sample meshes in " + folder().string() + " (set TESK_MESH_DIR)";
}

std::optional<Part> readSampleMesh(const std::filesystem::path& file) {
#if TESK_HAVE_ASSIMP
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(file.string(), aiProcess_Triangulate);
    if (scene == nullptr || scene->mRootNode == nullptr) return std::nullopt;
    Part part;
    addNode(*scene, *scene->mRootNode, aiMatrix4x4(), part);
    return part.welded();
#else
    static_cast<void>(file);
    return std::nullopt;
#endif
}
