#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "TeskDataBasic/UPoint3.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "minbox/workers/ProgressRecord.h"

/// What the handles of a box calculator share: the caller's settings, the constants of all
/// searches, and the working state of the current call. The hull pointers are null between calls.
struct MinBoundingBoxImpl {
    explicit MinBoundingBoxImpl(std::uint32_t threads, bool edgesBeside = true)
        : threadCount(threads), concurrentEdges(edgesBeside) {}

    std::function<void(int)> callback;
    std::unique_ptr<ProgressRecord> progress;  ///< of the current or last call
    std::uint32_t threadCount;
    bool concurrentEdges;  ///< search edges on a thread of their own, beside the faces
    std::int32_t pointCount = 0;
    const UPoint3<float>* points = nullptr;
    const std::vector<UPoint3<float>>* hullVertices = nullptr;
    std::unique_ptr<std::vector<double>> computePoints;  ///< hull vertices as x, y, z triples
    const std::vector<std::array<int, 3>>* hullTriangles = nullptr;
    const std::vector<gte::HullEdge>* hullEdges = nullptr;
    bool caliperFlag = true;
    bool baseAreaMode = false;
    bool heightMode = false;
    float lastVolume = 0.0f;  ///< of the last box
    double zero = 0.0;
    double one = 1.0;
    double unset = -1.0;  ///< the volume of a record that holds no box
    double half = 0.5;
    float zeroF = 0.0f;
    float oneF = 1.0f;
    float unsetF = -1.0f;
    float halfF = 0.5f;
    /// The caller's length of one unit of computePoints: 1, or the power of two that keeps the
    /// products of very large or very small coordinates within the range of a float.
    double unitLength = 1.0;
};
