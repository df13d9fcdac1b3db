#include "zip/ZipReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "TeskPartFiles/PartFiles.h"
#include "tools/ZipMaker.h"
#include "zip/ZipWriter.h"

namespace {

using Tesk::PartFileError;
using Tesk::files::zipped;
using Tesk::files::ZipReader;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::string someText() {
    std::string text;
    for (int i = 0; i < 20; ++i) text += "<vertex x=\"" + std::to_string(i * i) + "\"/>\n";
    return text;
}

/// What the reader says against an archive or one of its files; empty where both are sound.
std::string complaint(const std::string& bytes, const std::string& name) {
    try {
        ZipReader(bytes).contents(name);
    } catch (const PartFileError& error) {
        return error.what();
    }
    return {};
}

struct Kind {
    const char* name;
    ZipFile file;
    ZipEnd end = {};
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

std::vector<Kind> soundKinds() {
    const std::string text = someText();
    const std::string name = "3D/a.model";
    // An extended timestamp, and a record of no known kind.
    const std::string extra("UT\x05\0\x01\x80\0\0\0\xfe\xca\x02\0xy", 15);
    return {
        {"Stored", {.name = name, .content = text, .method = 0}},
        {"Deflated", {.name = name, .content = text}},
        {"StoredZip64", {.name = name, .content = text, .method = 0, .isZip64 = true}},
        {"DeflatedZip64", {.name = name, .content = text, .isZip64 = true}},
        {"Streamed", {.name = name, .content = text, .hasDescriptor = true}},
        {"StoredAndStreamed", {.name = name, .content = text, .method = 0, .hasDescriptor = true}},
        {"StreamedZip64", {.name = name, .content = text, .isZip64 = true, .hasDescriptor = true}},
        {"StoredAndStreamedZip64",
         {.name = name, .content = text, .method = 0, .isZip64 = true, .hasDescriptor = true}},
        {"WithExtraFields", {.name = name, .content = text, .extra = extra}},
        {"Zip64WithExtraFields", {.name = name, .content = text, .isZip64 = true, .extra = extra}},
        {"Zip64Directory", {.name = name, .content = text}, {.isZip64 = true}},
        {"Zip64InBothPlaces",
         {.name = name, .content = text, .isZip64 = true, .isZip64Central = true}},
        {"AllOfZip64",
         {.name = name,
          .content = text,
          .isZip64 = true,
          .isZip64Central = true,
          .hasDescriptor = true},
         {.isZip64 = true}},
        {"WithComment", {.name = name, .content = text}, {.comment = "made by hand"}},
        {"WithSignatureInComment", {.name = name, .content = text}, {.comment = "PK\5\6 PK\1\2"}},
        {"Utf8Name",
         {.name = "3D/gr\xc3\xb6\xc3\x9f"
                  "e.model",
          .content = text,
          .flags = 0x800}},
        {"Utf8NameWithoutItsFlag",
         {.name = "3D/gr\xc3\xb6\xc3\x9f"
                  "e.model",
          .content = text}},
        {"Empty", {.name = name, .content = ""}},
        {"EmptyAndStored", {.name = name, .content = "", .method = 0}},
        {"EmptyAndStreamedZip64",
         {.name = name, .content = "", .isZip64 = true, .hasDescriptor = true}},
        // Programs differ in what they repeat in front of the content; the directory counts.
        {"OtherLocalName", {.name = name, .content = text, .localName = "3D/other.model"}},
        {"OtherLocalSize", {.name = name, .content = text, .localSize = 7}},
        {"OtherLocalMethod", {.name = name, .content = text, .localMethod = 0}},
    };
}

class SoundArchive : public testing::TestWithParam<Kind> {};

TEST_P(SoundArchive, GivesItsContentBack) {
    const Kind& kind = GetParam();
    const ZipFile other = {.name = "mimetype", .content = "model/3mf", .method = 0};
    const std::string bytes =
        makeZip({other, kind.file, {.name = "last", .content = "end"}}, kind.end);
    ZipReader zip(bytes);
    EXPECT_THAT(zip.names(), ElementsAre("mimetype", kind.file.name, "last"));
    EXPECT_EQ(zip.contents(kind.file.name), kind.file.content);
    EXPECT_EQ(zip.contents("mimetype"), "model/3mf");
    EXPECT_EQ(zip.contents("last"), "end");
    EXPECT_EQ(zip.contents(kind.file.name), kind.file.content);
}

TEST_P(SoundArchive, CutAnywhereIsNoArchive) {
    const Kind& kind = GetParam();
    const std::string bytes = makeZip({kind.file}, kind.end);
    for (std::size_t size = 1; size < bytes.size() - kind.end.comment.size(); ++size) {
        ASSERT_NE(complaint(bytes.substr(0, size), kind.file.name), "") << size;
    }
}

TEST_P(SoundArchive, WithAnyByteChangedGivesTheSameContentOrNone) {
    const Kind& kind = GetParam();
    const std::string bytes = makeZip({kind.file}, kind.end);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (const int change : {0x01, 0x08, 0x80, 0xff}) {
            std::string broken = bytes;
            broken[i] = static_cast<char>(broken[i] ^ change);
            try {
                ASSERT_EQ(ZipReader(broken).contents(kind.file.name), kind.file.content) << i;
            } catch (const PartFileError& error) {
                ASSERT_STRNE(error.what(), "");
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryKind, SoundArchive, testing::ValuesIn(soundKinds()),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST(ZipReaderNames, FoldersAreLeftOut) {
    const std::string bytes = makeZip({{.name = "3D/", .content = "", .method = 0},
                                       {.name = "3D/a.model", .content = "a"},
                                       {.name = "3D/", .content = "", .method = 0}});
    const ZipReader zip(bytes);
    EXPECT_THAT(zip.names(), ElementsAre("3D/a.model"));
}

TEST(ZipReaderNames, AreFoundInAnyCaseAndFromTheRoot) {
    const std::string bytes = makeZip({{.name = "3D/Part.model", .content = "a"}});
    const ZipReader zip(bytes);
    EXPECT_EQ(zip.find("/3d/pART.MODEL"), "3D/Part.model");
    EXPECT_EQ(zip.find("3D/Part"), std::nullopt);
    EXPECT_EQ(zip.find(""), std::nullopt);
}

TEST(ZipReaderNames, AnEmptyArchiveHasNone) {
    EXPECT_TRUE(ZipReader(makeZip({})).names().empty());
}

TEST(ZipReaderNames, OfOldProgramsComeInUtf8) {
    const std::string bytes = makeZip({{.name = "gr\x94\xe1"
                                                "e",
                                        .content = "a"}});
    const ZipReader zip(bytes);
    EXPECT_THAT(zip.names(), ElementsAre("gr\xc3\xb6\xc3\x9f"
                                         "e"));
}

TEST(ZipReaderNames, TheSameTwiceIsRefused) {
    const std::string text = complaint(makeZip({{.name = "a", .content = ""},
                                                {.name = "3D/x", .content = "1"},
                                                {.name = "3d/X", .content = "2"}}),
                                       "a");
    EXPECT_EQ(text, "the archive has two files with the name \"3d/X\" (entries 2 and 3)");
}

TEST(ZipReaderNames, ThatLeadOutOfTheArchiveAreRefused) {
    const std::pair<const char*, const char*> names[] = {
        {"../evil", "\"../evil\" has a name that leads out through \"..\""},
        {"3D/../../evil", "leads out through \"..\""},
        {"3D/..", "leads out through \"..\""},
        {"../", "leads out through \"..\""},
        {"/etc/evil", "\"/etc/evil\" has a name that begins with \"/\""},
        {"3D\\evil", "\"3D\\evil\" has a backslash in its name"},
        {"C:/evil", "\"C:/evil\" has a name with a drive"},
        {"c:evil", "has a name with a drive"},
    };
    for (const auto& [name, text] : names) {
        EXPECT_THAT(
            complaint(makeZip({{.name = "a", .content = "a"}, {.name = name, .content = "b"}}),
                      "a"),
            HasSubstr(text));
    }
    for (const char* name : {"..a", "a..", "a/..b/c", "...", "3D/a:b"}) {
        EXPECT_EQ(complaint(makeZip({{.name = name, .content = "b"}}), name), "");
    }
}

TEST(ZipReaderNames, AreCutBetweenCharactersWhereTheyAreVeryLong) {
    const std::string name = std::string(149, 'x') + "\xc3\xb6\xc3\xb6\\";
    EXPECT_THAT(complaint(makeZip({{.name = name, .content = "b", .flags = 0x800}}), "a"),
                HasSubstr(std::string(149, 'x') + "...\""));
}

TEST(ZipReaderDamage, AWrongChecksumIsNoticed) {
    for (const std::uint16_t method : {0, 8}) {
        for (const bool isZip64 : {false, true}) {
            const ZipFile file = {.name = "3D/a.model",
                                  .content = someText(),
                                  .method = method,
                                  .isZip64 = isZip64,
                                  .wrongCrc = 1};
            EXPECT_EQ(complaint(makeZip({file}), "3D/a.model"),
                      "its file \"3D/a.model\" cannot be unpacked: the archive is damaged "
                      "(CRC error)");
        }
    }
}

TEST(ZipReaderDamage, ABrokenDirectoryIsNoticed) {
    const ZipFile file = {.name = "a", .content = someText()};
    for (const bool isZip64 : {false, true}) {
        EXPECT_THAT(complaint(makeZip({file}, {.isZip64 = isZip64, .moreFiles = 1}), "a"),
                    HasSubstr("archive is damaged"));
        EXPECT_NE(complaint(makeZip({file}, {.isZip64 = isZip64, .wrongOffset = 1}), "a"), "");
        EXPECT_NE(complaint(makeZip({file}, {.isZip64 = isZip64, .wrongOffset = 1u << 31}), "a"),
                  "");
    }
    EXPECT_THAT(complaint(makeZip({file}, {.disk = 1}), "a"), HasSubstr("zip archive in several"));
}

TEST(ZipReaderDamage, OtherBytesAreNoArchive) {
    for (const char* bytes : {"PK but no archive", "x", "PK\3\4", "PK\5\6"}) {
        EXPECT_EQ(complaint(bytes, "a"),
                  "is not a 3MF file: it is not a zip archive, or cut short");
    }
}

TEST(ZipReaderDamage, AnEncryptedFileIsNamed) {
    const std::string bytes =
        makeZip({{.name = "open", .content = "a"}, {.name = "secret", .content = "b", .flags = 1}});
    EXPECT_EQ(complaint(bytes, "open"), "");
    EXPECT_EQ(complaint(bytes, "secret"),
              "its file \"secret\" is encrypted, which 3MF does not allow");
}

TEST(ZipReaderDamage, AnotherMethodIsNamed) {
    for (const auto& [method, text] : {std::pair<std::uint16_t, const char*>{1, "method 1;"},
                                       {9, "method 9 (Deflate64);"},
                                       {12, "method 12 (bzip2);"},
                                       {14, "method 14 (LZMA);"},
                                       {93, "method 93 (Zstandard);"},
                                       {95, "method 95 (XZ);"}}) {
        EXPECT_THAT(complaint(makeZip({{.name = "a", .content = "abc", .method = method}}), "a"),
                    AllOf(HasSubstr("its file \"a\" is packed by"), HasSubstr(text)));
    }
}

TEST(ZipReaderLimit, FarMoreThanHonestFilesUnpackToIsRefused) {
    const std::string bomb(8 << 20, ' ');
    EXPECT_EQ(complaint(makeZip({{.name = "a", .content = bomb}}), "a"),
              "unpacks to more than 200 times its size; refused");
    EXPECT_EQ(complaint(makeZip({{.name = "a", .content = bomb, .method = 0}}), "a"), "");
}

TEST(ZipReaderLimit, CountsAllReadsTogether) {
    const std::string bytes = makeZip({{.name = "a", .content = std::string(900'000, ' ')}});
    ZipReader zip(bytes);
    EXPECT_EQ(zip.contents("a").size(), 900'000u);
    EXPECT_EQ(zip.unpackedSize(), zip.totalSize());
    EXPECT_THROW(zip.contents("a"), PartFileError);
}

TEST(ZipWriting, IsReadBackInOrder) {
    const std::string bytes = zipped({{"b", "first"},
                                      {"3D/gr\xc3\xb6\xc3\x9f"
                                       "e",
                                       someText()},
                                      {"a", std::string("\0\xff", 2)},
                                      {"empty", ""}});
    ZipReader zip(bytes);
    EXPECT_THAT(zip.names(), ElementsAre("b",
                                         "3D/gr\xc3\xb6\xc3\x9f"
                                         "e",
                                         "a", "empty"));
    EXPECT_EQ(zip.contents("b"), "first");
    EXPECT_EQ(zip.contents("3D/gr\xc3\xb6\xc3\x9f"
                           "e"),
              someText());
    EXPECT_EQ(zip.contents("a"), std::string("\0\xff", 2));
    EXPECT_EQ(zip.contents("empty"), "");
}

TEST(ZipWriting, PacksWhatDoesNotShrink) {
    std::string noise;
    for (std::uint32_t i = 0; i < 400'000; ++i) noise += std::to_string(i * 2654435761u);
    EXPECT_EQ(ZipReader(zipped({{"noise", noise}})).contents("noise"), noise);
}

TEST(ZipWriting, TwoFilesOfOneNameAreAnError) {
    EXPECT_THROW(zipped({{"a", "1"}, {"a", "2"}}), PartFileError);
}

}  // namespace
