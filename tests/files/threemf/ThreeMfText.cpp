#include "threemf/ThreeMfText.h"

#include <algorithm>

#include "text/Message.h"

ZipFile relationshipsTo(const std::string& target) {
    return {.name = "_rels/.rels",
            .content = Tesk::files::message(
                "<Relationships "
                "xmlns=\"http://schemas.openxmlformats.org/package/2006/"
                "relationships\"><Relationship Target=\"/thumbnail.png\" Id=\"r0\" "
                "Type=\"http://x/thumbnail\"/><Relationship Target=\"",
                target,
                "\" Id=\"r1\" "
                "Type=\"http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel\"/></"
                "Relationships>")};
}

std::string mesh(double leg) {
    return Tesk::files::message(
        "<mesh><vertices><vertex x=\"0\" y=\"0\" z=\"0\"/><vertex x=\"", leg,
        "\" y=\"0\" z=\"0\"/><vertex x=\"0\" y=\"", leg, "\" z=\"0\"/><vertex x=\"0\" y=\"0\" z=\"",
        leg,
        "\"/></vertices><triangles><triangle v1=\"0\" v2=\"2\" v3=\"1\"/><triangle v1=\"0\" "
        "v2=\"1\" v3=\"3\"/><triangle v1=\"0\" v2=\"3\" v3=\"2\"/><triangle v1=\"1\" v2=\"2\" "
        "v3=\"3\"/></triangles></mesh>");
}

std::string object(int id, const std::string& content, const std::string& attributes) {
    return Tesk::files::message("<object id=\"", id, "\" ", attributes, ">", content, "</object>");
}

std::string components(const std::string& content) {
    return "<components>" + content + "</components>";
}

std::string component(int id, const std::string& attributes) {
    return Tesk::files::message("<component objectid=\"", id, "\" ", attributes, "/>");
}

std::string item(int id, const std::string& attributes) {
    return Tesk::files::message("<item objectid=\"", id, "\" ", attributes, "/>");
}

std::string movedBy(double x) {
    return Tesk::files::message("transform=\"1 0 0 0 1 0 0 0 1 ", x, " 0 0\"");
}

std::string in(const std::string& path) {
    return Tesk::files::message("p:path=\"", path, "\"");
}

ZipFile model(const std::string& name, const std::string& objects, const std::string& items,
              const std::string& attributes) {
    return {
        .name = name,
        .content = Tesk::files::message(
            "<model xmlns=\"http://schemas.microsoft.com/3dmanufacturing/core/2015/02\" ",
            attributes, "><resources>", objects, "</resources><build>", items, "</build></model>"),
        .method = 0};
}

Tesk::PartFile contentOf(std::vector<ZipFile> files, const std::string& root) {
    files.push_back(relationshipsTo("/" + root));
    Tesk::ReadOptions options;
    options.weldsVertices = false;
    return Tesk::readPart(makeZip(files), Tesk::PartFormat::kThreeMf, options);
}

float endOf(const Tesk::PartFile& content) {
    float end = -1e30f;
    for (const Tesk::PartPoint& p : content.mesh.positions) end = std::max(end, p.x);
    return end;
}

std::string complaint(const std::vector<ZipFile>& files, const std::string& root) {
    try {
        contentOf(files, root);
    } catch (const Tesk::PartFileError& error) {
        return error.what();
    }
    return {};
}
