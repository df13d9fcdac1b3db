#include "threemf/ThreeMfPackage.h"

#include <charconv>
#include <optional>

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"
#include "xml/XmlReader.h"

namespace Tesk::files {

namespace {

constexpr std::string_view kModelRelationship =
    "http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel";
constexpr const char* kRelationships = "_rels/.rels";
constexpr const char* kUsualModel = "3D/3dmodel.model";

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const char* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            decoded += static_cast<char>(byte);
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/%";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        if (kPlain.find(c) != kPlain.npos) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', kDigits[byte / 16], kDigits[byte % 16]};
    }
    return encoded;
}

std::optional<std::string> modelNamedByPackage(ZipReader& zip) {
    if (!zip.find(kRelationships)) return std::nullopt;
    std::optional<std::string> path;
    XmlReader xml(kRelationships, {[&](const XmlElement& element) {
                                       if (path || element.localName() != "Relationship") return;
                                       if (element.attribute("Type") != kModelRelationship) return;
                                       if (const auto target = element.attribute("Target"))
                                           path = *target;
                                   },
                                   [](const XmlName&) {}});
    zip.read(kRelationships, [&](std::string_view piece) { xml.feed(piece); });
    xml.finish();
    return path;
}

}  // namespace

std::string partNamed(const ZipReader& zip, std::string_view path) {
    if (path.starts_with("./")) path.remove_prefix(2);
    for (const std::string& name :
         {std::string(path), percentDecoded(path), percentEncoded(path)}) {
        if (const auto found = zip.find(name)) return *found;
    }
    return std::string(path);
}

std::string rootModelPart(ZipReader& zip, std::vector<PartWarning>& warnings) {
    if (const auto path = modelNamedByPackage(zip)) {
        const std::string part = partNamed(zip, *path);
        if (zip.find(part)) return part;
        throw PartFileError(message(kRelationships, " names ", quotedName(*path),
                                    " as the model, which is not in the archive"));
    }
    if (!zip.find(kUsualModel))
        throw PartFileError("is not a 3MF file: the archive contains no 3D model");
    warnings.push_back(
        {"no-relationship",
         message("the package does not say which file is its model; using ", kUsualModel)});
    return partNamed(zip, kUsualModel);
}

}  // namespace Tesk::files
