#include "plate/PlateOutput.h"

#include <cmath>
#include <limits>
#include <optional>

#include "Failure.h"
#include "plate/ItemTurn.h"
#include "plate/Polar.h"
#include "plate/Shapes.h"

namespace App {

namespace {

std::string changedPackage(const LoadedPlate& plate, const NewPlaces& places) {
    std::vector<std::optional<Tesk::PartTransform>> transforms(plate.plate.itemCount);
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].change == Change::kKept) continue;
        transforms[plate.plate.items[i].place] = places[i].transform;
    }
    return Tesk::withTransforms(plate.package, transforms);
}

constexpr auto kMostVertices = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());

TriangleMesh mergedMesh(const LoadedPlate& plate, const NewPlaces& places) {
    TriangleMesh all;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Tesk::PlateItem& item = plate.plate.items[i];
        TriangleMesh mesh = moved(plate.plate.objects[item.object].mesh, places[i].toPlate);
        if (all.positions.size() + mesh.positions.size() > kMostVertices) {
            throw Failure(ExitCode::kOutput,
                          "the items together have too many vertices for a file");
        }
        const auto first = static_cast<std::int32_t>(all.positions.size());
        all.positions.insert(all.positions.end(), mesh.positions.begin(), mesh.positions.end());
        for (auto corners : mesh.triangles) {
            for (std::int32_t& corner : corners) corner += first;
            all.triangles.push_back(corners);
        }
    }
    return all;
}

/// The motion that a turn about the centre of a mesh's box makes, in double.
UMatrix4<double> motionOf(const TriangleMesh& mesh, const UMatrix4<float>& pose,
                          std::optional<double> height) {
    constexpr double kOnPlate = 0.001;
    // Walls are found again only to within a few hundredths of a degree, as positions are rounded.
    constexpr double kSameDeg = 0.1;
    UMatrix4<double> motion = linearOf(exactRotation(pose));
    if (isSameRotation(motion, UMatrix4<double>(), kSameDeg)) motion = {};
    UBox3<double> before;
    UBox3<double> after;
    for (const UPoint3<float>& p : mesh.positions) {
        const UPoint3<double> q(static_cast<double>(p.x), static_cast<double>(p.y),
                                static_cast<double>(p.z));
        before.Extend(q);
        after.Extend(q * motion);
    }
    const UPoint3<double> center = before.Center();
    const UVector3<double> way = center - center * motion;
    const double up = height ? *height - after.MinZ() : way.z;
    if (motion.isIdenticalMatrix() && (!height || std::fabs(up) <= kOnPlate)) return motion;
    motion.at(3, 0) = way.x;
    motion.at(3, 1) = way.y;
    motion.at(3, 2) = up;
    return motion;
}

}  // namespace

bool canKeepPackage(const MeshOutput& output, const CommonOptions& options) {
    return output.isThreeMf() && Tesk::formatOf(options.part) == Tesk::PartFormat::kThreeMf;
}

void writeTogether(MeshOutput& output, const CommonOptions& options, const TriangleMesh& mesh,
                   const UMatrix4<float>& pose, std::optional<double> height) {
    const LoadedPlate plate = loadPlate(options, /*keepsPackage=*/true);
    const UMatrix4<double> motion = motionOf(mesh, pose, height);
    NewPlaces places = presentPlaces(plate);
    for (std::size_t i = 0; i < places.size() && !motion.isIdenticalMatrix(); ++i) {
        places[i].change = Change::kTurned;
        places[i].transform = followedBy(plate, i, motion);
    }
    write(output, plate, places);
}

void write(MeshOutput& output, const LoadedPlate& plate, const NewPlaces& places) {
    if (output.isThreeMf() && !plate.package.empty()) {
        output.writeBytes([&] { return changedPackage(plate, places); });
    } else {
        output.write(mergedMesh(plate, places));
    }
}

}  // namespace App
