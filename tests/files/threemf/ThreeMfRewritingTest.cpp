#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "TeskPartFiles/Plates.h"
#include "threemf/RawPackage.h"
#include "threemf/ThreeMfText.h"

namespace {

using Tesk::PartFormat;
using Tesk::PartTransform;
using testing::HasSubstr;
using Transforms = std::vector<std::optional<PartTransform>>;

const PartTransform kTurned = {{0, 1, 0, -1, 0, 0, 0, 0, 1, 12.5, -3, 1e-7}};
constexpr const char* kTurnedText = "0 1 0 -1 0 0 0 0 1 12.5 -3 1e-07";

/// A text with every "@" replaced.
std::string filled(std::string text, const std::string& value) {
    for (std::size_t at = text.find('@'); at != text.npos; at = text.find('@', at)) {
        text.replace(at, 1, value);
    }
    return text;
}

std::string troubleWith(const std::string& package, const Transforms& transforms) {
    try {
        Tesk::withTransforms(package, transforms);
    } catch (const Tesk::PartFileError& error) {
        return error.what();
    }
    return {};
}

struct ItemForm {
    const char* what;
    const char* before;
    const char* after;  ///< "@" stands for the transform
    std::size_t items = 1;
};

class RewrittenItem : public testing::TestWithParam<ItemForm> {};

// The archive is written anew with the text that is expected: not a byte of it may differ.
TEST_P(RewrittenItem, DiffersInItsTransformOnly) {
    const auto package = [&](const std::string& build) {
        ZipFile root = model(kRoot, object(1, mesh(1)), "");
        root.content.replace(root.content.find("<build></build>"), 15, build);
        return makeZip({relationshipsTo("/3D/3dmodel.model"), root, {.name = "other.txt"}});
    };
    const Transforms transforms(GetParam().items, kTurned);
    EXPECT_EQ(Tesk::withTransforms(package(GetParam().before), transforms),
              package(filled(GetParam().after, kTurnedText)));
}

INSTANTIATE_TEST_SUITE_P(
    InEveryForm, RewrittenItem,
    testing::Values(
        ItemForm{"WithoutTransform", R"(<build><item objectid="1"/></build>)",
                 R"(<build><item transform="@" objectid="1"/></build>)"},
        ItemForm{"WithOne",
                 R"(<build><item objectid="1" transform="1 0 0 0 1 0 0 0 1 5 5 5"/></build>)",
                 R"(<build><item objectid="1" transform="@"/></build>)"},
        ItemForm{"InSingleQuotes",
                 R"(<build><item transform='1 0 0 0 1 0 0 0 1 5 5 5' objectid='1' /></build>)",
                 R"(<build><item transform='@' objectid='1' /></build>)"},
        ItemForm{
            "OverSeveralLines",
            "<build><item\r\n\tobjectid = \"1\"\n transform\n=\n\"1 0 0\n0 1 0\n0 0 1\n5 5 5\"\n"
            "></item ></build>",
            "<build><item\r\n\tobjectid = \"1\"\n transform\n=\n\"@\"\n></item ></build>"},
        ItemForm{"AloneInItsLine", "<build><item\nobjectid=\"1\"\n/></build>",
                 "<build><item transform=\"@\"\nobjectid=\"1\"\n/></build>"},
        ItemForm{
            "BesideComments",
            R"(<build><!-- <item objectid="1"/> --><item objectid="1"/><!--<item--></build>)",
            R"(<build><!-- <item objectid="1"/> --><item transform="@" objectid="1"/><!--<item--></build>)"},
        ItemForm{
            "BesideCharacterData",
            R"(<build><a><![CDATA[<item objectid="1" transform="1"/>]]></a><?x <item/>?><item objectid="1"/></build>)",
            R"(<build><a><![CDATA[<item objectid="1" transform="1"/>]]></a><?x <item/>?><item transform="@" objectid="1"/></build>)"},
        ItemForm{
            "WithMisleadingValues",
            R"(<build><item partnumber=' transform="1" > ' objectid="1" name="'/>"/></build>)",
            R"(<build><item transform="@" partnumber=' transform="1" > ' objectid="1" name="'/>"/></build>)"},
        ItemForm{
            "WithMisleadingNames",
            R"(<build xmlns:x="x"><item x:transform="7" objectid="1" transforms="7" atransform="8" transform=""/></build>)",
            R"(<build xmlns:x="x"><item x:transform="7" objectid="1" transforms="7" atransform="8" transform="@"/></build>)"},
        ItemForm{
            "WithPrefixes",
            R"(<c:build xmlns:c="http://schemas.microsoft.com/3dmanufacturing/core/2015/02"><c:item objectid="1"></c:item></c:build>)",
            R"(<c:build xmlns:c="http://schemas.microsoft.com/3dmanufacturing/core/2015/02"><c:item transform="@" objectid="1"></c:item></c:build>)"},
        ItemForm{
            "BesideThoseOfAnExtension",
            R"(<build xmlns:x="x"><x:item objectid="1"/><items/><item objectid="1"/><item xmlns="x"/></build>)",
            R"(<build xmlns:x="x"><x:item objectid="1"/><items/><item transform="@" objectid="1"/><item xmlns="x"/></build>)"},
        ItemForm{"WithSlicersMarks",
                 "<build p:UUID=\"2c7c17d8\"><item objectid=\"1\" p:UUID=\"00000002\" "
                 "transform=\"1 0 0 0 1 0 0 0 1 128 128 5\" printable=\"1\"/></build>",
                 "<build p:UUID=\"2c7c17d8\"><item objectid=\"1\" p:UUID=\"00000002\" "
                 "transform=\"@\" printable=\"1\"/></build>"},
        ItemForm{
            "BesideOthers", R"(<build><item objectid="1"/> <item objectid="1"/></build>)",
            R"(<build><item transform="@" objectid="1"/> <item transform="@" objectid="1"/></build>)",
            2}),
    [](const testing::TestParamInfo<ItemForm>& test) { return test.param.what; });

TEST(Rewriting, KeepsItemsWithoutANewTransformCharacterByCharacter) {
    const auto package = [](const std::string& last) {
        return makeZip(
            {relationshipsTo("/3D/3dmodel.model"),
             model(kRoot, object(1, mesh(1)),
                   "<item  objectid='1' transform=' 1.0 0 0 0 1 0 0 0 1 00.5 0 0'/>" + last)});
    };
    EXPECT_EQ(Tesk::withTransforms(package(item(1)), Transforms{{}, kTurned}),
              package(filled("<item transform=\"@\" objectid=\"1\" />", kTurnedText)));
}

TEST(Rewriting, WithoutNewTransformsGivesTheSameBytes) {
    const std::string package = makeZip({relationshipsTo("/3D/3dmodel.model"),
                                         model(kRoot, object(1, mesh(1)), item(1) + item(1))});
    EXPECT_EQ(Tesk::withTransforms(package, Transforms(2)), package);
    EXPECT_EQ(Tesk::withTransforms(package, Transforms()), package);
}

TEST(Rewriting, TakesTextsWithAByteOrderMarkOrInLatin1) {
    for (const std::string start :
         {"\xef\xbb\xbf", "<?xml version='1.0' encoding='iso-8859-1'?>\n<!-- \xf6 -->"}) {
        const auto package = [&](const std::string& items) {
            ZipFile root = model(kRoot, object(1, mesh(1)), items);
            root.content.insert(0, start);
            return makeZip({relationshipsTo("/3D/3dmodel.model"), root});
        };
        EXPECT_EQ(Tesk::withTransforms(package("<item objectid=\"1\"/>"), Transforms{kTurned}),
                  package(filled("<item transform=\"@\" objectid=\"1\"/>", kTurnedText)));
    }
}

TEST(Rewriting, FindsTagsWhereverTheTextIsCutIntoPieces) {
    for (std::size_t before = (1u << 20) - 60; before < (1u << 20) + 4; before += 3) {
        const auto package = [&](const std::string& items) {
            ZipFile root = model(kRoot, object(1, mesh(1)), "<!---->" + items);
            const std::size_t start = root.content.find("<!--") + 4;
            root.content.insert(start, before - start, '-')
                .replace(start, before - start, before - start, 'x');
            return makeZip({relationshipsTo("/3D/3dmodel.model"), root});
        };
        ASSERT_EQ(Tesk::withTransforms(package("<item objectid=\"1\"/><item objectid=\"1\"/>"),
                                       Transforms{{}, kTurned}),
                  package(filled("<item objectid=\"1\"/><item transform=\"@\" objectid=\"1\"/>",
                                 kTurnedText)))
            << before;
    }
}

TEST(Rewriting, WritesNumbersThatReadBackToTheSameBits) {
    const std::string package =
        makeZip({relationshipsTo("/3D/3dmodel.model"), model(kRoot, object(1, mesh(1)), item(1))});
    const PartTransform odd = {{0.1, 1.0 / 3, -1e-17, 1e21, std::nextafter(1.0, 2.0), 5e-324, -0.0,
                                123456789.123456789, 2.0 / 7, -7.25e-9, 1e22, 0.30000000000000004}};
    const auto plate =
        Tesk::readPlate(Tesk::withTransforms(package, Transforms{odd}), PartFormat::kThreeMf);
    ASSERT_EQ(plate.items.size(), 1u);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(plate.items[0].transform.m[i], odd.m[i]) << i;
        EXPECT_EQ(std::signbit(plate.items[0].transform.m[i]), std::signbit(odd.m[i])) << i;
    }
}

struct Archive {
    ZipFile root;
    ZipEnd end;
};

/// Every form that an archive can have, the model's content not set.
std::vector<Archive> everyArchive() {
    std::vector<Archive> archives;
    for (const std::uint16_t method : {0, 8}) {
        for (int form = 0; form < 16; ++form) {
            archives.push_back({.root = {.method = method,
                                         .isZip64 = (form & 1) != 0,
                                         .isZip64Central = (form & 2) != 0,
                                         .hasDescriptor = (form & 4) != 0,
                                         .flags = 0x800,
                                         .extra = std::string("\x55\x54\5\0\1\2\3\4\5", 9)},
                                .end = {.comment = "a comment", .isZip64 = (form & 8) != 0}});
        }
    }
    return archives;
}

TEST(Rewriting, KeepsAllElseOfArchivesOfEveryForm) {
    for (const Archive& archive : everyArchive()) {
        for (const std::size_t place : {0, 1, 3}) {
            const auto package = [&](const std::string& items, bool hasDescriptor) {
                std::vector<ZipFile> files = {relationshipsTo("/3D/3dmodel.model"),
                                              {.name = "Metadata/\xc3\xb6.png",
                                               .content = "PK\3\4",
                                               .method = 0,
                                               .flags = 0x800},
                                              {.name = "Metadata/a.config",
                                               .content = std::string(5000, 'a'),
                                               .hasDescriptor = true}};
                ZipFile root = archive.root;
                const ZipFile text = model(kRoot, object(1, mesh(1)), items);
                root.name = text.name;
                root.content = text.content;
                root.hasDescriptor = hasDescriptor;
                files.insert(files.begin() + static_cast<std::ptrdiff_t>(place), root);
                return makeZip(files, archive.end);
            };
            const std::string changed = Tesk::withTransforms(
                package(item(1) + item(1), archive.root.hasDescriptor), Transforms{{}, kTurned});
            const std::string expected = package(
                item(1) + filled("<item transform=\"@\" objectid=\"1\" />", kTurnedText), false);
            if (archive.root.method == 0) {
                ASSERT_EQ(changed, expected);
                continue;
            }
            // Deflated, the content may have other bytes, but not another meaning.
            const auto plate = Tesk::readPlate(changed, PartFormat::kThreeMf);
            ASSERT_EQ(plate.items.size(), 2u);
            EXPECT_EQ(plate.items[0].transform, PartTransform());
            EXPECT_EQ(plate.items[1].transform, kTurned);
            if (archive.root.isZip64Central || archive.end.isZip64) continue;
            const RawPackage is = rawPackage(changed);
            const RawPackage was = rawPackage(expected);
            EXPECT_EQ(is.comment, was.comment);
            ASSERT_EQ(is.entries.size(), was.entries.size());
            for (std::size_t i = 0; i < is.entries.size(); ++i) {
                if (i == place) continue;
                EXPECT_EQ(is.entries[i], was.entries[i]) << is.entries[i].name;
            }
        }
    }
}

TEST(Rewriting, RefusesUtf16) {
    const std::string narrow = model(kRoot, object(1, mesh(1)), item(1)).content;
    for (const bool isBigEndian : {false, true}) {
        for (const bool hasMark : {false, true}) {
            std::string wide = hasMark ? (isBigEndian ? "\xfe\xff" : "\xff\xfe") : "";
            for (const char c : narrow) {
                wide += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
            }
            const std::string package =
                makeZip({relationshipsTo("/3D/3dmodel.model"), {.name = kRoot, .content = wide}});
            EXPECT_EQ(Tesk::readPlate(package, PartFormat::kThreeMf).items.size(), 1u);
            EXPECT_EQ(
                troubleWith(package, {kTurned}),
                "3D/3dmodel.model: is encoded in UTF-16; only models in UTF-8 can be changed");
            EXPECT_EQ(Tesk::withTransforms(package, Transforms(1)), package);
        }
    }
}

TEST(Rewriting, RefusesWhatItCannotDo) {
    const std::string sound =
        makeZip({relationshipsTo("/3D/3dmodel.model"), model(kRoot, object(1, mesh(1)), item(1))});
    EXPECT_EQ(troubleWith(sound, {kTurned, kTurned}),
              "has 1 item, but transforms for 2 were given");
    PartTransform endless;
    endless.m[3] = std::numeric_limits<double>::infinity();
    EXPECT_EQ(troubleWith(sound, {endless}), "a transform to be written is not finite");
    EXPECT_EQ(troubleWith("", {kTurned}), "the file is empty (0 bytes)");
    EXPECT_EQ(troubleWith(makeZip({{.name = "a", .content = "b"}}), {kTurned}),
              "is not a 3MF file: the archive contains no 3D model");
    EXPECT_EQ(troubleWith(makeZip({relationshipsTo("/3D/gone.model")}), {kTurned}),
              "_rels/.rels names \"/3D/gone.model\" as the model, which is not in the archive");
    EXPECT_THAT(troubleWith(makeZip({{.name = kRoot, .content = "<model><item"}}), {kTurned}),
                HasSubstr("3D/3dmodel.model, line 1: not well-formed XML"));
}

TEST(Rewriting, RefusesArchivesWhoseFilesOverlap) {
    const ZipFile root = model(kRoot, object(1, mesh(1)), item(1));
    const std::string sound = makeZip({{.name = "other", .content = "abc", .method = 0}, root});
    const std::size_t first = sound.find("PK\1\2");
    std::string reachingIn = sound;
    reachingIn[first + 20] = reachingIn[first + 24] = 10;  // its sizes
    std::string shared = sound;
    const std::size_t second = sound.rfind("PK\1\2");
    shared.replace(first + 42, 4, sound.substr(second + 42, 4));  // its position
    for (const std::string& package : {reachingIn, shared}) {
        EXPECT_EQ(troubleWith(package, {kTurned}),
                  "the archive is damaged: two of its files overlap");
    }
}

}  // namespace
