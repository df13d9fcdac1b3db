// Any mesh and any goal: the search must end, give the same poses for any number of threads, in the
// order of their costs but for the first, and measure each as the plain version does.

#include <omp.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "BuildPose.h"
#include "MeshInput.h"
#include "plain/PlainPoseMeasures.h"
#include "tools/FloatBits.h"

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::PoseGoal;
using OptimizeOrient::PoseMeasures;

void expect(bool holds) {
    if (!holds) std::abort();
}

PoseGoal takeGoal(FuzzInput& input) {
    PoseGoal goal;
    const auto kind = input.take<std::uint8_t>();
    if ((kind & 1) != 0) goal.overhangAngleDeg = takeCoordinate(input);
    if ((kind & 2) != 0) {
        goal.supportVolumeCost = std::fabs(takeCoordinate(input));
        goal.overhangAreaCost = std::fabs(takeCoordinate(input));
        goal.heightCost = std::fabs(takeCoordinate(input));
    }
    if ((kind & 4) != 0) {
        for (int axis = 0; axis < 3; ++axis) goal.buildVolume[axis] = takeCoordinate(input);
    }
    if ((kind & 8) != 0) {
        UVector3<float> direction;
        for (int axis = 0; axis < 3; ++axis) direction[axis] = takeCoordinate(input);
        goal.keepOff.push_back({direction, takeCoordinate(input)});
    }
    if ((kind & 16) != 0) goal.leastContactArea = takeCoordinate(input);
    return goal;
}

void expectSameMeasures(const PoseMeasures& a, const PoseMeasures& b) {
    expect(sameBits(a.height, b.height));
    expect(sameBits(a.footprintX, b.footprintX) && sameBits(a.footprintY, b.footprintY));
    expect(sameBits(a.supportVolume, b.supportVolume));
    expect(sameBits(a.overhangArea, b.overhangArea));
    expect(sameBits(a.overhangAreaOnPart, b.overhangAreaOnPart));
    expect(sameBits(a.contactArea, b.contactArea));
    expect(sameBits(a.tiltMarginDeg, b.tiltMarginDeg));
    expect(a.contactIslands == b.contactIslands);
    expect(a.liesFlat == b.liesFlat && a.stands == b.stands);
}

void expectSamePose(const BuildPose& a, const BuildPose& b) {
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            expect(sameBits(a.rotation.at(row, col), b.rotation.at(row, col)));
        }
    }
    expectSameMeasures(a.measures, b.measures);
    expect(sameBits(a.cost.total(), b.cost.total()));
}

BuildPoses foundWith(int threads, const MeshKernel& mesh, const PoseGoal& goal) {
    const int before = omp_get_max_threads();
    omp_set_num_threads(threads);
    const BuildPoses found = findBuildPoses(mesh, goal);
    omp_set_num_threads(before);
    return found;
}

void expectRotation(const UMatrix4<float>& m) {
    for (int row = 0; row < 3; ++row) {
        for (int other = row; other < 3; ++other) {
            double dot = 0.0;
            for (int k = 0; k < 3; ++k) {
                dot += static_cast<double>(m.at(row, k)) * static_cast<double>(m.at(other, k));
            }
            expect(std::fabs(dot - (row == other ? 1.0 : 0.0)) < 1e-5);
        }
    }
}

/// Whether sampling some pose of the part takes more points than a fuzzer's patience allows: a
/// footprint may be as thin as two units, with the margin of the grid.
bool isTooLong(const UBox3<float>& box) {
    const float longest =
        std::max({box.MaxX() - box.MinX(), box.MaxY() - box.MinY(), box.MaxZ() - box.MinZ()});
    return longest > 150.0f && longest < 1e9f;
}

/// The part as it lies goes first among equals to within 1 %.
float leastKey(const BuildPose& pose) {
    const float total = pose.cost.total();
    return pose.rotation.isIdenticalMatrix() ? total - std::fabs(total) * 0.0101f : total;
}

void expectRanked(const BuildPoses& found) {
    expect(found.poses.size() <= 12);
    for (std::size_t i = 0; i < found.poses.size(); ++i) {
        const BuildPose& pose = found.poses[i];
        expectRotation(pose.rotation);
        expect(std::isfinite(pose.cost.total()));
        // The first may cost more than the others: it has the least support of about equal ones.
        if (i < 2) continue;
        const BuildPose& before = found.poses[i - 1];
        expect(before.measures.stands || !pose.measures.stands);
        if (before.measures.stands != pose.measures.stands) continue;
        expect(leastKey(before) <= pose.cost.total());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const PoseGoal goal = takeGoal(input);
    MeshKernel mesh = takeMesh(input);
    if (isTooLong(mesh.GetBox())) return 0;

    const BuildPoses found = foundWith(1, mesh, goal);
    const BuildPoses again = foundWith(3, mesh, goal);
    expect(found.poses.size() == again.poses.size() && found.noneStands == again.noneStands);
    for (std::size_t i = 0; i < found.poses.size(); ++i) {
        expectSamePose(found.poses[i], again.poses[i]);
        expectSameMeasures(found.poses[i].measures,
                           plainPoseMeasures(mesh, goal, found.poses[i].rotation,
                                             PlainSearch::kTrianglesOfColumn));
    }
    expectRanked(found);
    return 0;
}
