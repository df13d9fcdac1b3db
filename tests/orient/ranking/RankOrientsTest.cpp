#include "orient/ranking/RankOrients.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "CompareRecords.h"
#include "orient/rotation/CandidateRotation.h"
#include "plain/PlainRanking.h"
#include "tools/TestRandom.h"

using namespace Tesk::orient;

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;
using Orientations = std::vector<OptOrientation>;
using Floats = std::vector<float>;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

Floats normalised(Floats values) {
    normaliseScores(values);
    return values;
}

/// Records that are told apart by their height, with the given scores.
Orientations recordsWithScores(const Floats& scores) {
    Orientations records;
    for (const float score : scores) {
        records.emplace_back();
        records.back().score = score;
        records.back().height = static_cast<float>(records.size() - 1);
    }
    return records;
}

std::vector<int> heightsOf(const Orientations& records) {
    std::vector<int> heights;
    for (const OptOrientation& r : records) heights.push_back(static_cast<int>(r.height));
    return heights;
}

/// n directions in a half circle, all different.
std::vector<UVector3<float>> someDirections(std::size_t n) {
    std::vector<UVector3<float>> directions = {{0, 0, -1}, {0, 0, 1}};
    for (std::size_t i = 2; i < n; ++i) {
        directions.push_back({1.0f, static_cast<float>(i), 0.5f});
    }
    directions.resize(n);
    return directions;
}

struct Ranked {
    CallResult result;
    std::vector<int> progress;
};

Ranked ranked(const std::vector<UVector3<float>>& candidates, ScoreLists scores,
              const Configure& config, Records records = Records::kSpread) {
    Ranked r;
    StopWatchLog log;
    rankOrients(
        candidates, scores, config, records, &r.result.orientations, r.result.axis, r.result.angle,
        [&](int percent) { r.progress.push_back(percent); }, log);
    return r;
}

/// Lists in which only the height differs, with the given values.
ScoreLists scoresWithHeights(const Floats& heights) {
    ScoreLists scores(heights.size());
    scores.height = heights;
    return scores;
}

constexpr Configure kOnlyHeight = {
    .supportAreaWeight = 0, .supportVolumeWeight = 0, .heightWeight = 1, .boxVolumeWeight = 0};
constexpr Configure kNoWeights = {
    .supportAreaWeight = 0, .supportVolumeWeight = 0, .heightWeight = 0, .boxVolumeWeight = 0};

TEST(NormaliseScores, ScalesAListToZeroToOne) {
    EXPECT_EQ(normalised({3.0f, 1.0f, 5.0f, 2.0f}), (Floats{0.5f, 0.0f, 1.0f, 0.25f}));
    EXPECT_EQ(normalised({-4.0f, 4.0f}), (Floats{0.0f, 1.0f}));
}

