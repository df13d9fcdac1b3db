#include "BatchSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "RunProgram.h"

namespace fs = std::filesystem;
using nlohmann::json;

std::vector<json> linesOf(const fs::path& results) {
    const std::string text = readAll(results);
    EXPECT_TRUE(text.empty() || text.back() == '\n') << "the last line is torn";
    std::istringstream in(text);
    std::vector<json> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(json::parse(line, nullptr, /*allow_exceptions=*/false));
        EXPECT_TRUE(lines.back().is_object()) << line.substr(0, 200);
    }
    return lines;
}

std::map<std::string, json> linesByPath(const fs::path& results) {
    std::map<std::string, json> byPath;
    for (json& line : linesOf(results)) {
        const json& input = line["input"];
        const std::string path = input.value("pathBytes", input.value("path", ""));
        EXPECT_TRUE(byPath.emplace(path, std::move(line)).second) << path << " is there twice";
    }
    return byPath;
}

std::vector<std::string> comparableLines(const fs::path& results) {
    std::vector<std::string> lines;
    for (json& line : linesOf(results)) {
        line.erase("seconds");
        line.erase("peakMemoryBytes");
        lines.push_back(line.dump());
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::map<std::string, std::string> filesBelow(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        const std::u8string name = entry.path().lexically_relative(folder).generic_u8string();
        files[{name.begin(), name.end()}] = readAll(entry.path());
    }
    return files;
}
