#include "plain/PlainRanking.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

namespace {

using Record = OptimizeOrient::OptOrientation;

std::vector<float> normalisedList(const std::vector<PlainScores>& measured,
                                  float PlainScores::*field) {
    std::vector<float> values;
    for (const PlainScores& scores : measured) values.push_back(scores.*field);
    return plainNormalised(values);
}

Record recordOf(const UVector3<float>& candidate, const PlainScores& scores) {
    Record record;
    record.axis = plainAxis(candidate);
    record.angle = plainAngle(candidate);
    record.overhangArea = scores.overhangArea;
    record.supportVolume = scores.supportVolume;
    record.projectedArea = scores.projectedArea;
    record.height = scores.height;
    record.boxVolume = scores.boxVolume;
    return record;
}

/// Ascending, NaN behind all numbers.
bool goesBefore(const Record& a, const Record& b) {
    if (std::isnan(a.score)) return false;
    if (std::isnan(b.score)) return true;
    return a.score < b.score;
}

std::vector<Record> thinned(const std::vector<Record>& all) {
    if (all.size() <= 12) return all;
    const int n = static_cast<int>(all.size());
    const int step = (n - 2) / 10;
    std::vector<Record> few;
    for (int k = 0; k <= 10; ++k) few.push_back(all[static_cast<std::size_t>(k * step)]);
    few.push_back(all.back());
    return few;
}

}  // namespace

std::vector<float> plainNormalised(const std::vector<float>& values) {
    if (values.empty()) return {};
    if (values.size() == 1) return {1.0f};
    float max = values[0];
    float min = values[0];
    for (std::size_t i = 1; i < values.size(); ++i) {
        if (values[i] > max) {
            max = values[i];
        } else if (values[i] < min) {
            min = values[i];
        }
    }
    const float range = max - min;
    std::vector<float> scaled;
    for (const float v : values) {
        scaled.push_back(0.001 > static_cast<double>(range) ? 1.0f : (v - min) / range);
    }
    return scaled;
}

PlainRanking plainRanking(const std::vector<UVector3<float>>& candidates,
                          const std::vector<PlainScores>& measured,
                          const OptimizeOrient::Configure& config) {
    const std::vector<float> height = normalisedList(measured, &PlainScores::height);
    const std::vector<float> volume = normalisedList(measured, &PlainScores::supportVolume);
    const std::vector<float> overhang = normalisedList(measured, &PlainScores::overhangArea);
    const std::vector<float> projected = normalisedList(measured, &PlainScores::projectedArea);
    const std::vector<float> box = normalisedList(measured, &PlainScores::boxVolume);
    const std::vector<float> reserved = normalisedList(measured, &PlainScores::reservedScore);

    std::vector<Record> records;
    std::size_t best = 0;
    auto bestScore = std::bit_cast<float>(0x7F7FFFEEu);
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        float s = static_cast<float>(config.heightWeight) * height[i];
        s += static_cast<float>(config.supportVolumeWeight) * volume[i];
        s += static_cast<float>(config.supportAreaWeight) * overhang[i];
        s += static_cast<float>(config.supportAreaWeight) * projected[i];
        s += static_cast<float>(config.boxVolumeWeight) * box[i];
        const auto score = static_cast<float>(static_cast<double>(s) +
                                              static_cast<double>(1.0f - reserved[i]) * 0.2);
        if (bestScore > score) {
            bestScore = score;
            best = i;
        }
        records.push_back(recordOf(candidates[i], measured[i]));
        records.back().score = score;
    }

    PlainRanking ranking;
    ranking.axis = records[best].axis;
    ranking.angle = records[best].angle;
    std::stable_sort(records.begin(), records.end(), goesBefore);
    ranking.orientations = thinned(records);
    ranking.all = std::move(records);
    return ranking;
}

bool plainWantsSupport(const OptimizeOrient::Configure& config) {
    return config.supportAreaWeight != 0 || config.supportVolumeWeight != 0 ||
           config.computeSupport != 0;
}

PlainRanking plainCalculate(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                            std::uint32_t seed, PlainSearch search) {
    PlainRandom random(seed);
    const std::vector<UVector3<float>> candidates = plainCandidates(mesh, random);
    const std::vector<float> areas = plainAreas(mesh);
    std::vector<PlainScores> measured;
    for (const UVector3<float>& direction : candidates) {
        measured.push_back(plainEvaluation(areas, mesh, direction, config.overhangAngle,
                                           plainWantsSupport(config), config.baseHeight, search));
    }
    return plainRanking(candidates, measured, config);
}
