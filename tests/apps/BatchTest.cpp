// The command batch, run as a user runs it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "BatchSupport.h"
#include "RunProgram.h"
#include "part/PathText.h"
#include "tools/TestSize.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;

class Batch : public testing::Test {
 protected:
    Batch() { fs::create_directory(m_in); }

    /// The batch of the input folder, with more arguments.
    ProgramResult batch(std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"batch", m_in.string(), "--results", m_results});
        return runTeskOrient(more);
    }

    void write(const std::string& name, const std::string& bytes) const {
        const fs::path path = m_in / App::pathOf(name);
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }

    json line(const std::string& name) const {
        const auto lines = linesByPath(m_results);
        const auto found = lines.find((m_in / name).make_preferred().string());
        EXPECT_NE(found, lines.end()) << name;
        return found == lines.end() ? json() : found->second;
    }

    TemporaryFolder m_folder;
    fs::path m_in = m_folder.file("in");
    std::string m_results = m_folder.file("results.jsonl");
    std::string m_out = m_folder.file("out");
};

TEST_F(Batch, EachPartHasTheResultOfASingleCall) {
    makeParts(m_in, 7);
    const ProgramResult result = batch({"--output-dir", m_out, "--jobs", "2"});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_THAT(result.out, HasSubstr("7 parts: 7 done, 0 failed"));
    const auto lines = linesByPath(m_results);
    EXPECT_EQ(lines.size(), 7u);
    for (auto [path, line] : lines) {
        SCOPED_TRACE(path);
        const std::string single = m_folder.file("single.stl");
        const ProgramResult alone = runTeskOrient({"orient", path, "--json", "-o", single});
        EXPECT_EQ(line["schema"], "tesk-orient/batch/1");
        EXPECT_EQ(line["status"], "ok");
        EXPECT_EQ(line["result"], json::parse(alone.out));
        EXPECT_EQ(line["input"]["size"], fs::file_size(path));
        EXPECT_GT(line["seconds"].get<double>(), 0.0);
        EXPECT_GT(line["peakMemoryBytes"].get<double>(), 1e6);
        EXPECT_EQ(readAll(line["output"].get<std::string>()), readAll(single));
        EXPECT_EQ(fs::path(line["output"].get<std::string>()),
                  m_out / fs::path(path).lexically_relative(m_in));
    }
    EXPECT_EQ(filesBelow(m_out).size(), 7u);
}

TEST_F(Batch, OtherCommandsTakeTheirOptions) {
    makeParts(m_in, 2);
    EXPECT_EQ(batch({"--command", "box", "--criterion", "around-axis", "--axis", "-1,0,2"}).code,
              0);
    for (json line : linesOf(m_results)) {
        EXPECT_EQ(line["result"]["schema"], "tesk-orient/box/1");
        EXPECT_EQ(line["result"]["settings"]["axis"], json({-1.0, 0.0, 2.0}));
        EXPECT_FALSE(line.contains("output"));
    }
    fs::remove(m_results);
    EXPECT_EQ(batch({"--command", "lay-flat", "--units", "cm", "--output-dir", m_out,
                     "--output-format", "off"})
                  .code,
              0);
    EXPECT_EQ(linesOf(m_results).size(), 2u);
    EXPECT_EQ(filesBelow(m_out).count("group0/part00000.off"), 1u);
}

TEST_F(Batch, RepeatedOptionsDoNotSwallowTheInputs) {
    makeParts(m_in, 1);
    const ProgramResult result =
        runTeskOrient({"batch", "--keep-off", "0,0,1:10", "--keep-off", "-1,0,0:10", "--include",
                       "*.stl", m_in.string(), "--results", m_results});
    EXPECT_EQ(result.code, 0) << result.error;
    ASSERT_EQ(linesOf(m_results).size(), 1u);
    EXPECT_EQ(linesOf(m_results)[0]["result"]["settings"]["keepOff"].size(), 2u);
}

TEST_F(Batch, WrongCommandLinesAreRefusedBeforeAnyWork) {
    makeParts(m_in, 1);
    for (const std::vector<std::string>& more :
         std::vector<std::vector<std::string>>{{"--command", "box", "--goal", "balanced"},
                                               {"--command", "box", "--criterion", "around-axis"},
                                               {"--rank", "13"},
                                               {"--fits", "much"},
                                               {"--timeout", "0"},
                                               {"--jobs", "0"},
                                               {"--memory-limit", "lots"},
                                               {"--output-format", "stl"},
                                               {"--retry-failed"},
                                               {"--json"}}) {
        const ProgramResult result = batch(more);
        EXPECT_EQ(result.code, 2) << more[0];
        EXPECT_THAT(result.error, HasSubstr("tesk-orient --help"));
        EXPECT_FALSE(fs::exists(m_results));
    }
    EXPECT_EQ(runTeskOrient({"batch", m_in.string()}).code, 2);
}

