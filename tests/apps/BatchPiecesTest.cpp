// The pieces of a batch, linked: names, lists, the results file, texts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Failure.h"
#include "RunProgram.h"
#include "batch/BatchFormat.h"
#include "batch/BatchProgress.h"
#include "batch/ContentHash.h"
#include "batch/Glob.h"
#include "batch/InputList.h"
#include "batch/OutputPlan.h"
#include "batch/ResultsFile.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(Glob, StarsStayInAFolderAndDoubleStarsDoNot) {
    EXPECT_TRUE(App::globMatches("*.stl", "a.stl"));
    EXPECT_TRUE(App::globMatches("*.stl", "A.STL"));
    EXPECT_FALSE(App::globMatches("*.stl", "a.stl.bak"));
    EXPECT_FALSE(App::globMatches("*.stl", "x/a.stl"));
    EXPECT_TRUE(App::globMatches("**.stl", "x/y/a.stl"));
    EXPECT_TRUE(App::globMatches("x/*/b*.stl", "x/yy/bb.stl"));
    EXPECT_FALSE(App::globMatches("x/*/b*.stl", "x/y/y/bb.stl"));
    EXPECT_TRUE(App::globMatches("x/**/b.stl", "x/y/y/b.stl"));
    EXPECT_TRUE(App::globMatches("**a*b", "xa/yazb"));
    EXPECT_TRUE(App::globMatches("a**", "a"));
    EXPECT_FALSE(App::globMatches("a?c", "a/c"));
    EXPECT_TRUE(App::globMatches("", ""));
    EXPECT_FALSE(App::globMatches("", "a"));
}

TEST(Glob, SetsTakeRangesAndNegation) {
    EXPECT_TRUE(App::globMatches("v[0-3].stl", "v2.stl"));
    EXPECT_FALSE(App::globMatches("v[0-3].stl", "v4.stl"));
    EXPECT_TRUE(App::globMatches("v[!0-3].stl", "v4.stl"));
    EXPECT_FALSE(App::globMatches("v[!0-3].stl", "v1.stl"));
    EXPECT_TRUE(App::globMatches("[]a]", "]"));
    EXPECT_TRUE(App::globMatches("[a-]", "-"));
    EXPECT_TRUE(App::globMatches("a[b", "a[b"));
}

TEST(Glob, APatternWithoutASlashIsForTheName) {
    EXPECT_TRUE(App::globMatchesFile("*.stl", "x/y/a.stl"));
    EXPECT_FALSE(App::globMatchesFile("x/*.stl", "x/y/a.stl"));
    EXPECT_TRUE(App::globMatchesFile("**/a.stl", "a.stl"));
    EXPECT_TRUE(App::globMatchesFile("**/a.stl", "x/a.stl"));
}

std::vector<std::string> namesOf(const std::vector<App::BatchInput>& inputs, const fs::path& root) {
    std::vector<std::string> names;
    for (const auto& input : inputs)
        names.push_back(input.path.lexically_relative(root).generic_string());
    return names;
}

TEST(InputList, AFolderIsSearchedInTheOrderOfNames) {
    const TemporaryFolder folder;
    const fs::path root = folder.file("in");
    for (const char* name : {"b.stl", "a/z.obj", "a/c/d.3MF", "a.txt", "c.ply", "out/b.stl"}) {
        fs::create_directories((root / name).parent_path());
        std::ofstream(root / name) << "x";
    }
    EXPECT_THAT(namesOf(App::listInputs({{root}, {}, {}, {}, {root / "out"}}), root),
                ElementsAre("a/c/d.3MF", "a/z.obj", "b.stl", "c.ply"));
    EXPECT_THAT(namesOf(App::listInputs({{root}, {}, {"*.txt", "a/*.obj"}, {}, {}}), root),
                ElementsAre("a/z.obj", "a.txt"));
    EXPECT_THAT(namesOf(App::listInputs({{root}, {}, {"?.*"}, root / "b.stl", {}}), root),
                ElementsAre("a/c/d.3MF", "a/z.obj", "a.txt", "c.ply", "out/b.stl"));
    // Named again, in another way: still once.
    EXPECT_EQ(App::listInputs({{root, root / "a" / ".." / "b.stl"}, {}, {}, {}, {}}).size(), 5u);
}

