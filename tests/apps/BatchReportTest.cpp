// Pages of a batch.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "BatchSupport.h"
#include "RunProgram.h"
#include "Version.h"
#include "batch/BatchSettings.h"
#include "batch/ContentHash.h"
#include "part/PathText.h"
#include "threemf/PlatePackage.h"
#include "tools/ZipMaker.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;

class BatchReports : public testing::Test {
 protected:
    BatchReports() { fs::create_directory(m_in); }

    ProgramResult batch(std::vector<std::string> more = {}) const {
        more.insert(more.begin(),
                    {"batch", m_in.string(), "--results", m_results, "--report-dir", m_pages});
        return runTeskOrient(more);
    }

    void write(const std::string& name, const std::string& bytes) const {
        const fs::path path = m_in / App::pathOf(name);
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }

    TemporaryFolder m_folder;
    fs::path m_in = m_folder.file("in");
    std::string m_results = m_folder.file("results.jsonl");
    std::string m_pages = m_folder.file("pages");
};

TEST_F(BatchReports, EachPartHasThePageOfASingleCall) {
    makeParts(m_in, 3);
    write("left/plate.3mf", makeZip(platePackage()));
    const ProgramResult result = batch({"--jobs", "2", "--overhang-angle", "50"});
    EXPECT_EQ(result.code, 0) << result.error;
    const auto pages = filesBelow(m_pages);
    EXPECT_EQ(pages.size(), 4u);
    EXPECT_EQ(pages.count("left/plate.html"), 1u);
    for (auto [path, line] : linesByPath(m_results)) {
        SCOPED_TRACE(path);
        EXPECT_FALSE(line.contains("output"));
        const fs::path page = line["report"].get<std::string>();
        EXPECT_EQ(page,
                  (m_pages / fs::path(path).lexically_relative(m_in)).replace_extension(".html"));
        const std::string single = m_folder.file("single.html");
        runTeskOrient({"orient", path, "-q", "--overhang-angle", "50", "--report", single});
        EXPECT_TRUE(readAll(page) == readAll(single)) << "the pages differ";
    }
}

TEST_F(BatchReports, PagesAndPartsGoTogether) {
    makeParts(m_in, 2);
    const std::string out = m_folder.file("out");
    EXPECT_EQ(batch({"--output-dir", out, "--output-format", "ply"}).code, 0);
    EXPECT_EQ(filesBelow(m_pages).size(), 2u);
    EXPECT_EQ(filesBelow(out).count("group1/part00001.ply"), 1u);
    EXPECT_EQ(filesBelow(m_pages).count("group1/part00001.html"), 1u);
}

TEST_F(BatchReports, TheSecondOfTwoPartsWithOnePageFails) {
    write("x.obj", "v 0 0 0\nv 9 0 0\nv 0 9 0\nv 0 0 9\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 1 4 3\n");
    write("x.stl", bumpyBall(4, 2));
    const ProgramResult result = batch();
    EXPECT_EQ(result.code, 5);
    EXPECT_THAT(result.error, HasSubstr("x.html: cannot be written: it is the output of"));
    EXPECT_EQ(filesBelow(m_pages).size(), 1u);
    EXPECT_EQ(linesOf(m_results).size(), 2u);
}

TEST_F(BatchReports, APageThatCannotBeWrittenIsAFailureWithItsName) {
    makeParts(m_in, 2);
    fs::create_directories(fs::path(m_pages) / "group0/part00000.html");
    EXPECT_EQ(batch().code, 5);
    json line = linesByPath(m_results)[(m_in / "group0/part00000.stl").make_preferred().string()];
    EXPECT_EQ(line["error"]["code"], "cannot-write");
    EXPECT_THAT(line["error"]["text"], HasSubstr("part00000.html: is a folder"));
    EXPECT_FALSE(line.contains("report"));
    EXPECT_EQ(filesBelow(m_pages).size(), 1u);
}

TEST_F(BatchReports, ResumingMakesThePagesThatAreNotThere) {
    makeParts(m_in, 3);
    EXPECT_EQ(runTeskOrient({"batch", m_in.string(), "--results", m_results}).code, 0);
    EXPECT_THAT(batch({"--resume"}).out, HasSubstr("3 done, 0 failed"));
    EXPECT_THAT(batch({"--resume"}).out, HasSubstr("0 done, 3 in the results already"));
    const auto pages = filesBelow(m_pages);
    fs::remove(fs::path(m_pages) / "group1/part00001.html");
    EXPECT_THAT(batch({"--resume"}).out, HasSubstr("1 done, 2 in the results already"));
    EXPECT_EQ(filesBelow(m_pages), pages);
}

TEST_F(BatchReports, ResumingRemovesWhatAKilledWorkerLeft) {
    makeParts(m_in, 1);
    EXPECT_EQ(batch().code, 0);
    const fs::path left = fs::path(m_pages) / "group0/part00000.html.0123abcd.tmp";
    std::ofstream(left) << "half";
    EXPECT_EQ(batch({"--resume"}).code, 0);
    EXPECT_FALSE(fs::exists(left));
}

TEST_F(BatchReports, PagesAmongThePartsAreNoParts) {
    makeParts(m_in, 2);
    m_pages = (m_in / "pages").string();
    EXPECT_EQ(batch({"--include", "**"}).code, 0);
    EXPECT_THAT(batch({"--include", "**", "--resume"}).out, HasSubstr("0 done, 2 in the results"));
}

TEST_F(BatchReports, OnlyPosesHavePages) {
    makeParts(m_in, 1);
    for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
             {"--command", "box"}, {"--command", "lay-flat"}, {"--goal", "weights"}}) {
        const ProgramResult result = batch(more);
        EXPECT_EQ(result.code, 2);
        EXPECT_THAT(result.error, HasSubstr("--report-dir"));
        EXPECT_THAT(result.error, HasSubstr("tesk-orient --help"));
    }
    EXPECT_FALSE(fs::exists(m_results));
    EXPECT_FALSE(fs::exists(m_pages));
}

TEST(BatchSettings, PagesChangeTheHashAndTheirAbsenceDoesNot) {
    App::BatchOptions options;
    options.command = "orient";
    options.arguments = {"--rank=2"};
    const std::string without = App::settingsHashOf(options);
    EXPECT_EQ(without, App::contentHash("{\"version\":\"" TESK_VERSION
                                        "\",\"command\":\"orient\",\"arguments\":[\"--rank=2\"],"
                                        "\"writesParts\":false,\"outputExtension\":\"\"}\n"));
    options.reportFolder = "a";
    const std::string with = App::settingsHashOf(options);
    EXPECT_NE(with, without);
    options.reportFolder = "b";
    EXPECT_EQ(App::settingsHashOf(options), with);
}

}  // namespace
