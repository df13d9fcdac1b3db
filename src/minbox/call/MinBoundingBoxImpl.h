#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "TeskDataBasic/UPoint3.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "minbox/box/SearchConstants.h"
#include "minbox/workers/ProgressRecord.h"

namespace Tesk::minbox {

/// What the handles of a box calculator share: the caller's settings, the constants of all
/// searches, and a view of the current call, which SearchCall fills. The searches themselves work
/// on its SearchHull. All pointers into the hull are null between calls.
struct MinBoundingBoxImpl {
    explicit MinBoundingBoxImpl(std::uint32_t threads, bool edgesConcurrent = true)
        : threadCount(threads), concurrentEdges(edgesConcurrent) {}

    SearchConstants constants() const { return {zero, one, half, zeroF, oneF, unsetF}; }

    std::function<void(int)> callback;         ///< copied by each progress record; tells whether
                                               ///< a search on the calling thread takes steps
    std::unique_ptr<ProgressRecord> progress;  ///< of the current or last call; face searches step
    std::uint32_t threadCount;                 ///< workers of the face searches
    bool concurrentEdges;                      ///< operator(): edges on a thread beside the faces
    std::int32_t pointCount = 0;  ///< hull vertices in operator(), else the caller's n: the
                                  ///< longest outline that a face search walks
    const UPoint3<float>* points = nullptr;                          ///< nothing reads it
    const std::vector<UPoint3<float>>* hullVertices = nullptr;       ///< nothing reads it
    const std::vector<double>* computePoints = nullptr;              ///< nothing reads it
    const std::vector<std::array<int, 3>>* hullTriangles = nullptr;  ///< nothing reads it
    const std::vector<gte::HullEdge>* hullEdges = nullptr;           ///< operator(): its size
    bool caliperFlag = true;                                         ///< nothing reads it
    bool baseAreaMode = false;  ///< the base-area search minimises the smallest side
    bool heightMode = false;    ///< the base-area search minimises the height
    float lastVolume = 0.0f;    ///< of the last box; nothing reads it
    double zero = 0.0;          ///< all searches, through constants(), as one to oneF
    double one = 1.0;
    double unset = -1.0;  ///< the volume of a record without a box; nothing reads it, as a search
                          ///< that has found no box holds an empty std::optional
    double half = 0.5;
    float zeroF = 0.0f;
    float oneF = 1.0f;
    float unsetF = -1.0f;
    float halfF = 0.5f;  ///< nothing reads it
};

}  // namespace Tesk::minbox
