#include "plate/PlateChecks.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "plate/Footprints.h"

namespace App {

namespace {

using Box = UBox3<double>;

/// Less than this is rounding, mm.
constexpr double kLeast = 0.001;

constexpr std::size_t kMostPairs = 20;

/// The items' boxes and, where somebody asks for them, footprints.
class Outlines {
 public:
    Outlines(const LoadedPlate& plate, const NewPlaces& places)
        : m_plate(plate), m_places(places), m_footprints(places.size()) {
        for (std::size_t i = 0; i < places.size(); ++i) {
            m_boxes.push_back(boxOf(meshOf(i), places[i].toPlate));
        }
    }

    const Box& box(std::size_t item) const { return m_boxes[item]; }

    const Footprint& footprint(std::size_t item) {
        std::optional<Footprint>& known = m_footprints[item];
        if (!known) known = footprintOf(meshOf(item), m_places[item].toPlate);
        return *known;
    }

 private:
    const Tesk::PartMesh& meshOf(std::size_t item) const {
        return m_plate.plate.objects[m_plate.plate.items[item].object].mesh;
    }

    const LoadedPlate& m_plate;
    const NewPlaces& m_places;
    std::vector<Box> m_boxes;
    std::vector<std::optional<Footprint>> m_footprints;
};

bool overlap(double lowA, double highA, double lowB, double highB) {
    return highA - lowB > kLeast && highB - lowA > kLeast;
}

bool doBoxesOverlap(const Box& a, const Box& b) {
    return overlap(a.MinX(), a.MaxX(), b.MinX(), b.MaxX()) &&
           overlap(a.MinY(), a.MaxY(), b.MinY(), b.MaxY()) &&
           overlap(a.MinZ(), a.MaxZ(), b.MinZ(), b.MaxZ());
}

/// The deepest first, and of the rest only how many there are.
void keepDeepest(std::vector<PlateFinding>& pairs) {
    std::stable_sort(pairs.begin(), pairs.end(), [](const PlateFinding& a, const PlateFinding& b) {
        return a.distance > b.distance;
    });
    if (pairs.size() <= kMostPairs) return;
    const auto more = static_cast<std::int64_t>(pairs.size() - kMostPairs);
    pairs.resize(kMostPairs);
    pairs.push_back(
        {{"more-overlaps",
          fmt::format("{} more {} of parts overlap", more, more == 1 ? "pair" : "pairs"), more},
         {},
         0.0});
}

std::string sizeText(const UVector3<float>& size) {
    return fmt::format("{:g} × {:g} × {:g} mm", size.x, size.y, size.z);
}

}  // namespace

NewPlaces presentPlaces(const LoadedPlate& plate) {
    NewPlaces places;
    for (const Tesk::PlateItem& item : plate.plate.items) {
        places.push_back({Change::kKept, item.transform, toPlateOf(plate, item.transform), {}});
    }
    return places;
}

std::vector<PlateFinding> overlapsOn(const LoadedPlate& plate, const NewPlaces& places) {
    const auto& items = plate.plate.items;
    const auto isAtRest = [&](std::size_t i) { return places[i].change == Change::kKept; };
    std::vector<PlateFinding> found;
    Outlines outlines(plate, places);
    for (std::size_t b = 0; b < items.size(); ++b) {
        for (std::size_t a = 0; a < b; ++a) {
            if (isAtRest(a) && isAtRest(b)) continue;
            if (!items[a].isPrintable || !items[b].isPrintable) continue;
            if (!doBoxesOverlap(outlines.box(a), outlines.box(b))) continue;
            const double depth = overlapOf(outlines.footprint(a), outlines.footprint(b));
            if (depth <= kLeast) continue;
            found.push_back({{"parts-overlap",
                              fmt::format("{} and {} overlap by {:.2f} mm on the plate, by their "
                                          "convex outlines seen from above",
                                          nameOfItem(plate, a), nameOfItem(plate, b), depth)},
                             {a, b},
                             depth});
        }
    }
    keepDeepest(found);
    return found;
}

std::vector<PlateFinding> leavingVolume(const LoadedPlate& plate, const NewPlaces& places,
                                        const UVector3<float>& size) {
    constexpr std::array kSides = {"-X", "+X", "-Y", "+Y", "-Z", "+Z"};
    std::vector<PlateFinding> found;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Tesk::PlateItem& item = plate.plate.items[i];
        if (!item.isPrintable || plate.isTaken[item.object] == 0) continue;
        const Box box = boxOf(plate.plate.objects[item.object].mesh, places[i].toPlate);
        const std::array<double, 3> low = {box.MinX(), box.MinY(), box.MinZ()};
        const std::array<double, 3> high = {box.MaxX(), box.MaxY(), box.MaxZ()};
        std::pair<double, std::size_t> farthest = {kLeast, kSides.size()};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const auto room = static_cast<double>(size[static_cast<int>(axis)]);
            if (!(room > 0.0)) continue;
            if (-low[axis] > farthest.first) farthest = {-low[axis], 2 * axis};
            if (high[axis] - room > farthest.first) farthest = {high[axis] - room, 2 * axis + 1};
        }
        if (farthest.second == kSides.size()) continue;
        found.push_back({{"leaves-volume",
                          fmt::format("{} leaves the build volume of {}, taken to begin at 0, 0, 0 "
                                      "of the plate, by {:.2f} mm along {}",
                                      nameOfItem(plate, i), sizeText(size), farthest.first,
                                      kSides[farthest.second])},
                         {i},
                         farthest.first});
    }
    return found;
}

}  // namespace App