TEST(InputList, OutputsKeepTheirPlacesBelowTheFolder) {
    const TemporaryFolder folder;
    for (const char* name : {"p/a/x.stl", "q/a/x.stl"}) {
        fs::create_directories(fs::path(folder.file(name)).parent_path());
        folder.write(name, "x");
    }
    const auto one = App::listInputs({{folder.file("p")}, {}, {}, {}, {}});
    ASSERT_EQ(one.size(), 1u);
    EXPECT_EQ(one[0].relative.generic_string(), "a/x.stl");
    const auto two = App::listInputs({{folder.file("p"), folder.file("q")}, {}, {}, {}, {}});
    ASSERT_EQ(two.size(), 2u);
    EXPECT_EQ(two[0].relative.generic_string(), "p/a/x.stl");
    EXPECT_EQ(two[1].relative.generic_string(), "q/a/x.stl");
    const auto listed =
        App::listInputs({{}, {"r/s.stl", "../t.stl", folder.file("p/a/x.stl")}, {}, {}, {}});
    ASSERT_EQ(listed.size(), 3u);
    EXPECT_EQ(listed[0].relative.generic_string(), "r/s.stl");
    EXPECT_EQ(listed[1].relative.generic_string(), "t.stl");
    EXPECT_EQ(listed[2].relative.generic_string(), "x.stl");
}

TEST(InputList, AListIsSeparatedByLineFeedsOrByNul) {
    EXPECT_THAT(App::namesIn("a b\n\nc\n"), ElementsAre(fs::path("a b"), fs::path("c")));
    EXPECT_THAT(App::namesIn(std::string_view("a\nb\0c", 5)),
                ElementsAre(fs::path("a\nb"), fs::path("c")));
    EXPECT_TRUE(App::namesIn("").empty());
}

TEST(OutputPlan, ANameIsGivenOnceAndNeverThatOfAnInput) {
    const TemporaryFolder folder;
    const fs::path out = folder.file("out");
    const auto plan = App::planOutputs({{folder.file("x.stl"), "x.stl", ""},
                                        {folder.file("x.obj"), "x.obj", ""},
                                        {folder.file("y.stl"), "y.stl", ""},
                                        {out / "y.ply", "z.stl", ""}},
                                       out, ".ply");
    ASSERT_EQ(plan.size(), 4u);
    EXPECT_EQ(plan[0].problem, "");
    EXPECT_EQ(plan[0].path, out / "x.ply");
    EXPECT_THAT(plan[1].problem, HasSubstr("it is the output of"));
    EXPECT_THAT(plan[2].problem, HasSubstr("it is the input"));
    EXPECT_EQ(plan[3].problem, "");
}

TEST(OutputPlan, LeftoversGoAndNothingElse) {
    const TemporaryFolder folder;
    for (const char* name : {"a.stl", "a.stl.0123abcd.tmp", "a.stl.0123abc.tmp",
                             "b.stl.0123abcd.tmp", "a.stl.0123ABCE.tmp"}) {
        folder.write(name, "x");
    }
    App::removeLeftovers(fs::path(folder.file("a.stl")));
    EXPECT_FALSE(fs::exists(folder.file("a.stl.0123abcd.tmp")));
    EXPECT_EQ(folder.countFiles(), 4u);
}

TEST(ContentHash, ItIsTheStandardOne) {
    // As xxhsum -H2 prints it.
    EXPECT_EQ(App::contentHash(""), "xxh128:99aa06d3014798d86001c324468d497f");
    const TemporaryFolder folder;
    std::string bytes(1'000'000, 'a');
    for (std::size_t i = 0; i < bytes.size(); i += 7) bytes[i] = static_cast<char>(i);
    const auto identity = App::identify(folder.write("file", bytes));
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->size, bytes.size());
    EXPECT_EQ(identity->hash, App::contentHash(bytes));
    EXPECT_FALSE(App::identify(folder.file("none")));
    EXPECT_FALSE(App::identify(folder.file("")));
}

TEST(BatchFormat, NamesOfAnyBytesComeBack) {
    std::string name;
    for (int byte = 1; byte < 256; ++byte) name += static_cast<char>(byte);
    EXPECT_EQ(App::percentDecoded(App::percentEncoded(name)), name);
    EXPECT_EQ(App::percentEncoded("a b\n%\xff"), "a%20b%0A%25%FF");
    EXPECT_EQ(App::percentDecoded("100%, %4"), "100%, %4");
    const auto job = App::jobIn(App::lineOf(App::WorkerJob{7, name, "o\xff", "", "r\xfe", "f"}));
    ASSERT_TRUE(job);
    EXPECT_EQ(job->id, 7u);
    EXPECT_EQ(job->input, name);
    EXPECT_EQ(job->output, "o\xff");
    EXPECT_EQ(job->report, "r\xfe");
    EXPECT_FALSE(App::jobIn("7"));
}

