#include "orient/evaluation/EvaluateOrient.h"

#include <algorithm>

#include "TeskCommon/Assert.h"
#include "orient/sampling/Overhang.h"
#include "orient/sampling/TreeSampling.h"
#include "orient/turn/Flatten.h"

namespace Tesk::orient {
namespace {

OrientMeasures measuresOf(const UBox3<float>& box, const SupportMeasures& support) {
    return {.height = box.MaxZ() - box.MinZ(),
            .supportVolume = support.supportVolume,
            .overhangArea = support.overhangArea,
            .projectedArea = support.projectedArea,
            .boxVolume = box.Volume(),
            .reservedScore = 0.0f};
}

}  // namespace

OrientEvaluator::OrientEvaluator(const std::vector<float>& areas, const FlatMesh& mesh,
                                 float overhangAngle, bool computeSupport, float baseHeight)
    : m_mesh(mesh),
      m_overhangCosine(overhangCosineOf(overhangAngle)),
      m_computeSupport(computeSupport),
      m_baseHeight(baseHeight),
      m_sampler(mesh, areas) {}

void OrientEvaluator::begin(std::span<const UVector3<float>> directions) {
    TESK_ASSERT(!directions.empty() && directions.size() <= kGroupSize);
    m_groupSize = directions.size();
    const auto parts = std::span(m_parts).first(directions.size());
    turnParts(m_mesh, directions, m_baseHeight, parts);
    findHittable(parts);
}

void OrientEvaluator::begin(std::span<const TurnedPart> parts) {
    TESK_ASSERT(!parts.empty() && parts.size() <= kGroupSize);
    m_groupSize = parts.size();
    std::copy(parts.begin(), parts.end(), m_parts.begin());
    findHittable(parts);
}

void OrientEvaluator::findHittable(std::span<const TurnedPart> parts) {
    if (!m_computeSupport) return;
    for (std::size_t k = 0; k < parts.size(); ++k) m_grids[k] = makeSampleGrid(parts[k].box);
    m_finder.find(m_mesh, parts, m_grids, m_hittable);
}

OrientMeasures OrientEvaluator::evaluate(std::size_t index) {
    TESK_ASSERT(index < m_groupSize);
    const TurnedPart& part = m_parts[index];
    if (!m_computeSupport) return measuresOf(part.box, {});
    return measuresOf(part.box,
                      m_sampler.sample(part, m_grids[index], m_overhangCosine, m_hittable[index]));
}

void evaluateOrient(const std::vector<float>& areas, const MeshKernel* mesh,
                    UVector3<float> direction, float overhangAngle, bool computeSupport,
                    float& height, float& supportVolume, float& overhangArea, float& projectedArea,
                    float& boxVolume, float& reservedScore, const float& baseHeight) {
    TESK_ASSERT(mesh != nullptr);
    const FlatMesh flat = flatten(*mesh->getMesh(), mesh->getMatrix());
    TurnedPart part;
    turnParts(flat, {&direction, 1}, baseHeight, {&part, 1});
    SupportMeasures support;
    if (computeSupport) {
        support = sampleWithTree(flat, areas, part, makeSampleGrid(part.box),
                                 overhangCosineOf(overhangAngle));
    }
    const OrientMeasures measures = measuresOf(part.box, support);
    height = measures.height;
    supportVolume = measures.supportVolume;
    overhangArea = measures.overhangArea;
    projectedArea = measures.projectedArea;
    boxVolume = measures.boxVolume;
    reservedScore = measures.reservedScore;
}

}  // namespace Tesk::orient
