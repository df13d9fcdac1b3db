#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TeskPartFiles/Plates.h"
#include "threemf/PlatePackage.h"
#include "threemf/ThreeMfText.h"

namespace {

using Tesk::PartFormat;
using Tesk::PartTransform;
using Tesk::Plate;
using testing::ElementsAre;

Tesk::ReadOptions apart() {
    Tesk::ReadOptions options;
    options.weldsVertices = false;
    return options;
}

Plate plateOf(std::vector<ZipFile> files, const Tesk::ReadOptions& options = apart()) {
    files.push_back(relationshipsTo("/3D/3dmodel.model"));
    return Tesk::readPlate(makeZip(files), PartFormat::kThreeMf, options);
}

std::string troubleWith(std::vector<ZipFile> files, const Tesk::ReadOptions& options = apart()) {
    try {
        plateOf(std::move(files), options);
    } catch (const Tesk::PartFileError& error) {
        return error.what();
    }
    return {};
}

std::vector<std::size_t> objectsOf(const Plate& plate) {
    std::vector<std::size_t> objects;
    for (const Tesk::PlateItem& item : plate.items) objects.push_back(item.object);
    return objects;
}

std::vector<std::size_t> placesOf(const Plate& plate) {
    std::vector<std::size_t> places;
    for (const Tesk::PlateItem& item : plate.items) places.push_back(item.place);
    return places;
}

TEST(ReadPlate, GivesEachObjectOnceHoweverManyItemsUseIt) {
    const Plate plate =
        plateOf({model(kRoot, object(4, mesh(1)) + object(2, mesh(2)) + object(3, mesh(3)),
                       item(2, movedBy(5)) + item(4) + item(2, movedBy(6)) + item(2, movedBy(6)))});
    ASSERT_EQ(plate.objects.size(), 2u);
    EXPECT_EQ(plate.objects[0].id, 2u);
    EXPECT_EQ(plate.objects[1].id, 4u);
    EXPECT_EQ(plate.objects[0].mesh.positions[1].x, 2.0f) << "in its own frame";
    EXPECT_THAT(objectsOf(plate), ElementsAre(0, 1, 0, 0));
    EXPECT_THAT(placesOf(plate), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(plate.itemCount, 4u);
    EXPECT_EQ(plate.items[0].transform.m[9], 5.0);
    EXPECT_EQ(plate.items[1].transform, PartTransform());
    EXPECT_TRUE(plate.warnings.empty());
    EXPECT_EQ(plate.unit, "millimeter");
    EXPECT_EQ(plate.format, PartFormat::kThreeMf);
}

TEST(ReadPlate, KnowsObjectsOfEqualNumbersInDifferentPartsApart) {
    const Plate plate =
        plateOf({model(kRoot, object(1, mesh(1)),
                       item(1, in("/3D/a.model")) + item(1) + item(1, in("3d/A.model"))),
                 model("3D/a.model", object(1, mesh(2)), "")});
    ASSERT_EQ(plate.objects.size(), 2u);
    EXPECT_EQ(plate.objects[0].modelPart, "3D/a.model");
    EXPECT_EQ(plate.objects[1].modelPart, "3D/3dmodel.model");
    EXPECT_THAT(objectsOf(plate), ElementsAre(0, 1, 0));
}

TEST(ReadPlate, GivesNamesPartNumbersAndMarks) {
    const Plate plate =
        plateOf({model(kRoot,
                       object(1, mesh(1), "name=\"A &lt;pin&gt; \xc3\xb6\" partnumber=\"N-1\"") +
                           object(2, mesh(2)),
                       item(1, "partnumber=\"left\" printable=\"0\"") + item(1, "printable=\"1\"") +
                           item(2, "printable=\"false\""))});
    EXPECT_EQ(plate.objects[0].name, "A <pin> \xc3\xb6");
    EXPECT_EQ(plate.objects[0].partNumber, "N-1");
    EXPECT_EQ(plate.objects[1].name, "");
    EXPECT_EQ(plate.items[0].partNumber, "left");
    EXPECT_FALSE(plate.items[0].isPrintable);
    EXPECT_TRUE(plate.items[1].isPrintable);
    EXPECT_FALSE(plate.items[2].isPrintable);
}

TEST(ReadPlate, LeavesOutItemsThatBuildNothingButCountsThem) {
    const Plate plate =
        plateOf({model(kRoot,
                       object(1, mesh(1)) + object(2, mesh(1), "type=\"support\"") + object(3, "") +
                           object(4, components(component(2))) + object(5, mesh(5)),
                       item(2) + item(1) + item(3) + item(4) + item(5))});
    EXPECT_THAT(placesOf(plate), ElementsAre(1, 4));
    EXPECT_THAT(objectsOf(plate), ElementsAre(0, 1));
    EXPECT_EQ(plate.itemCount, 5u);
    ASSERT_EQ(plate.warnings.size(), 1u);
    EXPECT_EQ(plate.warnings[0].code, "not-built");
}

TEST(ReadPlate, PutsComponentsIntoTheObjectsFrameAndUnit) {
    const Plate plate = plateOf(
        {model(kRoot,
               object(1, components(component(2, in("/3D/a.model") + " " + movedBy(10)) +
                                    component(3, "transform=\"-1 0 0 0 1 0 0 0 1 0 0 0\""))) +
                   object(3, mesh(4)),
               item(1, movedBy(1000)) + item(2, in("/3D/a.model") + " " + movedBy(7)),
               std::string(kProduction) + " unit=\"centimeter\""),
         model("3D/a.model", object(2, mesh(2)), "", "unit=\"inch\"")});
    ASSERT_EQ(plate.objects.size(), 2u);
    const Tesk::PartMesh& both = plate.objects[0].mesh;
    ASSERT_EQ(both.positions.size(), 8u);
    EXPECT_FLOAT_EQ(both.positions[1].x, 10 + 2 * 2.54f);
    EXPECT_EQ(both.positions[5].x, -4.0f);
    // Mirrored, so that the corners go the other way round.
    EXPECT_EQ(both.triangles[4], (std::array<std::int32_t, 3>{4, 5, 6}));
    // The unit of another part is in its mesh; the item's transform stays as it is written.
    EXPECT_FLOAT_EQ(plate.objects[1].mesh.positions[1].x, 2 * 2.54f);
    EXPECT_EQ(plate.items[1].transform.m[0], 1.0);
    EXPECT_EQ(plate.items[1].transform.m[9], 7.0);
    EXPECT_EQ(plate.unit, "centimeter");
}

TEST(ReadPlate, WeldsWithinEachObject) {
    const auto twice = components(component(1) + component(1));
    const Plate plate =
        plateOf({model(kRoot, object(1, mesh(1)) + object(2, twice), item(2) + item(1))}, {});
    EXPECT_EQ(plate.objects[0].mesh.positions.size(), 4u);
    EXPECT_EQ(plate.objects[0].mesh.triangles.size(), 8u);
    EXPECT_EQ(plate.objects[1].mesh.positions.size(), 4u);
}

TEST(ReadPlate, LimitsTheTrianglesOfAllObjectsEachCountedOnce) {
    const auto files = [](const std::string& items) {
        return std::vector<ZipFile>{model(
            kRoot, object(1, mesh(1)) + object(2, components(component(1) + component(1))), items)};
    };
    Tesk::ReadOptions options;
    options.maxTriangles = 12;
    EXPECT_EQ(troubleWith(files(item(1) + item(2) + item(2) + item(1)), options), "");
    options.maxTriangles = 11;
    EXPECT_EQ(troubleWith(files(item(1) + item(2)), options),
              "its components expand to more than 11 triangles");
    EXPECT_EQ(troubleWith(files(item(2) + item(2)), options), "");
}

TEST(ReadPlate, RefusesWhatReadPartRefuses) {
    EXPECT_EQ(troubleWith({model(kRoot, object(1, mesh(1)), "")}), "contains no build items");
    EXPECT_EQ(troubleWith({model(kRoot, object(1, ""), item(1))}), "contains no triangles");
    EXPECT_EQ(troubleWith({model(kRoot, object(1, mesh(1), "type=\"other\""), item(1))}),
              "contains no build items other than objects of type \"support\" or \"other\"");
    EXPECT_EQ(troubleWith({model(kRoot, object(1, components(component(1))), item(1))}),
              "3D/3dmodel.model: object 1 contains itself");
    EXPECT_EQ(troubleWith({model(kRoot, "", item(4, in("/3D/gone.model")))}),
              "object 4 is to come from \"/3D/gone.model\", which is not in the archive");
    EXPECT_THROW(Tesk::readPlate("", PartFormat::kThreeMf), Tesk::PartFileError);
}

TEST(ReadPlate, GivesOneObjectForTheOtherFormats) {
    const std::string bytes = "o pin\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nf 1 2\n";
    const Plate plate = Tesk::readPlate(bytes, PartFormat::kObj);
    const Tesk::PartFile part = Tesk::readPart(bytes, PartFormat::kObj);
    ASSERT_EQ(plate.objects.size(), 1u);
    EXPECT_EQ(plate.objects[0].mesh, part.mesh);
    EXPECT_EQ(plate.objects[0].name, "");
    ASSERT_EQ(plate.items.size(), 1u);
    EXPECT_EQ(plate.items[0].transform, PartTransform());
    EXPECT_EQ(plate.itemCount, 1u);
    EXPECT_EQ(plate.warnings.size(), part.warnings.size());
    EXPECT_EQ(plate.format, PartFormat::kObj);
    EXPECT_EQ(plate.unit, std::nullopt);
}

TEST(ReadPlate, ReportsAscendingPercentagesUpToTheEnd) {
    std::vector<int> percentages;
    Tesk::ReadOptions options;
    options.progress = [&](int percent) { percentages.push_back(percent); };
    plateOf({model(kRoot, object(1, mesh(1)) + object(2, mesh(2)) + object(3, mesh(3)),
                   item(1) + item(2) + item(3))},
            options);
    EXPECT_TRUE(std::is_sorted(percentages.begin(), percentages.end(), std::less_equal<>()));
    ASSERT_FALSE(percentages.empty());
    EXPECT_EQ(percentages.back(), 100);
    EXPECT_THAT(percentages, testing::Contains(testing::AllOf(testing::Ge(60), testing::Lt(100))));
}

TEST(ReadPlate, ReadsAllThatSlicersWrite) {
    const Plate plate = Tesk::readPlate(makeZip(platePackage()), PartFormat::kThreeMf, apart());
    std::vector<std::string> names;
    std::vector<std::size_t> triangles;
    for (const Tesk::PlateObject& each : plate.objects) {
        names.push_back(each.name);
        triangles.push_back(each.mesh.triangles.size());
    }
    EXPECT_THAT(names, ElementsAre("Bracket", "Assembly", "Block", "Wedge"));
    EXPECT_THAT(triangles, ElementsAre(12, 16, 4, 4));
    EXPECT_THAT(objectsOf(plate), ElementsAre(0, 0, 1, 2, 3));
    EXPECT_THAT(placesOf(plate), ElementsAre(0, 1, 2, 3, 5));
    EXPECT_EQ(plate.itemCount, kPlateItems);
    EXPECT_EQ(plate.items[1].transform.m[11], 30.0);
}

}  // namespace