App::BatchEntry entryOf(const std::string& path) {
    App::BatchEntry entry;
    entry.path = path;
    entry.identity = App::FileIdentity{3, "h"};
    entry.settingsHash = "s";
    entry.status = "ok";
    entry.result = App::Json::object();
    return entry;
}

TEST(BatchFormat, ALineTellsALaterRunWhatItNeeds) {
    for (const std::string path : {"a.stl", "\xff\n\"", "\xc3\xbc"}) {
        const std::string line = App::lineOf(entryOf(path));
        EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
        EXPECT_TRUE(App::isUtf8(line));
        const auto held = App::heldLineIn(line);
        ASSERT_TRUE(held);
        EXPECT_EQ(held->path, path);
        EXPECT_EQ(held->hash, "h");
        EXPECT_EQ(held->settingsHash, "s");
        EXPECT_EQ(held->status, "ok");
    }
    EXPECT_FALSE(App::heldLineIn("{\"schema\":\"tesk-orient/orient/2\",\"input\":{}}"));
}

TEST(ResultsFile, ATornLastLineIsCutOff) {
    const TemporaryFolder folder;
    const std::string first = App::lineOf(entryOf("a"));
    const std::string second = App::lineOf(entryOf("b"));
    const std::string third = App::lineOf(entryOf("c"));
    for (const std::string& torn :
         {std::string(), second.substr(0, second.size() - 1), second.substr(0, 1),
          std::string(900, '\0'), second.substr(0, 9) + "\n"}) {
        const std::string path = folder.write("r", first + torn);
        {
            App::ResultsFile file = App::ResultsFile::resume(path);
            ASSERT_EQ(file.held().size(), 1u);
            EXPECT_EQ(file.held()[0].path, "a");
            file.append(third);
            file.sync();
        }
        EXPECT_EQ(readAll(path), first + third);
    }
}

template <class Work>
std::string failureOf(Work work, App::ExitCode code) {
    try {
        work();
    } catch (const App::Failure& failure) {
        EXPECT_EQ(failure.code(), code);
        return failure.what();
    }
    ADD_FAILURE() << "no failure";
    return {};
}

TEST(ResultsFile, WhatIsNoResultIsLeftAlone) {
    const TemporaryFolder folder;
    const std::string text = "a,b\n1,2\n" + App::lineOf(entryOf("a"));
    const std::string path = folder.write("r", text);
    EXPECT_THAT(failureOf([&] { App::ResultsFile::resume(path); }, App::ExitCode::kInput),
                HasSubstr("line 1 is no result of a batch"));
    EXPECT_THAT(failureOf([&] { App::ResultsFile::create(path); }, App::ExitCode::kOutput),
                HasSubstr("is there already"));
    EXPECT_EQ(readAll(path), text);
}

TEST(ResultsFile, TwoBatchesDoNotShareIt) {
    const TemporaryFolder folder;
    const App::ResultsFile file = App::ResultsFile::create(folder.file("r"));
    EXPECT_THAT(
        failureOf([&] { App::ResultsFile::resume(folder.file("r")); }, App::ExitCode::kOutput),
        HasSubstr("another batch is writing to it"));
}

TEST(ResultsFile, ItIsMissedWhenItVanishesOrChanges) {
    const TemporaryFolder folder;
    const std::string path = folder.file("r");
    const std::string line = App::lineOf(entryOf("a"));
    App::ResultsFile file = App::ResultsFile::create(path);
    file.append(line);
    std::ofstream(path, std::ios::binary | std::ios::app) << "mine\n";
    EXPECT_THAT(failureOf([&] { file.append(line); }, App::ExitCode::kOutput),
                HasSubstr("was changed by another program"));
    fs::rename(path, path + ".old");
    EXPECT_THAT(failureOf([&] { file.append(line); }, App::ExitCode::kOutput),
                HasSubstr("has vanished"));
}

TEST(BatchProgress, ItTellsDoneFailedRateAndTimeLeft) {
    App::BatchCounts counts{.total = 10'000, .done = 500, .skipped = 2'000, .failed = 3};
    EXPECT_EQ(App::progressText(counts, 50.0, 0), "2,500 of 10,000, 3 failed, 10.0/s, 13 min left");
    EXPECT_EQ(App::progressText(counts, 50.0, 4).substr(0, 7), "[#   ] ");
    counts.done = 0;
    EXPECT_EQ(App::progressText(counts, 50.0, 0), "2,000 of 10,000, 3 failed");
    EXPECT_EQ(App::progressText({.total = 0}, 0.0, 2), "[##] 0 of 0, 0 failed");
    EXPECT_EQ(App::printable("a\nb\x1b[2K\xff"), "a\\nb\\x1b[2K\xff");
}

}  // namespace
