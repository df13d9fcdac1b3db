#include "mesh/Welding.h"

#include <algorithm>
#include <vector>

#include "text/Message.h"

namespace Tesk::files {

PartFileError notFinite(std::size_t point) {
    return PartFileError(message("vertex ", point + 1, " has a coordinate that is not finite"));
}

void weldMesh(PartMesh& mesh, unsigned threads, Progress& progress) {
    std::vector<std::uint32_t> slots(mesh.positions.size());
    const auto load = [&](std::size_t i) { return mesh.positions[i]; };
    TableFiller filler(mesh.positions.size(), load, slots.data(), progress);
    TableFill fill = filler.run(mesh.positions.size(), threads);
    if (fill.firstBad != SIZE_MAX) throw notFinite(fill.firstBad);
    mesh.positions = {};
    numberCorners(
        mesh, fill, [&](std::int32_t corner) { return slots[static_cast<std::size_t>(corner)]; },
        progress);
}

}  // namespace Tesk::files
