#include "part/MeshEncoding.h"

#include <fmt/format.h>

#include <iterator>

#include "ZipWriter.h"

namespace App {

namespace {

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

template <Tesk::PartFormat Format>
std::string encode(const TriangleMesh& mesh) {
    return Tesk::encodePart(partMeshOf(mesh), Format);
}

}  // namespace

Encoder encoderFor(std::string_view extension) {
    if (extension == ".stl") return encode<Tesk::PartFormat::kStl>;
    if (extension == ".obj") return encode<Tesk::PartFormat::kObj>;
    if (extension == ".ply") return encode<Tesk::PartFormat::kPly>;
    if (extension == ".off") return encode<Tesk::PartFormat::kOff>;
    if (extension == ".3mf") return encodeThreeMf;
    return nullptr;
}

}  // namespace App
