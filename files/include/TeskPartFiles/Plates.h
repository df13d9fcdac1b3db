#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TeskPartFiles/PartFiles.h"

/// Reads a 3MF as its separate objects, and moves its items without touching anything else in it.
///
///     Tesk::Plate plate = Tesk::readPlate("plate.3mf");
///     std::vector<std::optional<Tesk::PartTransform>> transforms(plate.itemCount);
///     for (const Tesk::PlateItem& item : plate.items) {
///         transforms[item.place] = moved(plate.objects[item.object].mesh, item.transform);
///     }
///     std::string changed = Tesk::withTransforms(bytesOf("plate.3mf"), transforms);
///
/// The functions behave as those of PartFiles.h do: any number of threads may call them at once,
/// and the same bytes give the same result on every platform.
namespace Tesk {

/// An affine map of 3MF: the first three columns of a 4×4 matrix for row vectors, row by row. A
/// point p goes to p·M; the last three numbers move it.
struct PartTransform {
    std::array<double, 12> m = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

    bool operator==(const PartTransform&) const = default;
};

/// An object that at least one item builds.
struct PlateObject {
    std::uint32_t id = 0;    ///< in its model part; 0 for formats other than 3MF
    std::string modelPart;   ///< the file of the package that holds it; empty for other formats
    std::string name;        ///< may be empty; in UTF-8
    std::string partNumber;  ///< may be empty
    /// At least one triangle, in the object's own frame and the unit of the plate. All components
    /// are in it, each where its transform puts it; a mirrored one's triangles are reversed.
    PartMesh mesh;
};

/// A use of an object.
struct PlateItem {
    std::size_t object = 0;   ///< index into Plate::objects
    PartTransform transform;  ///< from the object's frame to the plate's; lengths in Plate::unit
    std::string partNumber;   ///< may be empty
    bool isPrintable = true;  ///< false if a slicer has marked it: printable="0"
    std::size_t place = 0;    ///< among all items of the file, from 0
};

/// What a file holds, object by object.
struct Plate {
    PartFormat format = PartFormat::kStl;
    std::string form;                  ///< as in PartFile
    std::optional<std::string> unit;   ///< of meshes and transforms; as in PartFile
    std::vector<PlateObject> objects;  ///< each once, in the order in which items first use them
    /// In file order, at least one. Items that build nothing, such as those of supports, are left
    /// out, so that an item's index may be less than its place.
    std::vector<PlateItem> items;
    std::size_t itemCount = 0;  ///< items of the file, those that build nothing included
    std::vector<PartWarning> warnings;
};

/// Reads a mesh file object by object; the format is that of its extension. A file of any format
/// other than 3MF is one object without a name, and one item that leaves it where it is.
///
/// Everything said about readPart() holds here, except that items stay apart: the limit of 50
/// million triangles (or ReadOptions::maxTriangles) applies to all objects together, each counted
/// once. If the options ask for it, vertices are merged within each object.
Plate readPlate(const std::filesystem::path& path, const ReadOptions& options = {});

/// The same for bytes in memory.
Plate readPlate(std::string_view bytes, PartFormat format, const ReadOptions& options = {});

/// The bytes of a 3MF package with other transforms for some of its items. `transforms[k]` is for
/// the item whose place is k; if it has no value, that item stays as it is, character by character.
/// There must be as many as Plate::itemCount.
///
/// In the root model part, only the values of `transform` attributes differ; an item that has none
/// gets one right after its element's name. Numbers have the fewest digits that read back to the
/// same double. Every other byte of the package stays: compressed content, names, order, times,
/// extra fields, comments. The root model part keeps its time and its way of compression. If no
/// transform has a value, the result is the package itself.
///
/// Throws PartFileError if the archive or its root model part cannot be read, if that part is in
/// UTF-16, if a transform is not finite or their number is wrong, and if the archive would outgrow
/// its form (4 GiB without ZIP64).
std::string withTransforms(std::string_view package,
                           std::span<const std::optional<PartTransform>> transforms);

}  // namespace Tesk