TEST_F(Batch, BrokenFilesAreLinesAmongTheOthers) {
    makeParts(m_in, 3);
    write("empty.stl", "");
    write("words.obj", "no mesh\n");
    write("flat.obj", "v 0 0 0\nv 10 0 0\nv 30 0 0\nf 1 2 3\n");
    const ProgramResult result = batch({"--output-dir", m_out, "--jobs", "2"});
    EXPECT_EQ(result.code, 5);
    EXPECT_THAT(result.error, HasSubstr("3 of 6 failed"));
    EXPECT_THAT(result.error, HasSubstr("empty.stl: the file is empty"));
    EXPECT_EQ(linesOf(m_results).size(), 6u);
    EXPECT_EQ(line("empty.stl")["status"], "failed");
    EXPECT_EQ(line("empty.stl")["error"]["code"], "cannot-read");
    EXPECT_THAT(line("empty.stl")["error"]["text"], HasSubstr("the file is empty"));
    EXPECT_FALSE(line("empty.stl").contains("result"));
    EXPECT_FALSE(line("empty.stl").contains("output"));
    EXPECT_EQ(filesBelow(m_out).size(), 3u);
}

TEST_F(Batch, TheBrokenSamplesAreALineEach) {
    const char* samples = std::getenv("TESK_MESH_DIR");
    const fs::path malformed = fs::path(samples != nullptr ? samples : TESK_MESH_DIR) / "malformed";
    if (!fs::is_directory(malformed)) GTEST_SKIP() << "no sample meshes in " << malformed;
    makeParts(m_in, 4);
    fs::copy(malformed, m_in / "malformed", fs::copy_options::recursive);
    const std::size_t count = filesBelow(m_in).size();
    const ProgramResult result = batch({"--include", "*", "--output-dir", m_out});
    EXPECT_EQ(result.code, 5);
    const auto lines = linesByPath(m_results);
    EXPECT_EQ(lines.size(), count);
    for (auto [path, line] : lines) {
        const ProgramResult alone = runTeskOrient({"orient", path, "--json", "-q"});
        EXPECT_EQ(line["status"], alone.code == 0 ? "ok" : "failed") << path;
        if (alone.code == 0) continue;
        EXPECT_EQ("tesk-orient: " + line["error"]["text"].get<std::string>() + "\n", alone.error);
    }
}

TEST_F(Batch, CodesTellFailuresApart) {
    makeParts(m_in, 1);
    const std::string part = "group0/part00000.stl";
    EXPECT_EQ(batch({"--fits", "1x1x1"}).code, 5);
    EXPECT_EQ(line(part)["error"]["code"], "no-pose");
    fs::remove(m_results);
    fs::create_directories(fs::path(m_out) / part);  // a folder in the output's place
    EXPECT_EQ(batch({"--output-dir", m_out}).code, 5);
    EXPECT_EQ(line(part)["error"]["code"], "cannot-write");
}

TEST_F(Batch, NamesOfAllKindsGoThrough) {
    std::vector<std::string> names = {"with blank.stl", "it's.stl", "\xc3\xbc\xe4\xb8\xad.stl",
                                      "100%25.stl", "-dash.stl"};
#if !defined(_WIN32)
    names.insert(names.end(), {"quo\"te.stl", "line\nfeed.stl", "back\\slash.stl", "\xff\xfe.stl"});
#endif
    for (const std::string& name : names) write(name, bumpyBall(4, 1));
    EXPECT_EQ(batch({"--output-dir", m_out}).code, 0);
    EXPECT_EQ(linesByPath(m_results).size(), names.size());
    const auto files = filesBelow(m_out);
    EXPECT_EQ(files.size(), names.size());
    for (const std::string& name : names) EXPECT_EQ(files.count(name), 1u) << name;
    // And are known again.
    const ProgramResult again = batch({"--output-dir", m_out, "--resume"});
    EXPECT_EQ(again.code, 0);
    EXPECT_THAT(again.out,
                HasSubstr("0 done, " + std::to_string(names.size()) + " in the results"));
}