TEST(NormaliseScores, ValuesWithinAThousandthAllBecomeOne) {
    EXPECT_EQ(normalised({7.0f, 7.0f, 7.0f}), (Floats{1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(normalised({0.0f, 0.0009f, 0.0005f}), (Floats{1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(normalised({0.0f, 0.0f}), (Floats{1.0f, 1.0f}));
}

TEST(NormaliseScores, TheThousandthIsADouble) {
    // The float nearest to 0.001 is above it: it counts as a range.
    EXPECT_EQ(normalised({0.0f, 0.001f}), (Floats{0.0f, 1.0f}));
    EXPECT_EQ(normalised({0.0f, std::nextafter(0.001f, 0.0f)}), (Floats{1.0f, 1.0f}));
}

TEST(NormaliseScores, ASingleValueBecomesOneAndAnEmptyListStaysEmpty) {
    EXPECT_EQ(normalised({42.0f}), Floats{1.0f});
    EXPECT_EQ(normalised({kNan}), Floats{1.0f});
    EXPECT_EQ(normalised({}), Floats{});
}

TEST(NormaliseScores, ANanIsPassedOverUnlessItIsTheFirst) {
    const Floats later = normalised({1.0f, kNan, 3.0f});
    EXPECT_EQ(later[0], 0.0f);
    EXPECT_TRUE(std::isnan(later[1]));
    EXPECT_EQ(later[2], 1.0f);
    for (const float value : normalised({kNan, 1.0f, 3.0f})) EXPECT_TRUE(std::isnan(value));
}

TEST(NormaliseScores, AgreesWithThePlainVersion) {
    TestRandom random(5);
    const Floats odd = {kNan, std::numeric_limits<float>::infinity(), 3e38f, -3e38f, -0.0f, 1e-40f};
    for (int round = 0; round < 3000; ++round) {
        Floats values;
        const int n = random.below(8);
        const float size = std::ldexp(1.0f, random.below(40) - 20);
        for (int i = 0; i < n; ++i) {
            values.push_back(random.below(12) == 0 ? odd[static_cast<std::size_t>(random.below(6))]
                                                   : random.in(-1.0f, 1.0f) * size);
        }
        const Floats plain = plainNormalised(values);
        const Floats shipped = normalised(values);
        ASSERT_EQ(shipped.size(), plain.size());
        for (std::size_t i = 0; i < plain.size(); ++i) {
            ASSERT_TRUE(sameBits(shipped[i], plain[i]));
        }
    }
}

TEST(SortByScore, PutsLowScoresFirstAndNanLast) {
    Orientations records = recordsWithScores({kNan, 2.0f, 1.0f, kNan, -1.0f, 3.0f, -kNan});
    sortByScore(records);
    EXPECT_EQ(heightsOf(records), (std::vector{4, 2, 1, 5, 0, 3, 6}));
}

TEST(SortByScore, EqualScoresKeepTheirOrder) {
    Floats scores;
    for (int i = 0; i < 58; ++i) scores.push_back(static_cast<float>(i % 3));
    Orientations records = recordsWithScores(scores);
    sortByScore(records);
    for (std::size_t i = 1; i < records.size(); ++i) {
        ASSERT_LE(records[i - 1].score, records[i].score);
        if (records[i - 1].score == records[i].score) {
            ASSERT_LT(records[i - 1].height, records[i].height);
        }
    }
}

TEST(ThinOut, TwelveOrFewerRecordsStay) {
    for (std::size_t n = 0; n <= 12; ++n) {
        Orientations records = recordsWithScores(Floats(n));
        thinOut(records);
        std::vector<int> all(n);
        for (std::size_t i = 0; i < n; ++i) all[i] = static_cast<int>(i);
        EXPECT_EQ(heightsOf(records), all);
    }
}

TEST(ThinOut, LeavesTheBestTenSpreadAndTheWorst) {
    const auto thinned = [](std::size_t n) {
        Orientations records = recordsWithScores(Floats(n));
        thinOut(records);
        return heightsOf(records);
    };
    EXPECT_EQ(thinned(13), (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12}));
    EXPECT_EQ(thinned(21), (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 20}));
    EXPECT_EQ(thinned(22), (std::vector{0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 21}));
    EXPECT_EQ(thinned(58), (std::vector{0, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 57}));
}

TEST(RankOrients, TheBestIsTheLowestWeightedSum) {
    ScoreLists scores(3);
    scores.height = {0.0f, 10.0f, 5.0f};
    scores.boxVolume = {100.0f, 0.0f, 25.0f};
    // Normalised: heights 0, 1, 0.5 and boxes 1, 0, 0.25.
    const auto directions = someDirections(3);
    Configure config = kNoWeights;
    config.heightWeight = 1;
    config.boxVolumeWeight = 1;
    const Ranked r = ranked(directions, scores, config);
    EXPECT_EQ(r.result.axis, candidateAxis(directions[2]));
    EXPECT_EQ(r.result.orientations[0].score, 0.75f);
    EXPECT_EQ(r.result.orientations[1].score, 1.0f + 0.0f);
    config.heightWeight = 4;
    EXPECT_EQ(ranked(directions, scores, config).result.axis, candidateAxis(directions[0]));
}

TEST(RankOrients, OneWeightCountsForBothSupportAreas) {
    ScoreLists scores(3);
    scores.overhangArea = {0.0f, 4.0f, 0.0f};
    scores.projectedArea = {8.0f, 0.0f, 0.0f};
    Configure config = kNoWeights;
    config.supportAreaWeight = 3;
    const Ranked r = ranked(someDirections(3), scores, config);
    EXPECT_EQ(r.result.orientations[0].score, 0.0f);
    EXPECT_EQ(r.result.orientations[1].score, 3.0f);
    EXPECT_EQ(r.result.orientations[2].score, 3.0f);
}

TEST(RankOrients, TheReservedScoreCountsWithAFifthWhereHigherIsBetter) {
    ScoreLists scores(3);
    scores.reservedScore = {0.0f, 5.0f, 10.0f};
    const Ranked r = ranked(someDirections(3), scores, kNoWeights);
    EXPECT_EQ(r.result.orientations[0].score, 0.0f);
    EXPECT_EQ(r.result.orientations[1].score, 0.1f);
    EXPECT_EQ(r.result.orientations[2].score, 0.2f);
    EXPECT_EQ(r.result.axis, candidateAxis(someDirections(3)[2]));
}

TEST(RankOrients, AReservedScoreOfAllZerosAddsNothing) {
    const Ranked r = ranked(someDirections(4), ScoreLists(4), kNoWeights);
    for (const OptOrientation& record : r.result.orientations) EXPECT_EQ(record.score, 0.0f);
}

TEST(RankOrients, AListWithoutRangeAddsTheSameToEveryCandidate) {
    ScoreLists scores = scoresWithHeights({3.0f, 1.0f, 2.0f});
    scores.boxVolume = {5.0f, 5.0004f, 5.0002f};
    Configure config = kOnlyHeight;
    config.boxVolumeWeight = 7;
    const Ranked r = ranked(someDirections(3), scores, config);
    EXPECT_EQ(r.result.orientations[0].score, 7.0f);
    EXPECT_EQ(r.result.orientations[1].score, 7.5f);
    EXPECT_EQ(r.result.orientations[2].score, 8.0f);
    EXPECT_EQ(r.result.orientations[0].height, 1.0f);
}

TEST(RankOrients, WithAllWeightsZeroTheFirstCandidateWins) {
    const Ranked r =
        ranked(someDirections(5), scoresWithHeights({9.0f, 8.0f, 1.0f, 2.0f, 3.0f}), kNoWeights);
    EXPECT_EQ(r.result.axis, UVector3<float>(0, 1, 0));
    EXPECT_EQ(r.result.angle, 3.1415927f);
    for (const OptOrientation& record : r.result.orientations) EXPECT_EQ(record.score, 0.0f);
    EXPECT_EQ(r.result.orientations[0].height, 9.0f);
}

TEST(RankOrients, ATieKeepsTheEarlierCandidate) {
    const auto directions = someDirections(4);
    const Ranked r = ranked(directions, scoresWithHeights({5.0f, 2.0f, 2.0f, 9.0f}), kOnlyHeight);
    EXPECT_EQ(r.result.axis, candidateAxis(directions[1]));
    EXPECT_EQ(r.result.orientations[0].axis, candidateAxis(directions[1]));
    EXPECT_EQ(r.result.orientations[1].axis, candidateAxis(directions[2]));
}

TEST(RankOrients, ANanScoreNeverBecomesBest) {
    const auto directions = someDirections(4);
    const Ranked r = ranked(directions, scoresWithHeights({5.0f, kNan, 2.0f, 9.0f}), kOnlyHeight);
    EXPECT_EQ(r.result.axis, candidateAxis(directions[2]));
    EXPECT_TRUE(std::isnan(r.result.orientations.back().score));
    EXPECT_EQ(r.result.orientations.back().axis, candidateAxis(directions[1]));
}

TEST(RankOrients, WhereNoScoreIsANumberTheFirstCandidateStays) {
    const auto directions = someDirections(3);
    const Ranked r = ranked(directions, scoresWithHeights({kNan, kNan, kNan}), kOnlyHeight);
    EXPECT_EQ(r.result.axis, candidateAxis(directions[0]));
    EXPECT_EQ(r.result.angle, candidateAngle(directions[0]));
    EXPECT_EQ(r.result.orientations.size(), 3u);
}

TEST(RankOrients, OnlyAScoreBelowTheStartValueBecomesBest) {
    // The start value lies just below the largest float. Scores above it need weights beyond
    // any integer, so an infinite one stands for them.
    EXPECT_EQ(std::bit_cast<std::uint32_t>(3.40282e+38f), 0x7F7FFFEEu);
    const float infinity = std::numeric_limits<float>::infinity();
    const auto directions = someDirections(3);
    const Ranked r = ranked(directions, scoresWithHeights({1.0f, 0.0f, infinity}), kOnlyHeight);
    // The range is infinite: finite values become 0, and infinity / infinity is no number.
    EXPECT_EQ(r.result.axis, candidateAxis(directions[0]));
    EXPECT_EQ(r.result.orientations[0].score, 0.0f);
    EXPECT_EQ(r.result.orientations[1].score, 0.0f);
    EXPECT_TRUE(std::isnan(r.result.orientations[2].score));
}

TEST(RankOrients, RecordsHoldTheRawMeasures) {
    ScoreLists scores(3);
    scores.height = {10.0f, 20.0f, 30.0f};
    scores.supportVolume = {11.0f, 21.0f, 31.0f};
    scores.overhangArea = {12.0f, 22.0f, 32.0f};
    scores.projectedArea = {13.0f, 23.0f, 33.0f};
    scores.boxVolume = {14.0f, 24.0f, 34.0f};
    const auto directions = someDirections(3);
    const Ranked r = ranked(directions, scores, kOnlyHeight);
    for (std::size_t i = 0; i < 3; ++i) {
        const OptOrientation& record = r.result.orientations[i];
        const float base = 10.0f * static_cast<float>(i + 1);
        EXPECT_EQ(record.height, base);
        EXPECT_EQ(record.supportVolume, base + 1.0f);
        EXPECT_EQ(record.overhangArea, base + 2.0f);
        EXPECT_EQ(record.projectedArea, base + 3.0f);
        EXPECT_EQ(record.boxVolume, base + 4.0f);
        EXPECT_EQ(record.axis, candidateAxis(directions[i]));
        EXPECT_EQ(record.angle, candidateAngle(directions[i]));
    }
}

TEST(RankOrients, ACandidateStraightUpHasNoAxisAndNoAngle) {
    const Ranked r = ranked(someDirections(2), scoresWithHeights({2.0f, 1.0f}), kOnlyHeight);
    EXPECT_EQ(r.result.axis, UVector3<float>(0, 0, 0));
    EXPECT_EQ(r.result.angle, 0.0f);
}

TEST(RankOrients, ReportsNinetyFiveAndAHundred) {
    EXPECT_EQ(ranked(someDirections(3), ScoreLists(3), {}).progress, (std::vector{95, 100}));
}

TEST(RankOrients, WithoutAListTheBestIsTheSame) {
    const auto directions = someDirections(20);
    Floats heights;
    for (int i = 0; i < 20; ++i) heights.push_back(static_cast<float>((i * 7 + 3) % 20));
    const Ranked r = ranked(directions, scoresWithHeights(heights), kOnlyHeight);
    ScoreLists scores = scoresWithHeights(heights);
    UVector3<float> axis;
    float angle = 0.0f;
    StopWatchLog log;
    rankOrients(directions, scores, kOnlyHeight, Records::kSpread, nullptr, axis, angle, {}, log);
    EXPECT_EQ(axis, r.result.axis);
    EXPECT_EQ(angle, r.result.angle);
}

TEST(RankOrients, AllRecordsAreThoseThatThinningStartsFrom) {
    for (const std::size_t candidates : {1u, 12u, 13u, 41u, 58u}) {
        Floats heights;
        for (std::size_t i = 0; i < candidates; ++i) {
            heights.push_back(static_cast<float>((i * 7 + 3) % 20));
        }
        const auto directions = someDirections(candidates);
        const ScoreLists scores = scoresWithHeights(heights);
        const Ranked spread = ranked(directions, scores, kOnlyHeight);
        Ranked all = ranked(directions, scores, kOnlyHeight, Records::kAll);
        EXPECT_EQ(all.result.orientations.size(), candidates);
        EXPECT_EQ(all.progress, spread.progress);
        EXPECT_EQ(all.result.axis, spread.result.axis);
        EXPECT_EQ(all.result.angle, spread.result.angle);
        thinOut(all.result.orientations);
        expectSameRecords(all.result.orientations, spread.result.orientations);
    }
}

TEST(RankOrients, TheListIsResizedWhateverItHeldBefore) {
    for (const std::size_t before : {0u, 3u, 12u, 100u}) {
        for (const std::size_t candidates : {5u, 12u, 13u, 58u}) {
            ScoreLists scores(candidates);
            Orientations records = recordsWithScores(Floats(before, -9.0f));
            UVector3<float> axis;
            float angle = 0.0f;
            StopWatchLog log;
            rankOrients(someDirections(candidates), scores, {}, Records::kSpread, &records, axis,
                        angle, {}, log);
            EXPECT_EQ(records.size(), std::min<std::size_t>(candidates, 12));
            for (const OptOrientation& record : records) EXPECT_GE(record.score, 0.0f);
        }
    }
}

TEST(RankOrients, TheBestRecordStandsFirst) {
    const auto directions = someDirections(58);
    TestRandom random(3);
    for (int round = 0; round < 50; ++round) {
        Floats heights;
        for (int i = 0; i < 58; ++i) heights.push_back(static_cast<float>(random.below(20)));
        const Ranked r = ranked(directions, scoresWithHeights(heights), kOnlyHeight);
        ASSERT_EQ(r.result.orientations.size(), 12u);
        ASSERT_EQ(r.result.axis, r.result.orientations[0].axis);
        ASSERT_EQ(r.result.angle, r.result.orientations[0].angle);
    }
}

TEST(RankOrients, AgreesWithThePlainVersionOnRandomMeasures) {
    TestRandom random(44);
    for (int round = 0; round < 2000; ++round) {
        const auto n = static_cast<std::size_t>(1 + random.below(60));
        ScoreLists scores(n);
        std::vector<PlainScores> measured(n);
        const auto value = [&] {
            const int kind = random.below(40);
            if (kind == 0) return kNan;
            if (kind == 1) return std::numeric_limits<float>::infinity();
            return kind < 20 ? static_cast<float>(random.below(4)) : random.in(-9.0f, 1e6f);
        };
        for (std::size_t i = 0; i < n; ++i) {
            scores.height[i] = measured[i].height = value();
            scores.supportVolume[i] = measured[i].supportVolume = value();
            scores.overhangArea[i] = measured[i].overhangArea = value();
            scores.projectedArea[i] = measured[i].projectedArea = value();
            scores.boxVolume[i] = measured[i].boxVolume = value();
            scores.reservedScore[i] = measured[i].reservedScore = value();
        }
        const Configure config = {.supportAreaWeight = random.below(9) - 3,
                                  .supportVolumeWeight = random.below(9) - 3,
                                  .heightWeight = random.below(9) - 3,
                                  .boxVolumeWeight = random.below(2000000000)};
        const auto directions = someDirections(n);
        const Ranked shipped = ranked(directions, scores, config);
        const PlainRanking plain = plainRanking(directions, measured, config);
        ASSERT_EQ(shipped.result.axis, plain.axis);
        ASSERT_TRUE(sameBits(shipped.result.angle, plain.angle));
        expectSameRecords(shipped.result.orientations, plain.orientations);
    }
}

}  // namespace
