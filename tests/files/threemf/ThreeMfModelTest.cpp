// What a model part says of namespaces, extensions and types.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReadText.h"
#include "text/Message.h"
#include "threemf/ThreeMfText.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(ThreeMfNamespaces, ExtensionsThatAreNotDeclaredArePassedOver) {
    const std::string objects = object(
        1, mesh(2) + "<metadata type=\"slic3r.object\"/><s:vertex x=\"1\"/><s:t><s:object/></s:t>",
        "s:instances=\"1\"");
    const auto content = contentOf({model(kRoot, objects, item(1, "s:printable=\"1\""), "")});
    EXPECT_EQ(content.mesh.triangles.size(), 4u);
    EXPECT_EQ(content.mesh.positions.size(), 4u);
    EXPECT_TRUE(content.warnings.empty());
}

TEST(ThreeMfNamespaces, ElementsOfOtherNamespacesAreNotTheModels) {
    const std::string foreign =
        "<x:object id=\"1\"/><object xmlns=\"http://x/y\" id=\"1\"><vertex x=\"1\"/></object>";
    const auto content =
        contentOf({model(kRoot, foreign + object(1, mesh(2)), item(1), "xmlns:x=\"http://x/z\"")});
    EXPECT_EQ(content.mesh.triangles.size(), 4u);
}

TEST(ThreeMfNamespaces, ThePrefixOfTheModelsOwnDoesNotMatter) {
    std::string text = model(kRoot, object(1, mesh(2)), item(1), "").content;
    for (std::size_t i = 0; (i = text.find('<', i)) != text.npos;) {
        i += text[i + 1] == '/' ? 2 : 1;
        text.insert(i, "c:");
    }
    text.replace(text.find("xmlns="), 6, "xmlns:c=");
    const auto content = contentOf({{.name = kRoot, .content = text}});
    EXPECT_EQ(content.mesh.triangles.size(), 4u);
}

TEST(ThreeMfNamespaces, APathWithAnUndeclaredPrefixIsRefused) {
    const auto files = {model(kRoot, object(1, mesh(2)), item(1, in("/3D/a.model")), "")};
    EXPECT_EQ(complaint(files),
              "3D/3dmodel.model, line 1: item of object 1 has the attribute \"p:path\", whose "
              "prefix no namespace is declared for");
}

std::string requiring(const std::string& prefixes, const std::string& more = "") {
    return "requiredextensions=\"" + prefixes + "\" " + kProduction +
           " xmlns:m=\"http://schemas.microsoft.com/3dmanufacturing/material/2015/02\""
           " xmlns:t=\"http://schemas.microsoft.com/3dmanufacturing/trianglesets/2021/07\" " +
           more;
}

TEST(ThreeMfExtensions, ThatLeaveShapesAloneMayBeNeeded) {
    for (const char* prefixes : {"", "p", "m p", " t\n m ", "p p"}) {
        EXPECT_EQ(complaint({model(kRoot, object(1, mesh(2)), item(1), requiring(prefixes))}), "");
    }
}

TEST(ThreeMfExtensions, ThatShapePartsOrAreUnknownAreRefusedByName) {
    const std::string microsoft = "http://schemas.microsoft.com/3dmanufacturing/";
    const std::string consortium = "http://schemas.3mf.io/3dmanufacturing/";
    const std::pair<std::string, const char*> spaces[] = {
        {microsoft + "slice/2015/07", "slices in place of meshes"},
        {microsoft + "beamlattice/2017/02", "beam lattices"},
        {microsoft + "beamlattice/balls/2020/07", "beam lattices"},
        {microsoft + "securecontent/2019/04", "encrypted models"},
        {microsoft + "production/alternatives/2021/04", "several versions"},
        {consortium + "booleanoperations/2023/07", "boolean operations"},
        {consortium + "displacement/2023/10", "displaced surfaces"},
        {consortium + "volumetric/2022/01", "shapes given by functions"},
        {consortium + "implicit/2023/12", "shapes given by functions"},
        {"http://vendor.example/hair/2030/01", "not known"},
    };
    for (const auto& [space, text] : spaces) {
        const ZipFile root = model(kRoot, object(1, mesh(2)), item(1),
                                   requiring("p x", "xmlns:x=\"" + space + "\""));
        EXPECT_THAT(complaint({root}), AllOf(HasSubstr("3D/3dmodel.model, line 1: the model needs"),
                                             HasSubstr(space), HasSubstr(text)));
    }
    // Where they are not needed, the meshes are meant to do.
    EXPECT_EQ(complaint({model(kRoot, object(1, mesh(2)), item(1),
                               requiring("p", "xmlns:x=\"" + spaces[0].first + "\""))}),
              "");
}

TEST(ThreeMfExtensions, OfAnUndeclaredPrefixAreRefusedByIt) {
    EXPECT_EQ(complaint({model(kRoot, object(1, mesh(2)), item(1), requiring("p z"))}),
              "3D/3dmodel.model, line 1: the model needs the 3MF extension with the prefix \"z\", "
              "but does not say which that is (no xmlns:z)");
}

TEST(ThreeMfExtensions, ThatAnotherPartNeedsCountToo) {
    const ZipFile root = model(kRoot, "", item(1, in("/3D/a.model")));
    const ZipFile other = model("3D/a.model", object(1, mesh(2)), "", requiring("z"));
    EXPECT_THAT(complaint({root, other}), HasSubstr("3D/a.model, line 1: the model needs"));
}

TEST(ThreeMfTypes, SupportsAndOthersAreLeftOut) {
    const std::string objects = object(1, mesh(1)) + object(2, mesh(50), "type=\"support\"") +
                                object(3, mesh(60), "type=\"other\"") +
                                object(4, components(component(1) + component(2)));
    const auto content = contentOf({model(kRoot, objects, item(4) + item(3) + item(2))});
    EXPECT_EQ(content.mesh.triangles.size(), 4u);
    EXPECT_EQ(endOf(content), 1.0f);
    ASSERT_THAT(codesOf(content), ElementsAre("not-built"));
    EXPECT_EQ(content.warnings[0].text, "2 objects of type \"support\" or \"other\" are left out");
    EXPECT_EQ(content.warnings[0].count, 2);
}

TEST(ThreeMfTypes, TheOthersAreBuilt) {
    for (const char* type : {"model", "solidsupport", "surface"}) {
        const auto content = contentOf({model(
            kRoot, object(1, mesh(1), Tesk::files::message("type=\"", type, "\"")), item(1))});
        EXPECT_EQ(content.mesh.triangles.size(), 4u) << type;
        EXPECT_TRUE(content.warnings.empty());
    }
}

TEST(ThreeMfTypes, OfAnObjectWithComponentsDoesNotCount) {
    const std::string objects =
        object(1, mesh(1)) + object(2, components(component(1)), "type=\"other\"");
    EXPECT_EQ(contentOf({model(kRoot, objects, item(2))}).mesh.triangles.size(), 4u);
}

TEST(ThreeMfTypes, NothingButSupportsIsNothingToBuild) {
    EXPECT_EQ(complaint({model(kRoot, object(1, mesh(1), "type=\"support\""), item(1))}),
              "contains no build items other than objects of type \"support\" or \"other\"");
    EXPECT_EQ(complaint({model(kRoot, object(1, ""), item(1))}), "contains no triangles");
}

}  // namespace
