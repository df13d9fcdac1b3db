#include "MeshEncoding.h"

#include <fmt/format.h>

#include <bit>
#include <cstring>
#include <iterator>

#include "ZipWriter.h"

namespace App {

namespace {

static_assert(std::endian::native == std::endian::little, "binary formats are written as they lie");

template <class T>
void appendBytes(std::string& bytes, const T& value) {
    char raw[sizeof(T)];
    std::memcpy(raw, &value, sizeof(T));
    bytes.append(raw, sizeof(T));
}

void appendVector(std::string& bytes, float x, float y, float z) {
    appendBytes(bytes, x);
    appendBytes(bytes, y);
    appendBytes(bytes, z);
}

std::string encodeStl(const TriangleMesh& mesh) {
    std::string bytes = fmt::format("{:<80}", "binary STL, millimetres");
    bytes.reserve(84 + mesh.triangles.size() * 50);
    appendBytes(bytes, static_cast<std::uint32_t>(mesh.triangles.size()));
    for (const auto& [a, b, c] : mesh.triangles) {
        const UPoint3<float>& p0 = mesh.positions[static_cast<std::size_t>(a)];
        const UPoint3<float>& p1 = mesh.positions[static_cast<std::size_t>(b)];
        const UPoint3<float>& p2 = mesh.positions[static_cast<std::size_t>(c)];
        const UVector3<float> normal = ((p1 - p0) * (p2 - p0)).GetNormal();
        appendVector(bytes, normal.x, normal.y, normal.z);
        for (const UPoint3<float>& p : {p0, p1, p2}) appendVector(bytes, p.x, p.y, p.z);
        appendBytes(bytes, std::uint16_t{0});
    }
    return bytes;
}

std::string encodeObj(const TriangleMesh& mesh) {
    std::string text = "# millimetres\n";
    const auto out = std::back_inserter(text);
    for (const UPoint3<float>& p : mesh.positions)
        fmt::format_to(out, "v {} {} {}\n", p.x, p.y, p.z);
    for (const auto& [a, b, c] : mesh.triangles) {
        fmt::format_to(out, "f {} {} {}\n", a + 1, b + 1, c + 1);
    }
    return text;
}

std::string encodeOff(const TriangleMesh& mesh) {
    std::string text = fmt::format("OFF\n{} {} 0\n", mesh.positions.size(), mesh.triangles.size());
    const auto out = std::back_inserter(text);
    for (const UPoint3<float>& p : mesh.positions) fmt::format_to(out, "{} {} {}\n", p.x, p.y, p.z);
    for (const auto& [a, b, c] : mesh.triangles) fmt::format_to(out, "3 {} {} {}\n", a, b, c);
    return text;
}

std::string encodePly(const TriangleMesh& mesh) {
    std::string bytes = fmt::format(
        "ply\nformat binary_little_endian 1.0\ncomment millimetres\n"
        "element vertex {}\nproperty float x\nproperty float y\nproperty float z\n"
        "element face {}\nproperty list uchar int vertex_indices\nend_header\n",
        mesh.positions.size(), mesh.triangles.size());
    for (const UPoint3<float>& p : mesh.positions) appendVector(bytes, p.x, p.y, p.z);
    for (const auto& corners : mesh.triangles) {
        appendBytes(bytes, std::uint8_t{3});
        for (const std::int32_t corner : corners) appendBytes(bytes, corner);
    }
    return bytes;
}

std::string threeMfModel(const TriangleMesh& mesh) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<model unit=\"millimeter\" xml:lang=\"en-US\" "
        "xmlns=\"http://schemas.microsoft.com/3dmanufacturing/core/2015/02\">\n"
        "<resources><object id=\"1\" type=\"model\"><mesh>\n<vertices>\n";
    const auto out = std::back_inserter(text);
    for (const UPoint3<float>& p : mesh.positions) {
        fmt::format_to(out, "<vertex x=\"{}\" y=\"{}\" z=\"{}\"/>\n", p.x, p.y, p.z);
    }
    text += "</vertices>\n<triangles>\n";
    for (const auto& [a, b, c] : mesh.triangles) {
        fmt::format_to(out, "<triangle v1=\"{}\" v2=\"{}\" v3=\"{}\"/>\n", a, b, c);
    }
    text +=
        "</triangles>\n</mesh></object></resources>\n"
        "<build><item objectid=\"1\"/></build>\n</model>\n";
    return text;
}

std::string encodeThreeMf(const TriangleMesh& mesh) {
    return zipped(
        {{"[Content_Types].xml",
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
          "<Default Extension=\"rels\" "
          "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
          "<Default Extension=\"model\" "
          "ContentType=\"application/vnd.ms-package.3dmanufacturing-3dmodel+xml\"/></Types>\n"},
         {"_rels/.rels",
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
          "<Relationship Target=\"/3D/3dmodel.model\" Id=\"rel0\" "
          "Type=\"http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel\"/>"
          "</Relationships>\n"},
         {"3D/3dmodel.model", threeMfModel(mesh)}});
}

}  // namespace

Encoder encoderFor(std::string_view extension) {
    if (extension == ".stl") return encodeStl;
    if (extension == ".obj") return encodeObj;
    if (extension == ".ply") return encodePly;
    if (extension == ".off") return encodeOff;
    if (extension == ".3mf") return encodeThreeMf;
    return nullptr;
}

}  // namespace App
