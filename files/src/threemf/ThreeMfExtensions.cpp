#include "threemf/ThreeMfExtensions.h"

#include <algorithm>
#include <array>

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"
#include "text/TextScanner.h"

namespace Tesk::files {

namespace {

/// They say how parts look, which triangles belong together, or where in the package objects are.
constexpr std::array<std::string_view, 4> kHarmless = {
    "http://schemas.microsoft.com/3dmanufacturing/core/2015/02",
    "http://schemas.microsoft.com/3dmanufacturing/material/2015/02",
    kProductionSpace,
    "http://schemas.microsoft.com/3dmanufacturing/trianglesets/2021/07",
};

struct Extension {
    std::string_view start;  ///< of its namespace, without the date
    const char* holds;
};

constexpr std::array<Extension, 8> kShaping = {{
    {"http://schemas.microsoft.com/3dmanufacturing/slice/", "slices in place of meshes"},
    {"http://schemas.microsoft.com/3dmanufacturing/beamlattice/", "beam lattices"},
    {"http://schemas.microsoft.com/3dmanufacturing/securecontent/", "encrypted models"},
    {"http://schemas.3mf.io/3dmanufacturing/booleanoperations/", "boolean operations"},
    {"http://schemas.3mf.io/3dmanufacturing/displacement/", "displaced surfaces"},
    {"http://schemas.3mf.io/3dmanufacturing/volumetric/", "shapes given by functions"},
    {"http://schemas.3mf.io/3dmanufacturing/implicit/", "shapes given by functions"},
    {"http://schemas.microsoft.com/3dmanufacturing/production/alternatives/",
     "several versions of an object"},
}};

void refuseUnlessHarmless(std::string_view prefix, const XmlNamespaces& namespaces) {
    const auto space = namespaces.find(prefix);
    if (!space) {
        throw PartFileError(
            message("the model needs the 3MF extension with the prefix ", quoted(prefix),
                    ", but does not say which that is (no xmlns:", prefix.substr(0, 24), ")"));
    }
    if (std::find(kHarmless.begin(), kHarmless.end(), *space) != kHarmless.end()) return;
    for (const Extension& extension : kShaping) {
        if (!space->starts_with(extension.start)) continue;
        throw PartFileError(message("the model needs a 3MF extension that is not read: ",
                                    quotedName(*space), " (", extension.holds, ")"));
    }
    throw PartFileError(
        message("the model needs a 3MF extension that is not known: ", quotedName(*space)));
}

}  // namespace

void refuseUnknownExtensions(const XmlElement& model) {
    TextScanner prefixes(model.attribute("requiredextensions").value_or(std::string_view()));
    for (auto prefix = prefixes.next(); !prefix.empty(); prefix = prefixes.next()) {
        refuseUnlessHarmless(prefix, model.namespaces());
    }
}

}  // namespace Tesk::files
