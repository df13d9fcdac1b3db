#include "FlatMesh.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "TurnedPart.h"

namespace {

using Mesh = UMesh<float>;

void appendVertex(FlatMesh& flat, const UPoint3<float>& p) {
    flat.x.push_back(p.x);
    flat.y.push_back(p.y);
    flat.z.push_back(p.z);
}

/// Where each vertex of the mesh stands in the flat arrays: kept ones first, in list order.
std::vector<std::int32_t> copyVertices(const Mesh& mesh, FlatMesh& flat) {
    const auto count = static_cast<std::size_t>(mesh.VertexCount());
    std::vector<std::int32_t> place(count);
    flat.x.reserve(count);
    flat.y.reserve(count);
    flat.z.reserve(count);
    for (const bool deleted : {false, true}) {
        for (std::int32_t i = 0; i < mesh.VertexCount(); ++i) {
            const UVertex<float>& vertex = *mesh.Vertex(i);
            if (vertex.IsD() != deleted) continue;
            place[static_cast<std::size_t>(i)] = static_cast<std::int32_t>(flat.x.size());
            appendVertex(flat, vertex.P());
        }
        if (!deleted) flat.keptVertices = flat.x.size();
    }
    return place;
}

float reachOf(const FlatMesh& flat) {
    float reach = 0.0f;
    for (const std::vector<float>* values : {&flat.x, &flat.y, &flat.z}) {
        for (const float value : *values) {
            if (!std::isfinite(value)) return std::numeric_limits<float>::infinity();
            reach = std::max(reach, std::fabs(value));
        }
    }
    return reach;
}

}  // namespace

FlatMesh flatten(const Mesh& mesh, const UMatrix4<float>& placement) {
    FlatMesh flat;
    flat.placement = placement;
    const std::vector<std::int32_t> place = copyVertices(mesh, flat);
    flat.reach = reachOf(flat);
    flat.corners.resize(static_cast<std::size_t>(mesh.TriangleCount()));
#pragma omp parallel for schedule(static)
    for (std::int32_t i = 0; i < mesh.TriangleCount(); ++i) {
        const UTriangle<float>& triangle = *mesh.Triangle(i);
        for (int k = 0; k < 3; ++k) {
            const auto vertex = static_cast<std::size_t>(triangle.V(k)->Index());
            flat.corners[static_cast<std::size_t>(i)][static_cast<std::size_t>(k)] = place[vertex];
        }
    }
    flat.placedBox = boxThrough(flat, placement);
    return flat;
}
