#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Reads and writes the mesh files of 3D printing.
///
///     Tesk::PartFile part = Tesk::readPart("bracket.stl");
///     for (const Tesk::PartWarning& warning : part.warnings) show(warning.text);
///     use(part.mesh.positions, part.mesh.triangles);
///     Tesk::writePart("bracket.ply", part.mesh);
///
/// Every function may be called from any number of threads at once. Nothing is printed, nothing is
/// kept between calls, and results own all their memory. The same bytes give the same mesh on every
/// platform and for every number of threads.
namespace Tesk {

/// The formats, each with the extension of its file names.
enum class PartFormat {
    kStl,      ///< .stl: binary and text
    kObj,      ///< .obj: positions and faces; everything else in the file is ignored
    kPly,      ///< .ply: text and both binary forms; faces and triangle strips
    kOff,      ///< .off: text, with or without normals, colours and texture coordinates
    kThreeMf,  ///< .3mf: core specification, and separate model parts (production extension)
};

/// "STL", "OBJ", "PLY", "OFF" or "3MF".
const char* nameOf(PartFormat format);

/// Of the files of a format, in lower case with its dot: ".stl".
std::string_view extensionOf(PartFormat format);

/// The format of a file name, by its extension in upper or lower case.
std::optional<PartFormat> formatOf(const std::filesystem::path& path);

/// The format of a file, recognised by its first bytes; nothing if they fit no format.
std::optional<PartFormat> formatOf(std::string_view bytes);

struct PartPoint {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;

    bool operator==(const PartPoint&) const = default;
};

/// Positions, and three indices into them per triangle, counter-clockwise seen from outside.
struct PartMesh {
    std::vector<PartPoint> positions;
    std::vector<std::array<std::int32_t, 3>> triangles;

    bool operator==(const PartMesh&) const = default;
};

/// Something that a reader ignored or corrected, and that the user should know.
struct PartWarning {
    std::string code;        ///< short and fixed, for programs: "extra-bytes"
    std::string text;        ///< one sentence for people
    std::int64_t count = 0;  ///< how many, if that makes sense; otherwise 0
};

/// What a file holds.
struct PartFile {
    PartFormat format = PartFormat::kStl;
    std::string form;  ///< "binary" or "ASCII"; empty if the format has one form only
    PartMesh mesh;     ///< at least one triangle; finite coordinates, as the file gives them
    /// The unit of the coordinates as a 3MF states it: "micron", "millimeter", "centimeter",
    /// "inch", "foot", "meter", or any other name, which is not valid 3MF. Nothing for the other
    /// formats. LengthUnits.h has their sizes.
    std::optional<std::string> unit;
    std::vector<std::string> objectNames;  ///< solids of an STL, objects of an OBJ; in file order
    std::vector<PartWarning> warnings;
};

/// A file that cannot be read or written. what() is one line, such as
/// "part.obj: line 23: a face refers to vertex 12, but the file has 8".
class PartFileError : public std::runtime_error {
 public:
    /// @param trouble  what is wrong, without file name and line
    /// @param line     the line of a text, counted from 1; 0 if there is none
    /// @param offset   the place in a binary file, in bytes from its start
    /// @param file     the file's name in UTF-8; empty for bytes in memory
    explicit PartFileError(std::string trouble, std::size_t line = 0,
                           std::optional<std::uint64_t> offset = std::nullopt,
                           std::string file = {});

    const std::string& trouble() const { return m_trouble; }
    std::size_t line() const { return m_line; }
    std::optional<std::uint64_t> offset() const { return m_offset; }

    /// The file's name in UTF-8; empty for bytes in memory.
    const std::string& file() const { return m_file; }

    /// what() without the file's name.
    std::string place() const;

 private:
    std::string m_trouble;
    std::size_t m_line;
    std::optional<std::uint64_t> m_offset;
    std::string m_file;
};

struct ReadOptions {
    /// Corners at equal positions become one vertex; see weld(). Without it every format's own
    /// vertices stay: an STL's triangles then have three of their own each.
    bool weldsVertices = true;

    /// A file with more triangles is refused before memory is taken for them.
    std::size_t maxTriangles = 700'000'000;

    /// How many threads may work; 0 for as many as the machine has.
    unsigned threads = 0;

    /// Called on the calling thread with ascending percentages. What it throws ends the reading and
    /// reaches the caller.
    std::function<void(int percent)> progress;
};

/// Reads a mesh file; the format is that of its extension.
///
/// Text may begin with a byte order mark, end its lines in LF, CR LF or CR, and hold numbers in any
/// form of C's strtod without hexadecimal ones; each becomes the float nearest to it. Polygons are
/// cut into triangles (n − 2 of n corners, each edge of the polygon kept), whether convex or not;
/// if one crosses itself, the cut is one of many. Faces of one or two corners are left out.
///
/// All build items of a 3MF come as one mesh in the root model's unit, with a warning if there are
/// several. Transforms are applied; a mirrored object's triangles are reversed so that they
/// still face outward. Meshes of type "support" or "other" are left out with a warning; materials
/// and all else that does not change shapes is ignored. A required extension that does change them
/// is an error, and so are objects that contain themselves or nest more than 100 deep, components
/// that expand to more than 50 million triangles, and an archive that unpacks to more than 200
/// times its size.
///
/// Throws PartFileError if the file cannot be opened, is of another format than its name says, is
/// cut short, or refers to a vertex that it does not have; if a coordinate is missing, not a number
/// or not finite; and if there is no triangle at all. Memory is allocated for what the file holds,
/// not for what its header declares: at most about 60 bytes per triangle of a binary STL. The file
/// is mapped into memory: if another process shortens it meanwhile, this one may be ended by the
/// system, as with every mapped file.
PartFile readPart(const std::filesystem::path& path, const ReadOptions& options = {});

/// The same for bytes in memory.
PartFile readPart(std::string_view bytes, PartFormat format, const ReadOptions& options = {});

/// Makes one vertex of all corners whose coordinates are equal as numbers (so that -0 equals +0,
/// and becomes it). Vertices are numbered in the order in which the triangles first name them,
/// those that none names are dropped, and triangles keep their order. Coordinates must be finite
/// and indices in range. Linear; `threads` as in ReadOptions.
PartMesh weld(PartMesh mesh, unsigned threads = 0);

/// The bytes of a mesh file: STL and PLY binary, OBJ and OFF text, 3MF compressed, in millimetres.
/// Every float reads back to the same bits. The same mesh has the same bytes. Throws PartFileError
/// if a 3MF cannot be packed.
std::string encodePart(const PartMesh& mesh, PartFormat format);

/// Writes a mesh file; the format is that of the extension. The file appears under its name only
/// when it is complete, and replaces what was there. Throws PartFileError.
void writePart(const std::filesystem::path& path, const PartMesh& mesh);

}  // namespace Tesk
