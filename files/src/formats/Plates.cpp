#include "TeskPartFiles/Plates.h"

#include <utility>

#include "formats/Formats.h"
#include "formats/NamedFile.h"
#include "mesh/Welding.h"

namespace Tesk {

namespace fs = std::filesystem;

namespace {

constexpr int kPercentRead = 60;

Plate plateOf(PartFile part) {
    Plate plate;
    plate.form = std::move(part.form);
    plate.unit = std::move(part.unit);
    plate.warnings = std::move(part.warnings);
    plate.objects.emplace_back().mesh = std::move(part.mesh);
    plate.items.emplace_back();
    plate.itemCount = 1;
    return plate;
}

void weldObjects(Plate& plate, const ReadOptions& options, files::Progress& progress) {
    const std::size_t count = plate.objects.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto percentAt = [&](std::size_t done) {
            return kPercentRead + static_cast<int>((100 - kPercentRead) * done / count);
        };
        progress.setRange(percentAt(i), percentAt(i + 1));
        files::weldMesh(plate.objects[i].mesh, options.threads, progress);
    }
}

}  // namespace

Plate readPlate(std::string_view bytes, PartFormat format, const ReadOptions& options) {
    const files::Format& row = files::rowOf(format);
    Plate plate;
    if (row.readPlate == nullptr) {
        plate = plateOf(readPart(bytes, format, options));
    } else {
        files::refuseEmpty(bytes);
        files::Progress progress(options.progress);
        plate = row.readPlate(bytes, options, progress);
        if (options.weldsVertices) weldObjects(plate, options, progress);
        progress.report(1, 1, 0, 100);
    }
    plate.format = format;
    return plate;
}

Plate readPlate(const fs::path& path, const ReadOptions& options) {
    return files::withFile(path, [&](std::string_view bytes, PartFormat format) {
        return readPlate(bytes, format, options);
    });
}

}  // namespace Tesk
