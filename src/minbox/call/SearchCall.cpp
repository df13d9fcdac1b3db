#include "minbox/call/SearchCall.h"

#include "minbox/fit/BoxFit.h"

namespace Tesk::minbox {

SearchCall::SearchCall(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points,
                       Operation operation)
    : m_impl(impl), m_hull(n, points, impl.constants()) {
    const bool isVolume = operation == Operation::kVolume;
    impl.pointCount = isVolume ? m_hull.points().count() : n;
    impl.points = points;
    impl.hullVertices = &m_hull.hull().getVertices();
    impl.computePoints = &m_hull.points().coordinates();
    impl.hullTriangles = &m_hull.hull().getTriangles();
    impl.hullEdges = &m_hull.hull().getHullEdges();
    impl.caliperFlag = !isVolume;
    impl.baseAreaMode = operation == Operation::kSmallestSide;
    impl.heightMode = operation == Operation::kHeight;
}

SearchCall::~SearchCall() {
    m_impl.points = nullptr;
    m_impl.hullVertices = nullptr;
    m_impl.computePoints = nullptr;
    m_impl.hullTriangles = nullptr;
    m_impl.hullEdges = nullptr;
    m_impl.baseAreaMode = false;
    m_impl.heightMode = false;
}

void SearchCall::startProgress(int steps) {
    m_impl.progress = std::make_unique<ProgressRecord>(0, steps, m_impl.callback);
}

OrientedBox3 SearchCall::boxOf(const BoxFrame& frame) {
    m_impl.lastVolume = static_cast<float>(callersVolume(m_hull.points(), frame));
    return toOrientedBox(m_hull.points(), frame);
}

OrientedBox3 SearchCall::lowDimensionBoxOrNone() {
    TESK_ASSERT(!m_hull.hasFaces());
    return m_hull.points().count() == 0 ? noBox() : boxOf(lowDimensionFrame(m_hull.points()));
}

}  // namespace Tesk::minbox
