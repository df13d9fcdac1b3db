#include "threemf/ThreeMfReader.h"

#include "threemf/ThreeMfAssembly.h"
#include "threemf/ThreeMfPackage.h"
#include "zip/ZipReader.h"

namespace Tesk::files {

namespace {

template <class Result>
Result readAs(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    ZipReader zip(bytes);
    Result result;
    const std::string root = rootModelPart(zip, result.warnings);
    ThreeMfAssembly(zip, options, progress).build(root, result);
    return result;
}

}  // namespace

PartFile readThreeMf(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    return readAs<PartFile>(bytes, options, progress);
}

Plate readThreeMfPlate(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    return readAs<Plate>(bytes, options, progress);
}

}  // namespace Tesk::files
