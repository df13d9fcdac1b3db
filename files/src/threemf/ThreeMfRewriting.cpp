#include <algorithm>
#include <cmath>

#include "TeskPartFiles/Plates.h"
#include "formats/NamedFile.h"
#include "text/Message.h"
#include "threemf/ThreeMfItems.h"
#include "threemf/ThreeMfPackage.h"
#include "zip/ZipPatch.h"
#include "zip/ZipReader.h"

namespace Tesk {

namespace {

using Transforms = std::span<const std::optional<PartTransform>>;

void checkTransforms(Transforms transforms, std::size_t items) {
    if (transforms.size() != items) {
        throw PartFileError(files::message("has ", files::counted(items, "item", "items"),
                                           ", but transforms for ", transforms.size(),
                                           " were given"));
    }
    for (const auto& transform : transforms) {
        const auto isFinite = [](double cell) { return std::isfinite(cell); };
        if (transform && !std::all_of(transform->m.begin(), transform->m.end(), isFinite)) {
            throw PartFileError("a transform to be written is not finite");
        }
    }
}

std::string modelWithTransforms(std::string_view model, const std::string& name,
                                Transforms transforms) {
    const std::vector<files::XmlTag> tags = files::itemTags(model, name);
    checkTransforms(transforms, tags.size());
    std::string changed;
    changed.reserve(model.size() + tags.size() * 100);
    std::size_t taken = 0;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (!transforms[i]) continue;
        changed += model.substr(taken, tags[i].offset - taken);
        changed +=
            files::tagWithTransform(model.substr(tags[i].offset, tags[i].size), *transforms[i]);
        taken = tags[i].offset + tags[i].size;
    }
    return changed += model.substr(taken);
}

/// Nobody should lose a part to an archive so odd that two programs see different files in it.
void checkResult(std::string_view package, const files::ZipReader& before, const std::string& root,
                 std::string_view model) {
    files::ZipReader after(package);
    std::string_view rest = model;
    bool isSame = after.names() == before.names();
    if (isSame) {
        after.read(root, [&](std::string_view piece) {
            isSame = isSame && rest.starts_with(piece);
            if (isSame) rest.remove_prefix(piece.size());
        });
    }
    if (!isSame || !rest.empty()) {
        throw PartFileError("the archive is too unusual to be changed without loss");
    }
}

}  // namespace

std::string withTransforms(std::string_view package, Transforms transforms) {
    const bool isUnchanged = std::none_of(transforms.begin(), transforms.end(),
                                          [](const auto& transform) { return !!transform; });
    if (isUnchanged) return std::string(package);
    files::refuseEmpty(package);
    files::ZipReader zip(package);
    std::vector<PartWarning> ignored;
    const std::string root = files::rootModelPart(zip, ignored);
    const std::string model = modelWithTransforms(zip.contents(root), root, transforms);
    std::string changed = files::withContent(package, zip.indexOf(root).value(), model);
    checkResult(changed, zip, root, model);
    return changed;
}

}  // namespace Tesk
