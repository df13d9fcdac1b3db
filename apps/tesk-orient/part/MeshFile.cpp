#include "part/MeshFile.h"

#include <fmt/format.h>

#include <cctype>
#include <cmath>
#include <new>

#include "Failure.h"
#include "ThreeMfFile.h"
#include "part/FileBytes.h"

namespace App {

namespace {

std::string extensionOf(const std::filesystem::path& path) {
    std::string extension = displayName(path.extension());
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

void refuseNonFinite(const TriangleMesh& mesh) {
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        const UPoint3<float>& p = mesh.positions[i];
        if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) continue;
        throw InputFailure(fmt::format(
            "vertex {} has a coordinate that is not finite in millimetres: ({}, {}, {})", i + 1,
            p.x, p.y, p.z));
    }
}

void scale(TriangleMesh& mesh, double factor) {
    if (factor == 1.0) return;
    for (UPoint3<float>& p : mesh.positions) {
        for (int axis = 0; axis < 3; ++axis) {
            p[axis] = static_cast<float>(static_cast<double>(p[axis]) * factor);
        }
    }
    refuseNonFinite(mesh);
}

LengthUnit unitInFile(const std::string& name, Warnings& warnings) {
    if (const auto unit = unitNamed(name)) return *unit;
    warnings.push_back({"unknown-unit", fmt::format("the file gives its unit as \"{}\", which 3MF "
                                                    "does not know; millimetres are taken",
                                                    name)});
    return lengthUnits().front();
}

LoadedPart readThreeMfPart(const std::filesystem::path& path, std::optional<LengthUnit> unit) {
    ThreeMfContent content = readThreeMf(readFileBytes(path));
    LoadedPart part{.format = "3MF",
                    .form = "",
                    .unit = lengthUnits().front(),
                    .unitFromFile = !unit,
                    .mesh = triangleMeshOf(Tesk::weld(partMeshOf(std::move(content.mesh)))),
                    .warnings = std::move(content.warnings)};
    part.unit = unit ? *unit : unitInFile(content.unit, part.warnings);
    if (content.items > 1) {
        part.warnings.push_back(
            {"several-items",
             fmt::format("the file builds {} items; they are taken together, as one part",
                         content.items),
             static_cast<std::int64_t>(content.items)});
    }
    return part;
}

LoadedPart readPart(const std::filesystem::path& path, std::optional<LengthUnit> unit) {
    Tesk::PartFile file = Tesk::readPart(path);
    LoadedPart part{.format = Tesk::nameOf(file.format),
                    .form = std::move(file.form),
                    .unit = unit.value_or(lengthUnits().front()),
                    .mesh = triangleMeshOf(std::move(file.mesh)),
                    .warnings = std::move(file.warnings)};
    return part;
}

LoadedPart readAnyPart(const std::filesystem::path& path, std::optional<LengthUnit> unit) {
    if (extensionOf(path) == ".3mf") return readThreeMfPart(path, unit);
    if (Tesk::formatOf(path)) return readPart(path, unit);
    // A missing file or a folder is the plainer trouble.
    readFileBytes(path);
    const std::string extension = extensionOf(path);
    throw InputFailure(
        fmt::format("{} is not a known kind of mesh file; .stl, .obj, .ply, .off and "
                    ".3mf are",
                    extension.empty() ? "a name without extension" : extension));
}

}  // namespace

LoadedPart readMeshFile(const std::filesystem::path& path, std::optional<LengthUnit> unit) {
    try {
        LoadedPart part = readAnyPart(path, unit);
        scale(part.mesh, part.unit.millimetres);
        return part;
    } catch (const Tesk::PartFileError& error) {
        throw InputFailure(displayName(path) + ": " + error.place());
    } catch (const InputFailure& failure) {
        throw InputFailure(displayName(path) + ": " + failure.what());
    } catch (const std::bad_alloc&) {
        throw InputFailure(displayName(path) + ": there is not enough memory to read it");
    } catch (const std::length_error&) {
        throw InputFailure(displayName(path) + ": there is not enough memory to read it");
    }
}

}  // namespace App
