#include "threemf/ThreeMfReader.h"

#include "threemf/ThreeMfAssembly.h"
#include "threemf/ThreeMfPackage.h"
#include "zip/ZipReader.h"

namespace Tesk::files {

PartFile readThreeMf(std::string_view bytes, const ReadOptions& options, Progress& progress) {
    ZipReader zip(bytes);
    PartFile file;
    const std::string root = rootModelPart(zip, file.warnings);
    ThreeMfAssembly(zip, options, progress).build(root, file);
    return file;
}

}  // namespace Tesk::files
