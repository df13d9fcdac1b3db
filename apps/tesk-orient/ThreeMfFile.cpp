#include "ThreeMfFile.h"

#include <tuple>
#include <utility>

#include "ThreeMfAssembly.h"
#include "ThreeMfPackage.h"
#include "ZipReader.h"

namespace App {

ThreeMfContent readThreeMf(std::string bytes) {
    ZipReader zip(std::move(bytes));
    ThreeMfContent content;
    ThreeMfAssembly assembly(zip);
    const std::string root = rootModelPart(zip, content.warnings);
    std::tie(content.mesh, content.items) = assembly.build(root, content.warnings);
    content.unit = assembly.part(root).unit;
    return content;
}

}  // namespace App