TEST_F(Batch, FilesOfOneNameInTwoFoldersDoNotMeet) {
    write("a/x.stl", bumpyBall(4, 1));
    write("b/x.stl", bumpyBall(4, 2));
    EXPECT_EQ(batch({"--output-dir", m_out}).code, 0);
    const auto files = filesBelow(m_out);
    EXPECT_EQ(files.size(), 2u);
    EXPECT_NE(files.at("a/x.stl"), files.at("b/x.stl"));
    // Named one by one they would: the second fails, the first stays.
    const std::string other = m_folder.file("other");
    const ProgramResult result =
        runTeskOrient({"batch", (m_in / "a/x.stl").string(), (m_in / "b/x.stl").string(),
                       "--results", m_folder.file("r2"), "--output-dir", other});
    EXPECT_EQ(result.code, 5);
    EXPECT_THAT(result.error, HasSubstr("it is the output of"));
    EXPECT_EQ(filesBelow(other).at("x.stl"), files.at("a/x.stl"));
    EXPECT_EQ(linesOf(m_folder.file("r2")).size(), 2u);
}

TEST_F(Batch, APartIsNeverOverwrittenByItsOutput) {
    makeParts(m_in, 2);
    const auto before = filesBelow(m_in);
    const ProgramResult result = batch({"--output-dir", m_in.string() + "/."});
    EXPECT_EQ(filesBelow(m_in), before);
    EXPECT_EQ(result.code, 5);
    EXPECT_EQ(linesOf(m_results).size(), 2u);
    EXPECT_THAT(result.error, HasSubstr("it is the input"));
}

TEST_F(Batch, ResumingSkipsEqualContentAndSettingsOnly) {
    makeParts(m_in, 5);
    EXPECT_EQ(batch().code, 0);
    const auto first = comparableLines(m_results);
    EXPECT_THAT(batch({"--resume"}).out, HasSubstr("0 done, 5 in the results already"));
    EXPECT_EQ(comparableLines(m_results), first);
    write("group0/part00000.stl", bumpyBall(4, 99));
    EXPECT_THAT(batch({"--resume"}).out, HasSubstr("1 done, 4 in the results already"));
    EXPECT_THAT(batch({"--resume", "--overhang-angle", "50"}).out, HasSubstr("5 done"));
    EXPECT_THAT(batch({"--resume", "--overhang-angle", "50", "--jobs", "1"}).out,
                HasSubstr("0 done, 5 in the results already"));
    EXPECT_THAT(batch({"--resume", "--output-dir", m_out}).out, HasSubstr("5 done"));
    EXPECT_EQ(linesOf(m_results).size(), 16u);
}

TEST_F(Batch, FailuresCountWhenResumedAndAreTriedAgainOnRequest) {
    makeParts(m_in, 1);
    write("bad.stl", "no");
    EXPECT_EQ(batch().code, 5);
    EXPECT_EQ(batch({"--resume"}).code, 5);
    EXPECT_EQ(linesOf(m_results).size(), 2u);
    EXPECT_THAT(batch({"--resume", "--retry-failed"}).out, HasSubstr("1 done, 1 in the results"));
    EXPECT_EQ(linesOf(m_results).size(), 3u);
}

TEST_F(Batch, WhatIsNotThereIsALine) {
    const ProgramResult result =
        runTeskOrient({"batch", m_folder.file("none.stl"), "--results", m_results});
    EXPECT_EQ(result.code, 5);
    ASSERT_EQ(linesOf(m_results).size(), 1u);
    json line = linesOf(m_results)[0];
    EXPECT_THAT(line["error"]["text"], HasSubstr("no such file"));
    EXPECT_EQ(line["input"]["hash"], nullptr);
}

TEST_F(Batch, AnEmptyFolderIsDoneAtOnce) {
    const ProgramResult result = batch();
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_THAT(result.out, HasSubstr("0 parts: 0 done, 0 failed"));
}

TEST_F(Batch, APartThatTakesTooLongIsGivenUp) {
    makeParts(m_in, 3);
    write("big.stl", bumpyBall(600, 1));
    const std::string timeout = testsAreSmall() ? "0.6" : "0.25";
    EXPECT_EQ(batch({"--timeout", timeout, "--jobs", "1", "--output-dir", m_out}).code, 5);
    json big = line("big.stl");
    EXPECT_EQ(big["status"], "timeout");
    EXPECT_THAT(big["error"]["text"], HasSubstr("took longer than " + timeout + " s"));
    EXPECT_GE(big["seconds"].get<double>(), std::atof(timeout.c_str()));
    EXPECT_EQ(linesOf(m_results).size(), 4u);
    EXPECT_EQ(filesBelow(m_out).size(), 3u);
}

TEST_F(Batch, ResultsThatCannotBeWrittenEndItBeforeAnyWork) {
    makeParts(m_in, 1);
    for (const std::string& results : {m_in.string(), m_folder.file("none/results.jsonl")}) {
        const ProgramResult result =
            runTeskOrient({"batch", m_in.string(), "--results", results, "--resume"});
        EXPECT_EQ(result.code, 4) << result.error;
        EXPECT_THAT(result.error, HasSubstr("cannot be written"));
    }
}

}  // namespace
