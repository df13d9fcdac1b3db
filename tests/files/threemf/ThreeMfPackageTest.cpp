// What a 3MF package builds out of its parts, and what it says where it cannot.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReadText.h"
#include "text/Message.h"
#include "threemf/ThreeMfText.h"

namespace {

using Tesk::PartFormat;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(ThreeMfParts, ItemsAndComponentsMayLieInOtherParts) {
    const ZipFile root =
        model(kRoot,
              object(1, components(component(7, in("/3D/a.model") + " " + movedBy(10)) +
                                   component(2, movedBy(100)))) +
                  object(2, mesh(1)),
              item(1, movedBy(1000)) + item(7, in("3d/OBJECTS/b.model")));
    const ZipFile a = model("3D/a.model", object(7, mesh(3)), item(7));
    const ZipFile b = model("3D/Objects/b.model", object(7, mesh(5)), "");
    const auto content = contentOf({root, a, b});
    ASSERT_EQ(content.mesh.positions.size(), 12u);
    EXPECT_EQ(content.mesh.positions[1].x, 1013.0f);
    EXPECT_EQ(content.mesh.positions[5].x, 1101.0f);
    EXPECT_EQ(content.mesh.positions[9].x, 5.0f);
    EXPECT_THAT(codesOf(content), ElementsAre("several-items"));
    EXPECT_EQ(content.warnings[0].count, 2);
}

TEST(ThreeMfParts, EachIsReadOnce) {
    std::vector<ZipFile> files = {
        model(kRoot,
              object(1,
                     components(component(7, in("/3D/a.model")) + component(8, in("/3D/A.model")))),
              item(1) + item(7, in("3D/a.MODEL")) + item(8, in("./3D/a.model"))),
        model("3D/a.model", object(7, mesh(3)) + object(8, mesh(4)), "")};
    // The archive may be unpacked to about one and a half times its content.
    files.back().content.insert(files.back().content.size(), 1'000'000, '\n');
    files.back().method = 8;
    EXPECT_EQ(contentOf(files).mesh.triangles.size(), 16u);
}

TEST(ThreeMfParts, MayHaveAnotherUnit) {
    const ZipFile root =
        model(kRoot, object(1, components(component(2, in("/3D/a.model") + " " + movedBy(3)))),
              item(1), std::string(kProduction) + " unit=\"centimeter\"");
    const ZipFile inches =
        model("3D/a.model", object(2, components(component(3, movedBy(1)))) + object(3, mesh(2)),
              "", "unit=\"inch\"");
    const auto content = contentOf({root, inches});
    EXPECT_EQ(content.unit, "centimeter");
    EXPECT_NEAR(endOf(content), 3 * 2.54 + 3, 1e-5);
    EXPECT_TRUE(content.warnings.empty());
}

TEST(ThreeMfParts, OfAnUnknownUnitAreTakenInMillimetres) {
    const ZipFile root =
        model(kRoot, "", item(1, in("/3D/a.model")), std::string(kProduction) + " unit=\"meter\"");
    const ZipFile other = model("3D/a.model", object(1, mesh(500)), "", "unit=\"parsec\"");
    const auto content = contentOf({root, other});
    EXPECT_EQ(endOf(content), 0.5f);
    ASSERT_THAT(codesOf(content), ElementsAre("unknown-unit"));
    EXPECT_THAT(content.warnings[0].text,
                AllOf(HasSubstr("\"3D/a.model\""), HasSubstr("\"parsec\"")));
}

TEST(ThreeMfParts, ThatAreMissingAreNamed) {
    EXPECT_EQ(complaint({model(kRoot, "", item(4, in("/3D/gone.model")))}),
              "object 4 is to come from \"/3D/gone.model\", which is not in the archive");
    EXPECT_EQ(complaint({model(kRoot, "", item(4, in("../gone.model")))}),
              "object 4 is to come from \"../gone.model\", which is not in the archive");
    EXPECT_EQ(complaint({model(kRoot, "", item(4, in("/3D/a.model"))),
                         model("3D/a.model", object(3, mesh(1)), "")}),
              "3D/a.model has no object 4, which a build item refers to");
    EXPECT_EQ(complaint({model(kRoot, object(1, components(component(5))), item(1))}),
              "3D/3dmodel.model has no object 5, which a build item refers to");
}

TEST(ThreeMfParts, AreNamedWithoutControlCharacters) {
    EXPECT_THAT(complaint({model(kRoot, "", item(4, in("/a&#10;b&#x9b;&#x7f;&#xf6;.model")))}),
                HasSubstr("\"/a?b??\xc3\xb6.model\""));
}

TEST(ThreeMfParts, ThatContainThemselvesAreNamed) {
    EXPECT_EQ(complaint({model(kRoot, object(1, components(component(1))), item(1))}),
              "3D/3dmodel.model: object 1 contains itself");
    EXPECT_EQ(
        complaint({model(kRoot, object(1, components(component(2, in("/3D/a.model")))), item(1)),
                   model("3D/a.model",
                         object(2, components(component(3))) +
                             object(3, mesh(1) + components(component(1, in("/3D/3dmodel.model")))),
                         "")}),
        "3D/3dmodel.model: object 1 contains itself");
}

/// Objects 1 to count, each made of the one before; the first has a mesh.
std::string chain(int count) {
    std::string objects = object(1, mesh(1));
    for (int id = 2; id <= count; ++id) objects += object(id, components(component(id - 1)));
    return objects;
}

TEST(ThreeMfParts, MayNestAHundredDeepAndNoDeeper) {
    EXPECT_EQ(complaint({model(kRoot, chain(101), item(101))}), "");
    EXPECT_EQ(complaint({model(kRoot, chain(102), item(102))}),
              "3D/3dmodel.model: the components of object 1 nest more than 100 deep");
    // Seen from the inside out, no step is deep; this many would overflow the stack.
    std::string items;
    for (int id = 1; id <= 100'000; ++id) items += item(id);
    EXPECT_THAT(complaint({model(kRoot, chain(100'000), items)}),
                HasSubstr("nest more than 100 deep"));
}

TEST(ThreeMfParts, EmptyObjectsTakeNoTimeHoweverOftenTheyArePlaced) {
    std::string empties;
    for (int i = 0; i < 50'000; ++i) empties += component(1);
    std::string many;
    for (int i = 0; i < 50'000; ++i) many += component(2);
    const auto content = contentOf({model(
        kRoot,
        object(1, "") + object(2, mesh(1) + components(empties)) + object(3, components(many)),
        item(3))});
    EXPECT_EQ(content.mesh.triangles.size(), 200'000u);
}

TEST(ThreeMfParts, OfMoreTrianglesThanAreWantedAreRefused) {
    Tesk::ReadOptions options;
    const auto troubleUpTo = [&](std::size_t most, const std::string& items) {
        options.maxTriangles = most;
        try {
            Tesk::readPart(
                makeZip({relationshipsTo(kRoot), model(kRoot, object(1, mesh(1)), items)}),
                PartFormat::kThreeMf, options);
            return std::string();
        } catch (const Tesk::PartFileError& error) {
            return std::string(error.what());
        }
    };
    EXPECT_EQ(troubleUpTo(4, item(1)), "");
    EXPECT_EQ(troubleUpTo(3, item(1)),
              "3D/3dmodel.model, line 1: is too big: it has more than 3 triangles");
    EXPECT_EQ(troubleUpTo(8, item(1) + item(1)), "");
    EXPECT_EQ(troubleUpTo(7, item(1) + item(1)), "its components expand to more than 7 triangles");
}

TEST(ThreeMfRelationships, NameTheModelWhereverItIs) {
    const std::string objects = object(1, mesh(1));
    EXPECT_EQ(endOf(contentOf({model("parts/Own.xml", objects, item(1)),
                               model(kRoot, object(1, mesh(9)), item(1))},
                              "Parts/own.xml")),
              1.0f);
    // One of the two names has its characters written as %20, %C3%B6.
    const std::string plain = "3D/a gr\xc3\xb6n.model", coded = "3D/a%20gr%C3%B6n.model";
    EXPECT_EQ(complaint({model(plain, objects, item(1))}, coded), "");
    EXPECT_EQ(complaint({model(coded, objects, item(1))}, plain), "");
    EXPECT_EQ(complaint({model(coded, objects, item(1))}, coded), "");
}

TEST(ThreeMfRelationships, ToNowhereAreNamed) {
    EXPECT_EQ(complaint({model(kRoot, object(1, mesh(1)), item(1))}, "3D/gone.model"),
              "_rels/.rels names \"/3D/gone.model\" as the model, which is not in the archive");
    EXPECT_THAT(complaint({model(kRoot, object(1, mesh(1)), item(1))}, "100%"),
                HasSubstr("names \"/100%\""));
}

TEST(ThreeMfRelationships, ThatAreMissingLeaveTheUsualPlace) {
    const ZipFile root = model(kRoot, object(1, mesh(1)), item(1));
    EXPECT_THAT(codesOf(Tesk::readPart(makeZip({root}), PartFormat::kThreeMf)),
                ElementsAre("no-relationship"));
    EXPECT_EQ(troubleOf(makeZip({model("a.model", "", "")}), PartFormat::kThreeMf),
              "is not a 3MF file: the archive contains no 3D model");
}

}  // namespace
