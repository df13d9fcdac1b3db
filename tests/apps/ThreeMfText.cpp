#include "ThreeMfText.h"

#include <fmt/format.h>

#include <algorithm>

#include "Failure.h"

ZipFile relationshipsTo(const std::string& target) {
    return {.name = "_rels/.rels",
            .content = fmt::format(
                "<Relationships "
                "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                "<Relationship Target=\"/thumbnail.png\" Id=\"r0\" Type=\"http://x/thumbnail\"/>"
                "<Relationship Target=\"{}\" Id=\"r1\" "
                "Type=\"http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel\"/>"
                "</Relationships>",
                target)};
}

std::string mesh(double leg) {
    return fmt::format(
        "<mesh><vertices><vertex x=\"0\" y=\"0\" z=\"0\"/><vertex x=\"{0}\" y=\"0\" z=\"0\"/>"
        "<vertex x=\"0\" y=\"{0}\" z=\"0\"/><vertex x=\"0\" y=\"0\" z=\"{0}\"/></vertices>"
        "<triangles><triangle v1=\"0\" v2=\"2\" v3=\"1\"/><triangle v1=\"0\" v2=\"1\" v3=\"3\"/>"
        "<triangle v1=\"0\" v2=\"3\" v3=\"2\"/><triangle v1=\"1\" v2=\"2\" v3=\"3\"/></triangles>"
        "</mesh>",
        leg);
}

std::string object(int id, const std::string& content, const std::string& attributes) {
    return fmt::format("<object id=\"{}\" {}>{}</object>", id, attributes, content);
}

std::string components(const std::string& content) {
    return "<components>" + content + "</components>";
}

std::string component(int id, const std::string& attributes) {
    return fmt::format("<component objectid=\"{}\" {}/>", id, attributes);
}

std::string item(int id, const std::string& attributes) {
    return fmt::format("<item objectid=\"{}\" {}/>", id, attributes);
}

std::string movedBy(double x) {
    return fmt::format("transform=\"1 0 0 0 1 0 0 0 1 {} 0 0\"", x);
}

std::string in(const std::string& path) {
    return fmt::format("p:path=\"{}\"", path);
}

ZipFile model(const std::string& name, const std::string& objects, const std::string& items,
              const std::string& attributes) {
    return {.name = name,
            .content = fmt::format(
                "<model xmlns=\"http://schemas.microsoft.com/3dmanufacturing/core/2015/02\" {}>"
                "<resources>{}</resources><build>{}</build></model>",
                attributes, objects, items),
            .method = 0};
}

App::ThreeMfContent contentOf(std::vector<ZipFile> files, const std::string& root) {
    files.push_back(relationshipsTo("/" + root));
    return App::readThreeMf(makeZip(files));
}

float endOf(const App::ThreeMfContent& content) {
    float end = -1e30f;
    for (const UPoint3<float>& p : content.mesh.positions) end = std::max(end, p.x);
    return end;
}

std::string complaint(const std::vector<ZipFile>& files, const std::string& root) {
    try {
        contentOf(files, root);
    } catch (const App::InputFailure& failure) {
        return failure.what();
    }
    return {};
}

std::vector<std::string> codesOf(const App::ThreeMfContent& content) {
    std::vector<std::string> codes;
    for (const App::Warning& warning : content.warnings) codes.push_back(warning.code);
    return codes;
}
