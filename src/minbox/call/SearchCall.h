#pragma once

#include "OrientedBox3.h"
#include "minbox/call/MinBoundingBoxImpl.h"
#include "minbox/hull/SearchHull.h"

namespace Tesk::minbox {

/// Which operation a call performs.
enum class Operation { kVolume, kSmallestSide, kHeight, kAroundAxis };

/// One call of a box operation: owns the hull, and fills the implementation object's view of the
/// call for as long as it lives.
class SearchCall {
 public:
    /// Builds the hull of n points, which may be null. Keeps a reference to the implementation
    /// object.
    SearchCall(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points, Operation operation);
    ~SearchCall();
    SearchCall(const SearchCall&) = delete;
    SearchCall& operator=(const SearchCall&) = delete;

    const SearchHull& hull() const { return m_hull; }

    /// Replaces the progress record.
    void startProgress(int steps);

    /// The call's result; remembers its volume.
    OrientedBox3 boxOf(const BoxFrame& frame);

    /// The box of a hull without faces; none if it has no vertices.
    OrientedBox3 lowDimensionBoxOrNone();

 private:
    MinBoundingBoxImpl& m_impl;
    SearchHull m_hull;
};

}  // namespace Tesk::minbox
