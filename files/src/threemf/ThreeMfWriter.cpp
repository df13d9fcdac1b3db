#include "threemf/ThreeMfWriter.h"

#include "text/MeshText.h"
#include "text/Message.h"
#include "zip/ZipWriter.h"

namespace Tesk::files {

namespace {

void appendVertex(std::string& text, const PartPoint& p) {
    text += "<vertex x=\"";
    appendFloat(text, p.x);
    text += "\" y=\"";
    appendFloat(text, p.y);
    text += "\" z=\"";
    appendFloat(text, p.z);
    text += "\"/>\n";
}

void appendTriangle(std::string& text, const std::array<std::int32_t, 3>& corners) {
    constexpr const char* kBefore[] = {"<triangle v1=\"", "\" v2=\"", "\" v3=\""};
    for (std::size_t k = 0; k < 3; ++k) {
        text += kBefore[k];
        appendText(text, corners[k]);
    }
    text += "\"/>\n";
}

std::string modelOf(const PartMesh& mesh) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<model unit=\"millimeter\" xml:lang=\"en-US\" "
        "xmlns=\"http://schemas.microsoft.com/3dmanufacturing/core/2015/02\">\n"
        "<resources><object id=\"1\" type=\"model\"><mesh>\n<vertices>\n";
    for (const PartPoint& p : mesh.positions) appendVertex(text, p);
    text += "</vertices>\n<triangles>\n";
    for (const auto& corners : mesh.triangles) appendTriangle(text, corners);
    text +=
        "</triangles>\n</mesh></object></resources>\n"
        "<build><item objectid=\"1\"/></build>\n</model>\n";
    return text;
}

}  // namespace

std::string encodeThreeMf(const PartMesh& mesh) {
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
         {"3D/3dmodel.model", modelOf(mesh)}});
}

}  // namespace Tesk::files
