#include "EvaluateOrient.h"

#include <algorithm>
#include <numbers>

#include "CandidateRotation.h"
#include "SampleGrid.h"
#include "SupportSampling.h"
#include "TeskDataBasic/Transcendental.h"

namespace {

using Matrix = UMatrix4<float>;

/// cos of an angle in degrees, formed in double.
float cosineOfDegrees(float angleDeg) {
    const double angleRad = static_cast<double>(angleDeg) * std::numbers::pi / 180.0;
    return static_cast<float>(Tesk::cosine(angleRad));
}

/// Placement, then the turn about the centre of the placed box.
Matrix turnOntoUp(const FlatMesh& mesh, const UVector3<float>& direction) {
    const UPoint3<float> k = mesh.placedBox.Center();
    const Matrix toOrigin = Matrix::CreateTransfMatrix({-k.x, -k.y, -k.z});
    const Matrix turn =
        Matrix::CreateRotateMatrix(candidateAngle(direction), candidateAxis(direction));
    const Matrix back = Matrix::CreateTransfMatrix({k.x, k.y, k.z});
    return mesh.placement * toOrigin * turn * back;
}

/// Least and greatest of a list; a NaN is passed over. Sixteen running bounds, so that the compiler
/// can keep them in vector registers; which of −0 and +0 survives may differ from a plain loop, but
/// a box reads both as +0.
struct Range {
    float low;
    float high;
};

Range rangeOf(const float* values, std::size_t count) {
    constexpr std::size_t kLanes = 16;
    float low[kLanes];
    float high[kLanes];
    std::fill_n(low, kLanes, UBox3<float>::kFar);
    std::fill_n(high, kLanes, -UBox3<float>::kFar);
    std::size_t i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            const float value = values[i + lane];
            low[lane] = value < low[lane] ? value : low[lane];
            high[lane] = value > high[lane] ? value : high[lane];
        }
    }
    for (; i < count; ++i) {
        low[0] = values[i] < low[0] ? values[i] : low[0];
        high[0] = values[i] > high[0] ? values[i] : high[0];
    }
    return {*std::min_element(low, low + kLanes), *std::max_element(high, high + kLanes)};
}

/// Coordinate `axis` of every vertex taken through m, as UPoint3 times UMatrix4 forms it.
void transformCoordinate(const FlatMesh& mesh, const Matrix& m, int axis, std::vector<float>& out) {
    const float mx = m.at(0, axis);
    const float my = m.at(1, axis);
    const float mz = m.at(2, axis);
    const float shift = m.at(3, axis);
    const std::size_t count = mesh.x.size();
    out.resize(count);
    for (std::size_t v = 0; v < count; ++v) {
        out[v] = mesh.x[v] * mx + mesh.y[v] * my + mesh.z[v] * mz + shift;
    }
}

/// Turns the mesh by m into the buffers and returns the box of its kept vertices.
UBox3<float> transform(const FlatMesh& mesh, const Matrix& m, EvaluationBuffers& out) {
    transformCoordinate(mesh, m, 0, out.x);
    transformCoordinate(mesh, m, 1, out.y);
    transformCoordinate(mesh, m, 2, out.z);
    const Range x = rangeOf(out.x.data(), mesh.keptVertices);
    const Range y = rangeOf(out.y.data(), mesh.keptVertices);
    const Range z = rangeOf(out.z.data(), mesh.keptVertices);
    return {{x.low, y.low, z.low}, {x.high, y.high, z.high}};
}

bool sameCoordinate(const Matrix& a, const Matrix& b, int axis) {
    for (int row = 0; row < 4; ++row) {
        if (a.at(row, axis) != b.at(row, axis)) return false;
    }
    return true;
}

/// Moves the turned mesh so that its lowest point lies at z = baseHeight; returns the new box. A
/// finite lift leaves x and y as they are.
UBox3<float> lift(const FlatMesh& mesh, const Matrix& turn, const UBox3<float>& box,
                  float baseHeight, EvaluationBuffers& out) {
    const Matrix lifted = turn * Matrix::CreateTransfMatrix({0.0f, 0.0f, baseHeight - box.MinZ()});
    if (!sameCoordinate(turn, lifted, 0) || !sameCoordinate(turn, lifted, 1)) {
        return transform(mesh, lifted, out);
    }
    transformCoordinate(mesh, lifted, 2, out.z);
    const Range z = rangeOf(out.z.data(), mesh.keptVertices);
    return {{box.MinX(), box.MinY(), z.low}, {box.MaxX(), box.MaxY(), z.high}};
}

}  // namespace

void evaluateOrient(const std::vector<float>& areas, const FlatMesh& mesh,
                    UVector3<float> direction, float overhangAngle, bool computeSupport,
                    float& height, float& supportVolume, float& overhangArea, float& projectedArea,
                    float& boxVolume, float& reservedScore, const float& baseHeight,
                    EvaluationBuffers& buffers) {
    supportVolume = 0.0f;
    overhangArea = 0.0f;
    projectedArea = 0.0f;
    reservedScore = 0.0f;
    const Matrix turn = turnOntoUp(mesh, direction);
    UBox3<float> box = transform(mesh, turn, buffers);
    if (baseHeight > -1.0f) box = lift(mesh, turn, box, baseHeight, buffers);
    boxVolume = box.Volume();
    height = box.MaxZ() - box.MinZ();
    if (!computeSupport) return;
    const SupportMeasures support =
        sampleSupport({buffers.x, buffers.y, buffers.z, mesh.corners, areas}, makeSampleGrid(box),
                      cosineOfDegrees(overhangAngle));
    supportVolume = support.supportVolume;
    overhangArea = support.overhangArea;
    projectedArea = support.projectedArea;
}
