#include "plate/LoadedPlate.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "Failure.h"
#include "part/MeshFile.h"
#include "part/PathText.h"
#include "plate/Bodies.h"

namespace App {

namespace {

/// Empty where the file cannot be read.
std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Tesk::ReadOptions readOptionsOf(const CommonOptions& options) {
    Tesk::ReadOptions read;
    read.threads = static_cast<unsigned>(options.threads);
    return read;
}

/// Every body as an object with one item that leaves it where it is.
void split(Tesk::Plate& plate) {
    std::vector<Tesk::PartMesh> bodies = bodiesOf(plate.objects.front().mesh);
    plate.objects.clear();
    plate.items.clear();
    for (Tesk::PartMesh& body : bodies) {
        const std::size_t index = plate.objects.size();
        Tesk::PlateObject object;
        object.id = static_cast<std::uint32_t>(index + 1);
        object.mesh = std::move(body);
        plate.objects.push_back(std::move(object));
        Tesk::PlateItem item;
        item.object = item.place = index;
        plate.items.push_back(item);
    }
    plate.itemCount = plate.items.size();
}

bool isCalled(const Tesk::PlateObject& object, const std::string& name) {
    return object.name == name || std::to_string(object.id) == name;
}

std::string listOf(const LoadedPlate& plate) {
    constexpr std::size_t kMostListed = 20;
    const auto& objects = plate.plate.objects;
    std::string text;
    for (std::size_t i = 0; i < std::min(objects.size(), kMostListed); ++i) {
        if (i > 0) text += ", ";
        text += std::to_string(objects[i].id);
        if (!objects[i].name.empty()) text += fmt::format(" \"{}\"", objects[i].name);
    }
    if (objects.size() <= kMostListed) return text;
    return fmt::format("{} and {} more", text, objects.size() - kMostListed);
}

void choose(LoadedPlate& plate, const CommonOptions& options) {
    const auto& objects = plate.plate.objects;
    plate.isTaken.assign(objects.size(), options.objects.empty() ? 1 : 0);
    for (const std::string& name : options.objects) {
        bool isFound = false;
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (!isCalled(objects[i], name)) continue;
            plate.isTaken[i] = 1;
            isFound = true;
        }
        if (isFound) continue;
        throw Failure(ExitCode::kUsage,
                      fmt::format("--object {}: {} has no such object; it has {}", name,
                                  displayName(options.part), listOf(plate)));
    }
}

}  // namespace

LoadedPlate loadPlate(const CommonOptions& options, bool keepsPackage) {
    LoadedPlate loaded;
    readNamingErrors(options.part, [&] {
        const bool isThreeMf = Tesk::formatOf(options.part) == Tesk::PartFormat::kThreeMf;
        if (keepsPackage && isThreeMf) loaded.package = bytesOf(options.part);
        loaded.plate = loaded.package.empty()
                           ? Tesk::readPlate(options.part, readOptionsOf(options))
                           : Tesk::readPlate(loaded.package, Tesk::PartFormat::kThreeMf,
                                             readOptionsOf(options));
        loaded.isSplit = !isThreeMf;
        if (loaded.isSplit) split(loaded.plate);
        loaded.warnings = std::exchange(loaded.plate.warnings, {});
        loaded.unitFromFile = loaded.plate.unit && !options.unit;
        loaded.unit = unitOf(loaded.plate.unit, options.unit, loaded.warnings);
    });
    choose(loaded, options);
    return loaded;
}

std::size_t takenObjects(const LoadedPlate& plate) {
    return static_cast<std::size_t>(std::count(plate.isTaken.begin(), plate.isTaken.end(), 1));
}

std::string nameOf(const LoadedPlate& plate, std::size_t object) {
    const Tesk::PlateObject& known = plate.plate.objects[object];
    if (!known.name.empty()) return fmt::format("\"{}\"", known.name);
    return fmt::format("{} {}", plate.isSplit ? "body" : "object", known.id);
}

std::string nameOfItem(const LoadedPlate& plate, std::size_t item) {
    const auto& items = plate.plate.items;
    const std::size_t object = items[item].object;
    const auto count = std::count_if(items.begin(), items.end(),
                                     [&](const auto& other) { return other.object == object; });
    const std::string name = nameOf(plate, object);
    return count == 1 ? name : fmt::format("{} (item {})", name, items[item].place + 1);
}

}  // namespace App
