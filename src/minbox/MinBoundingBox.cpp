#include "MinBoundingBox.h"

#include <atomic>
#include <utility>

#include "minbox/axes/AxisSearch.h"
#include "minbox/axes/PrincipalAxes.h"
#include "minbox/basearea/BaseAreaSearch.h"
#include "minbox/call/MinBoundingBoxImpl.h"
#include "minbox/volume/VolumeSearch.h"

struct MinBoundingBox::Cell {
    explicit Cell(unsigned int threadCount) : impl(threadCount) {}

    Tesk::minbox::MinBoundingBoxImpl impl;
    std::atomic<int> owners = 1;
};

MinBoundingBox::MinBoundingBox(unsigned int threadCount) : m_cell(new Cell(threadCount)) {}

MinBoundingBox::MinBoundingBox(const MinBoundingBox& other) : m_cell(other.m_cell) {
    ++m_cell->owners;
}

MinBoundingBox::~MinBoundingBox() {
    if (--m_cell->owners == 0) delete m_cell;
}

MinBoundingBox& MinBoundingBox::operator=(const MinBoundingBox& other) {
    MinBoundingBox shared(other);
    std::swap(m_cell, shared.m_cell);
    return *this;
}

void MinBoundingBox::setCallBackFunction(std::function<void(int)> callback) {
    m_cell->impl.callback = std::move(callback);
}

OrientedBox3 MinBoundingBox::operator()(int n, const UPoint3<float>* points) {
    return Tesk::minbox::searchLeastVolume(m_cell->impl, n, points);
}

OrientedBox3 MinBoundingBox::minBaseAreaAndHeightBox(int n, const UPoint3<float>* points) {
    return Tesk::minbox::searchLeastHeight(m_cell->impl, n, points);
}

OrientedBox3 MinBoundingBox::minBaseAreaBox(int n, const UPoint3<float>* points) {
    return Tesk::minbox::searchLeastBaseArea(m_cell->impl, n, points);
}

OrientedBox3 MinBoundingBox::minBaseAreaBoxAroundAxis(int n, const UPoint3<float>* points,
                                                      UVector3<float> axis) {
    return Tesk::minbox::searchAroundAxis(m_cell->impl, n, points, axis);
}

OrientedBox3 MinBoundingBox::generateOBB(const UPoint3<float>* points, int n) {
    return Tesk::minbox::principalAxesBox(points, n);
}
