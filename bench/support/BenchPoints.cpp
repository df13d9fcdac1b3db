#include "support/BenchPoints.h"

#include <algorithm>

#include "shapes/SampleMeshes.h"
#include "tools/FloatBits.h"

std::vector<NamedPoints> benchPointSets(std::size_t maxPoints) {
    TestRandom random(1);
    const UMatrix4<float> turn = UMatrix4<float>::CreateRotateMatrix(0.7f, {1, 2, 3});
    std::vector<NamedPoints> sets = {
        {"box", boxCorners(2, 3, 4)},
        {"bracket", bracketCorners(random)},
        {"rounded box", roundedBox(30, 20, 10, 2, 4)},
        {"cylinder 200", prismCorners(200, 3)},
        {"ball 1k", pointsInBall(1000, random)},
        {"sphere 1k", pointsOnSphere(1000, random)},
        {"rounded box fine", roundedBox(30, 20, 10, 2, 24)},
        {"cylinder 2000", prismCorners(2000, 3)},
        {"cylinder 2000 turned", transformed(prismCorners(2000, 3), turn)},
        {"sphere 10k", pointsOnSphere(10'000, random)},
        {"sphere 100k", pointsOnSphere(100'000, random)},
        {"cube cloud 1M", pointsInCube(1'000'000, random)}};
    std::erase_if(sets, [&](const NamedPoints& set) { return set.points.size() > maxPoints; });
    return sets;
}

std::vector<NamedPoints> samplePointSets(std::size_t maxPoints) {
    std::vector<NamedPoints> sets;
    for (const auto& file : sampleMeshes()) {
        const std::optional<Part> part = readSampleMesh(file);
        if (!part || part->positions.empty() || part->positions.size() > maxPoints) continue;
        sets.push_back({file.filename().string(), part->positions});
    }
    return sets;
}

std::uint64_t hashOf(const OrientedBox3& box) {
    BitHash hash;
    for (const auto& v : {box.center, box.axis[0], box.axis[1], box.axis[2], box.extent}) {
        for (int i = 0; i < 3; ++i) hash.add(v[i]);
    }
    return hash.value();
}
