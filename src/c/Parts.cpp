#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "TeskPartFiles/PartFiles.h"
#include "c/Arrays.h"
#include "c/Call.h"
#include "c/Guard.h"
#include "c/Handles.h"
#include "c/PartMeshes.h"

using namespace Tesk::c;
using Tesk::PartFormat;

static_assert(TESK_STL == static_cast<int>(PartFormat::kStl));
static_assert(TESK_OBJ == static_cast<int>(PartFormat::kObj));
static_assert(TESK_PLY == static_cast<int>(PartFormat::kPly));
static_assert(TESK_OFF == static_cast<int>(PartFormat::kOff));
static_assert(TESK_3MF == static_cast<int>(PartFormat::kThreeMf));

namespace {

std::filesystem::path pathOf(const char* utf8) {
    need(utf8, "path");
    const std::string_view text(utf8);
    try {
        return std::filesystem::path(std::u8string(text.begin(), text.end()));
    } catch (const std::system_error&) {
        refuse("path is not UTF-8");
    }
}

Tesk::ReadOptions optionsOf(const tesk_read_options* options, Call& how) {
    Tesk::ReadOptions read;
    read.threads = how.threads();
    read.progress = how.progress();
    if (options == nullptr) return read;
    needStruct(options, "options");
    if (options->max_triangles < 0) {
        refuse("options: max_triangles is " + std::to_string(options->max_triangles));
    }
    read.weldsVertices = options->keeps_vertices == 0;
    if (options->max_triangles > 0) {
        read.maxTriangles = static_cast<std::size_t>(options->max_triangles);
    }
    return read;
}

template <class Element>
const Element& elementOf(const std::vector<Element>& list, std::int32_t index, const char* what) {
    if (index >= 0 && static_cast<std::size_t>(index) < list.size()) {
        return list[static_cast<std::size_t>(index)];
    }
    refuse("index is " + std::to_string(index) + "; the part has " + std::to_string(list.size()) +
           " " + what);
}

}  // namespace

tesk_status tesk_part_read(const char* path, const tesk_read_options* options,
                           const tesk_call* call, tesk_part** part) {
    return guarded([&] {
        need(part, "part");
        const std::filesystem::path file = pathOf(path);
        Call how(call);
        how.run([&] { *part = new tesk_part(Tesk::readPart(file, optionsOf(options, how))); });
    });
}

tesk_status tesk_part_read_bytes(const void* bytes, int64_t size, int32_t format,
                                 const tesk_read_options* options, const tesk_call* call,
                                 tesk_part** part) {
    return guarded([&] {
        need(part, "part");
        if (size < 0) refuse("size is " + std::to_string(size));
        if (size > 0) need(bytes, "bytes");
        if (format < TESK_STL || format > TESK_3MF)
            refuse("no format is " + std::to_string(format));
        const std::string_view view(static_cast<const char*>(bytes),
                                    static_cast<std::size_t>(size));
        Call how(call);
        how.run([&] {
            *part = new tesk_part(
                Tesk::readPart(view, static_cast<PartFormat>(format), optionsOf(options, how)));
        });
    });
}

tesk_status tesk_part_describe(const tesk_part* part, tesk_part_details* details) {
    return guarded([&] {
        needHandle(part, "part");
        needStruct(details, "details");
        const Tesk::PartFile& file = part->file;
        *details = {.struct_size = sizeof *details,
                    .format = static_cast<std::int32_t>(file.format),
                    .form = file.form.c_str(),
                    .unit = file.unit ? file.unit->c_str() : "",
                    .warning_count = static_cast<std::int32_t>(file.warnings.size()),
                    .object_count = static_cast<std::int32_t>(file.objectNames.size())};
    });
}

tesk_status tesk_part_warning(const tesk_part* part, int32_t index, const char** code,
                              const char** text) {
    return guarded([&] {
        needHandle(part, "part");
        const Tesk::PartWarning& warning = elementOf(part->file.warnings, index, "warnings");
        if (code != nullptr) *code = warning.code.c_str();
        if (text != nullptr) *text = warning.text.c_str();
    });
}

tesk_status tesk_part_object(const tesk_part* part, int32_t index, const char** name) {
    return guarded([&] {
        needHandle(part, "part");
        need(name, "name");
        *name = elementOf(part->file.objectNames, index, "objects").c_str();
    });
}

tesk_status tesk_part_mesh(const tesk_part* part, tesk_mesh** mesh) {
    return guarded([&] {
        needHandle(part, "part");
        need(mesh, "mesh");
        const Tesk::PartMesh& held = part->file.mesh;
        *mesh = new tesk_mesh(MeshKernel(positionsOf(held), held.triangles));
    });
}

tesk_status tesk_part_write(const char* path, const tesk_mesh* mesh) {
    return guarded([&] {
        const std::filesystem::path file = pathOf(path);
        needHandle(mesh, "mesh");
        Tesk::writePart(file, partMeshOf(mesh->kernel, mesh->kernel.getMatrix()));
    });
}
