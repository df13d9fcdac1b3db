#include "orient/evaluation/EvaluateOrient.h"

#include <numbers>

#include "TeskDataBasic/Transcendental.h"
#include "orient/sampling/PoseSampling.h"
#include "orient/turn/Flatten.h"

namespace Tesk::orient {
namespace {

/// cos of an angle in degrees, formed in double.
float cosineOfDegrees(float angleDeg) {
    const double angleRad = static_cast<double>(angleDeg) * std::numbers::pi / 180.0;
    return static_cast<float>(Tesk::cosine(angleRad));
}

}  // namespace

OrientEvaluator::OrientEvaluator(const std::vector<float>& areas, const FlatMesh& mesh,
                                 float overhangAngle, bool computeSupport, float baseHeight)
    : m_mesh(mesh),
      m_overhangCosine(cosineOfDegrees(overhangAngle)),
      m_computeSupport(computeSupport),
      m_baseHeight(baseHeight),
      m_sampler(mesh, areas) {}

void OrientEvaluator::begin(std::span<const UVector3<float>> directions) {
    const auto parts = std::span(m_parts).first(directions.size());
    turnParts(m_mesh, directions, m_baseHeight, parts);
    if (!m_computeSupport) return;
    for (std::size_t k = 0; k < parts.size(); ++k) m_grids[k] = makeSampleGrid(parts[k].box);
    m_finder.find(m_mesh, parts, m_grids, m_hittable);
}

void OrientEvaluator::evaluate(std::size_t place, float& height, float& supportVolume,
                               float& overhangArea, float& projectedArea, float& boxVolume,
                               float& reservedScore) {
    const UBox3<float>& box = m_parts[place].box;
    boxVolume = box.Volume();
    height = box.MaxZ() - box.MinZ();
    SupportMeasures support;
    if (m_computeSupport) {
        support =
            m_sampler.sample(m_parts[place], m_grids[place], m_overhangCosine, m_hittable[place]);
    }
    supportVolume = support.supportVolume;
    overhangArea = support.overhangArea;
    projectedArea = support.projectedArea;
    reservedScore = 0.0f;
}

void evaluateOrient(const std::vector<float>& areas, const MeshKernel* mesh,
                    UVector3<float> direction, float overhangAngle, bool computeSupport,
                    float& height, float& supportVolume, float& overhangArea, float& projectedArea,
                    float& boxVolume, float& reservedScore, const float& baseHeight) {
    const FlatMesh flat = flatten(*mesh->getMesh(), mesh->getMatrix());
    TurnedPart part;
    turnParts(flat, {&direction, 1}, baseHeight, {&part, 1});
    boxVolume = part.box.Volume();
    height = part.box.MaxZ() - part.box.MinZ();
    SupportMeasures support;
    if (computeSupport) {
        support =
            samplePose(flat, areas, part, makeSampleGrid(part.box), cosineOfDegrees(overhangAngle));
    }
    supportVolume = support.supportVolume;
    overhangArea = support.overhangArea;
    projectedArea = support.projectedArea;
    reservedScore = 0.0f;
}

}  // namespace Tesk::orient
