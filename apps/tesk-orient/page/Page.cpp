#include "page/Page.h"

#include <fmt/format.h>

#include <algorithm>

#include "Version.h"
#include "page/Base64.h"
#include "page/PageAssets.h"
#include "page/PageMesh.h"

namespace App {

namespace {

constexpr std::size_t kTriangles = 200'000;     ///< of a page
constexpr std::size_t kLeastTriangles = 2'000;  ///< of a part, however many there are

/// A part's share of the page's triangles, as large as its share of all.
std::size_t limitFor(const PageObject& object, std::size_t all) {
    const std::size_t own = object.mesh->triangles.size();
    if (all <= kTriangles) return own;
    const double share = static_cast<double>(own) / static_cast<double>(all);
    return std::max(kLeastTriangles, static_cast<std::size_t>(share * kTriangles));
}

Json objectValue(const PageObject& object, std::size_t all) {
    Json value = {{"name", object.name},
                  {"partNumber", object.partNumber},
                  {"copies", object.copies},
                  {"reason", object.reason}};
    for (const char* member :
         {"input", "chosenRank", "noneStands", "passedOver", "asItLies", "poses"}) {
        if (object.result.contains(member)) value[member] = object.result[member];
    }
    // Pages are sent to others, and where the file lay is not theirs to know.
    if (value.contains("input")) value["input"].erase("file");
    value["mesh"] = pageMeshOf(*object.mesh, limitFor(object, all));
    return value;
}

Json dataOf(const PageInput& input) {
    std::size_t all = 0;
    for (const PageObject& object : input.objects) all += object.mesh->triangles.size();
    Json objects = Json::array();
    for (const PageObject& object : input.objects) objects.push_back(objectValue(object, all));
    return {{"schema", "tesk-orient/page/1"},
            {"title", input.title},
            {"program", {{"name", "tesk-orient"}, {"version", TESK_VERSION}}},
            {"three", kPageAssets.threeRevision},
            {"units", {{"length", "mm"}, {"mass", "g"}}},
            {"filament", {{"material", "PLA"}, {"diameterMm", 1.75}, {"densityGPerCm3", 1.24}}},
            {"settings", input.settings},
            {"warnings", input.warnings},
            {"objects", objects}};
}

/// JSON that no name in it can end the element of: of HTML's signs, only '<' can.
std::string embeddable(const Json& data) {
    const std::string plain = data.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string text;
    text.reserve(plain.size());
    for (const char c : plain) {
        if (c == '<') {
            text += "\\u003c";
        } else {
            text += c;
        }
    }
    return text;
}

std::string escaped(std::string_view plain) {
    std::string text;
    for (const char c : plain) {
        switch (c) {
            case '&':
                text += "&amp;";
                break;
            case '<':
                text += "&lt;";
                break;
            case '>':
                text += "&gt;";
                break;
            case '"':
                text += "&quot;";
                break;
            default:
                text += c;
        }
    }
    return text;
}

/// 'sha256-…' of an asset, as a policy names it.
std::string sourceOf(const PageAsset& asset) {
    std::vector<unsigned char> digest;
    const auto value = [](char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; };
    for (std::size_t i = 0; i + 1 < asset.sha256.size(); i += 2) {
        digest.push_back(
            static_cast<unsigned char>(value(asset.sha256[i]) << 4 | value(asset.sha256[i + 1])));
    }
    return "'sha256-" + base64Of(digest) + "'";
}

std::string policy() {
    return fmt::format(
        "default-src 'none'; script-src {} {}; style-src {}; base-uri 'none'; form-action 'none'",
        sourceOf(kPageAssets.three), sourceOf(kPageAssets.script), sourceOf(kPageAssets.style));
}

/// What stands for a mark of the template.
std::string replacementOf(std::string_view mark, const PageInput& input) {
    if (mark == "TITLE") {
        // Through JSON, which replaces bytes that are no UTF-8.
        const std::string name =
            Json(input.title).dump(-1, ' ', false, Json::error_handler_t::replace);
        return escaped(Json::parse(name).get<std::string>());
    }
    if (mark == "POLICY") return policy();
    if (mark == "STYLE") return std::string(kPageAssets.style.text);
    if (mark == "THREE") return std::string(kPageAssets.three.text);
    if (mark == "LICENCE") return escaped(kPageAssets.licence.text);
    if (mark == "DATA") return embeddable(dataOf(input));
    if (mark == "SCRIPT") return std::string(kPageAssets.script.text);
    return fmt::format("@{}@", mark);
}

}  // namespace

std::string pageOf(const PageInput& input) {
    std::string page;
    std::string_view rest = kPageAssets.pageTemplate.text;
    for (std::size_t at = rest.find('@'); at != rest.npos; at = rest.find('@')) {
        page += rest.substr(0, at);
        const std::size_t end = rest.find('@', at + 1);
        page += replacementOf(rest.substr(at + 1, end - at - 1), input);
        rest = rest.substr(end + 1);
    }
    page += rest;
    return page;
}

}  // namespace App
