#include "part/MeshFile.h"

#include <fmt/format.h>

#include <cmath>
#include <new>

#include "Failure.h"
#include "part/FileBytes.h"

namespace App {

namespace {

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

LoadedPart readPart(const std::filesystem::path& path, std::optional<LengthUnit> unit) {
    Tesk::PartFile file = Tesk::readPart(path);
    LoadedPart part{.format = Tesk::nameOf(file.format),
                    .form = std::move(file.form),
                    .unit = unit.value_or(lengthUnits().front()),
                    .unitFromFile = file.unit && !unit,
                    .mesh = triangleMeshOf(std::move(file.mesh)),
                    .warnings = std::move(file.warnings)};
    if (part.unitFromFile) part.unit = unitInFile(*file.unit, part.warnings);
    return part;
}

}  // namespace

LoadedPart readMeshFile(const std::filesystem::path& path, std::optional<LengthUnit> unit) {
    try {
        LoadedPart part = readPart(path, unit);
        scale(part.mesh, part.unit.millimetres);
        return part;
    } catch (const Tesk::PartFileError& error) {
        throw InputFailure(displayName(path) + ": " + error.place());
    } catch (const InputFailure& failure) {
        throw InputFailure(displayName(path) + ": " + failure.what());
    } catch (const std::bad_alloc&) {
        throw OutOfMemory(displayName(path) + ": not enough memory to read it");
    } catch (const std::length_error&) {
        throw OutOfMemory(displayName(path) + ": not enough memory to read it");
    }
}

}  // namespace App
