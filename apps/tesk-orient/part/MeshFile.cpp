#include "part/MeshFile.h"

#include <fmt/format.h>

#include <cmath>
#include <new>

#include "Failure.h"
#include "part/PathText.h"

namespace App {

void refuseNonFinite(const TriangleMesh& mesh) {
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        const UPoint3<float>& p = mesh.positions[i];
        if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) continue;
        throw InputFailure(fmt::format(
            "vertex {} has a coordinate that is not finite in millimetres: ({}, {}, {})", i + 1,
            p.x, p.y, p.z));
    }
}

namespace {

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

LoadedPart readPart(const std::filesystem::path& path, std::optional<LengthUnit> unit,
                    unsigned threads) {
    Tesk::ReadOptions read;
    read.threads = threads;
    Tesk::PartFile file = Tesk::readPart(path, read);
    LoadedPart part;
    part.format = Tesk::nameOf(file.format);
    part.form = std::move(file.form);
    part.mesh = triangleMeshOf(std::move(file.mesh));
    part.warnings = std::move(file.warnings);
    part.unitFromFile = file.unit && !unit;
    part.unit = unitOf(file.unit, unit, part.warnings);
    return part;
}

}  // namespace

LengthUnit unitOf(const std::optional<std::string>& inFile, std::optional<LengthUnit> asked,
                  Warnings& warnings) {
    if (asked) return *asked;
    return inFile ? unitInFile(*inFile, warnings) : lengthUnits().front();
}

void readNamingErrors(const std::filesystem::path& path, const std::function<void()>& read) {
    try {
        read();
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

LoadedPart readMeshFile(const std::filesystem::path& path, std::optional<LengthUnit> unit,
                        unsigned threads) {
    LoadedPart part;
    readNamingErrors(path, [&] {
        part = readPart(path, unit, threads);
        scale(part.mesh, part.unit.millimetres);
    });
    return part;
}

}  // namespace App
