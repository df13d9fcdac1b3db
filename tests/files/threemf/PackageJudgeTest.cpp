// Another program's library reads what was written, and must find every item where it was put.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>

#include "TeskPartFiles/Plates.h"
#include "threemf/PackageJudge.h"
#include "threemf/PlatePackage.h"
#include "threemf/RawPackage.h"

namespace {

using Tesk::PartTransform;
using Transforms = std::vector<std::optional<PartTransform>>;

Tesk::Plate plateOf(const std::string& package) {
    Tesk::ReadOptions options;
    options.weldsVertices = false;
    return Tesk::readPlate(package, Tesk::PartFormat::kThreeMf, options);
}

/// A turn about a slanted axis, different for each place, and a move.
PartTransform turned(std::size_t place) {
    const double angle = 0.3 + 0.7 * static_cast<double>(place);
    const double c = std::cos(angle), s = std::sin(angle);
    // About (2, 3, 6) / 7.
    const double x = 2.0 / 7, y = 3.0 / 7, z = 6.0 / 7, t = 1 - c;
    return {{t * x * x + c, t * x * y + s * z, t * x * z - s * y,  //
             t * x * y - s * z, t * y * y + c, t * y * z + s * x,  //
             t * x * z + s * y, t * y * z - s * x, t * z * z + c,  //
             10.0 * static_cast<double>(place) + 0.1, -5.0, 1.0 / 3}};
}

/// New transforms for every other item that builds something.
Transforms someTurned(const Tesk::Plate& plate) {
    Transforms transforms(plate.itemCount);
    for (std::size_t i = 0; i < plate.items.size(); i += 2) {
        transforms[plate.items[i].place] = turned(i);
    }
    return transforms;
}

void expectItem(const JudgedItem& judged, const PartTransform& transform,
                const Tesk::PartMesh& mesh) {
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_FLOAT_EQ(judged.transform[i], static_cast<float>(transform.m[i])) << i;
    }
    ASSERT_EQ(judged.positions.size(), mesh.positions.size());
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        const Tesk::PartPoint& p = mesh.positions[i];
        const double ours[] = {p.x, p.y, p.z};
        for (std::size_t k = 0; k < 3; ++k) {
            ASSERT_NEAR(judged.positions[i][k], ours[k], 1e-5 * (1 + std::abs(ours[k]))) << i;
        }
    }
    ASSERT_EQ(judged.triangles.size(), mesh.triangles.size());
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
        const auto& t = mesh.triangles[i];
        std::array<std::uint32_t, 3> ours = {static_cast<std::uint32_t>(t[0]),
                                             static_cast<std::uint32_t>(t[1]),
                                             static_cast<std::uint32_t>(t[2])};
        if (judged.triangles[i] != ours) std::swap(ours[1], ours[2]);
        ASSERT_EQ(judged.triangles[i], ours) << i;
    }
}

/// All items, those that were not to change included, and no other file of the package touched.
void expectChangesOnly(const std::string& package, const Transforms& transforms) {
    const Tesk::Plate before = plateOf(package);
    const std::string changed = Tesk::withTransforms(package, transforms);
    const std::vector<JudgedItem> judged = judgedItems(changed);
    ASSERT_EQ(judged.size(), before.itemCount);
    for (const Tesk::PlateItem& item : before.items) {
        expectItem(judged[item.place], transforms[item.place].value_or(item.transform),
                   before.objects[item.object].mesh);
    }
    const RawPackage is = rawPackage(changed);
    const RawPackage was = rawPackage(package);
    EXPECT_EQ(is.comment, was.comment);
    ASSERT_EQ(is.entries.size(), was.entries.size());
    for (std::size_t i = 0; i < is.entries.size(); ++i) {
        if (is.entries[i].name == "3D/3dmodel.model") continue;
        EXPECT_EQ(is.entries[i], was.entries[i]) << is.entries[i].name;
    }
    // With the old transforms of the other items, too, it is the first package in other words.
    const Tesk::Plate after = plateOf(changed);
    ASSERT_EQ(after.objects.size(), before.objects.size());
    for (std::size_t i = 0; i < after.objects.size(); ++i) {
        EXPECT_EQ(after.objects[i].mesh, before.objects[i].mesh);
    }
}

TEST(PackageJudge, FindsTheItemsOfASlicersPackageWhereTheyWerePut) {
    const std::string package = makeZip(platePackage(), {.comment = "kept"});
    expectChangesOnly(package, someTurned(plateOf(package)));
    Transforms all(kPlateItems);
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = turned(i);
    expectChangesOnly(package, all);
}

TEST(PackageJudge, AgreesAboutTheSampleMeshes) {
    std::size_t count = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(TESK_MESH_DIR, error)) {
        if (entry.path().extension() != ".3mf") continue;
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string package{std::istreambuf_iterator<char>(file), {}};
        expectChangesOnly(package, someTurned(plateOf(package)));
        ++count;
    }
    if (count == 0) GTEST_SKIP() << "no 3MF in " << TESK_MESH_DIR;
}

}  // namespace
