#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <tuple>

#include "ReadText.h"
#include "mesh/PositionTable.h"
#include "mesh/Workers.h"

namespace {

using Tesk::PartMesh;
using Tesk::PartPoint;

/// The plain way: positions in an ordered map.
PartMesh plainlyWelded(const PartMesh& mesh) {
    PartMesh welded;
    std::map<std::tuple<float, float, float>, std::int32_t> seen;
    for (const auto& triangle : mesh.triangles) {
        auto& corners = welded.triangles.emplace_back();
        for (std::size_t k = 0; k < 3; ++k) {
            const PartPoint& p = mesh.positions[static_cast<std::size_t>(triangle[k])];
            const auto next = static_cast<std::int32_t>(seen.size());
            const auto [place, isNew] = seen.try_emplace({p.x, p.y, p.z}, next);
            if (isNew) welded.positions.push_back({p.x + 0.0f, p.y + 0.0f, p.z + 0.0f});
            corners[k] = place->second;
        }
    }
    return welded;
}

/// Triangles between random points of a grid, some of them with the other sign of zero.
PartMesh randomMesh(std::size_t triangles, std::uint32_t side, unsigned seed) {
    std::mt19937 random(seed);
    const auto coordinate = [&] {
        const auto value = static_cast<float>(random() % side) - static_cast<float>(side / 2);
        return value == 0.0f && random() % 2 == 0 ? -0.0f : value;
    };
    PartMesh mesh;
    for (std::size_t i = 0; i < triangles * 3; ++i) {
        mesh.positions.push_back({coordinate(), coordinate(), coordinate()});
    }
    const auto count = static_cast<std::uint32_t>(mesh.positions.size());
    for (std::size_t i = 0; i < triangles; ++i) {
        auto& corners = mesh.triangles.emplace_back();
        for (auto& corner : corners) corner = static_cast<std::int32_t>(random() % count);
    }
    return mesh;
}

bool hasNegativeZero(const PartMesh& mesh) {
    for (const PartPoint& p : mesh.positions) {
        for (const float value : {p.x, p.y, p.z}) {
            if (value == 0.0f && std::signbit(value)) return true;
        }
    }
    return false;
}

TEST(Welding, IsThatOfAPlainMapForAnyNumberOfThreads) {
    for (const auto& [triangles, side] : {std::pair(1u, 2u), std::pair(50u, 3u),
                                          std::pair(200'000u, 30u), std::pair(100'000u, 4000u)}) {
        const PartMesh mesh = randomMesh(triangles, side, triangles);
        const PartMesh plain = plainlyWelded(mesh);
        for (const unsigned threads : {1u, 2u, 5u}) {
            const PartMesh welded = Tesk::weld(mesh, threads);
            EXPECT_EQ(welded, plain) << triangles << " triangles, " << threads << " threads";
            EXPECT_FALSE(hasNegativeZero(welded));
        }
    }
}

TEST(Welding, OfASoupOfATriangularFileIsTheSame) {
    // A soup with more distinct corners than a closed surface has makes a second, larger table.
    for (const std::uint32_t side : {6u, 100'000u}) {
        const PartMesh mesh = randomMesh(60'000, side, side);
        const std::string bytes = Tesk::encodePart(mesh, Tesk::PartFormat::kStl);
        for (const unsigned threads : {1u, 3u}) {
            Tesk::ReadOptions options;
            options.threads = threads;
            EXPECT_EQ(Tesk::readPart(bytes, Tesk::PartFormat::kStl, options).mesh,
                      plainlyWelded(mesh));
        }
    }
}

TEST(Welding, OfNothingIsNothing) {
    EXPECT_EQ(Tesk::weld({}), PartMesh());
}

TEST(Welding, RefusesWhatIsNotFinite) {
    PartMesh mesh{{{0, 0, 0}, {1, 0, NAN}, {0, 1, 0}}, {{0, 1, 2}}};
    EXPECT_THROW(Tesk::weld(mesh), Tesk::PartFileError);
}

TEST(PositionTable, SaysWhenItHasNoRoom) {
    Tesk::files::PositionTable table(2);
    std::size_t news = 0;
    const std::uint32_t first = table.slotOf({1, 2, 3}, news);
    EXPECT_EQ(table.slotOf({1, 2, 3}, news), first);
    EXPECT_NE(table.slotOf({3, 2, 1}, news), first);
    EXPECT_EQ(table.slotOf({0, 0, 0}, news), Tesk::files::PositionTable::kNoRoom);
    EXPECT_EQ(news, 2u);
}

TEST(Workers, ShareEverythingOnce) {
    for (const unsigned workers : {1u, 2u, 7u}) {
        std::vector<int> seen(100);
        Tesk::files::inShares(100, workers, [&](std::size_t first, std::size_t last, unsigned) {
            for (std::size_t i = first; i < last; ++i) ++seen[i];
        });
        EXPECT_EQ(seen, std::vector<int>(100, 1));
    }
}

TEST(Workers, TheLowestShareThatFailsIsHeard) {
    try {
        Tesk::files::inShares(4, 4, [](std::size_t, std::size_t, unsigned worker) {
            if (worker > 0) throw static_cast<int>(worker);
        });
        FAIL();
    } catch (int worker) {
        EXPECT_EQ(worker, 1);
    }
}

}  // namespace
