#include "BatchSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <sstream>

#include "RunProgram.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

struct Point {
    float x, y, z;
};

/// Both poles, and `columns` points on each ring between them.
class Ball {
 public:
    Ball(int rings, unsigned seed) : m_rings(rings), m_columns(2 * rings), m_seed(seed) {}

    Point at(int ring, int column) const {
        const double turn = 2.0 * 3.14159265358979 * (column % m_columns) / m_columns;
        const double tilt = 3.14159265358979 * ring / m_rings;
        const bool isPole = ring == 0 || ring == m_rings;
        const double bump = isPole ? 0.0 : std::sin((3 + m_seed % 5) * tilt) * std::cos(5 * turn);
        const double r = 20.0 + 0.01 * (m_seed % 997) + 2.0 * bump;
        const double across = isPole ? 0.0 : r * std::sin(tilt);
        return {static_cast<float>(across * std::cos(turn)),
                static_cast<float>(across * std::sin(turn)),
                static_cast<float>(0.7 * r * std::cos(tilt))};
    }

    std::string stl() const {
        std::string triangles;
        for (int ring = 0; ring < m_rings; ++ring) {
            for (int column = 0; column < m_columns; ++column) {
                const Point a = at(ring, column), b = at(ring, column + 1);
                const Point c = at(ring + 1, column), d = at(ring + 1, column + 1);
                if (ring < m_rings - 1) add(triangles, a, c, d);
                if (ring > 0) add(triangles, a, d, b);
            }
        }
        const auto count = static_cast<std::uint32_t>(triangles.size() / 50);
        std::string bytes(80, ' ');
        bytes.append(reinterpret_cast<const char*>(&count), 4);
        return bytes + triangles;
    }

 private:
    static void add(std::string& bytes, Point a, Point b, Point c) {
        const Point corners[4] = {{0, 0, 0}, a, b, c};
        bytes.append(reinterpret_cast<const char*>(corners), sizeof(corners)).append(2, '\0');
    }

    int m_rings;
    int m_columns;
    unsigned m_seed;
};

}  // namespace

std::string bumpyBall(int rings, unsigned seed) {
    return Ball(rings, seed).stl();
}

void makeParts(const fs::path& folder, int count) {
    for (int i = 0; i < count; ++i) {
        const fs::path below = folder / ("group" + std::to_string(i % 3));
        fs::create_directories(below);
        std::string name = std::to_string(i);
        name.insert(0, name.size() < 5 ? 5 - name.size() : 0, '0');
        std::ofstream(below / ("part" + name + ".stl"), std::ios::binary)
            << bumpyBall(4 + i % 4, static_cast<unsigned>(i));
    }
}

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
        files[entry.path().lexically_relative(folder).generic_string()] = readAll(entry.path());
    }
    return files;
}
