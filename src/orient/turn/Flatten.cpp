#include "orient/turn/Flatten.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "TeskCommon/Assert.h"
#include "orient/turn/TurnedPart.h"

namespace Tesk::orient {
namespace {

using Mesh = UMesh<float>;

/// The number of vertices or triangles that a thread handles at a time.
constexpr std::int64_t kPiece = 8192;

/// Counts the vertices that are not deleted, piece by piece, and so tells where each piece goes in
/// the flat arrays: all kept vertices come first, then all deleted ones.
class KeptVertices {
 public:
    KeptVertices(Tesk::Team& team, const Mesh& mesh)
        : m_before(static_cast<std::size_t>((mesh.VertexCount() + kPiece - 1) / kPiece) + 1) {
        team.forPieces(mesh.VertexCount(), kPiece, [&](std::int64_t first, std::int64_t end, int) {
            std::int64_t kept = 0;
            for (std::int64_t i = first; i < end; ++i) kept += isKept(mesh, i) ? 1 : 0;
            m_before[static_cast<std::size_t>(first / kPiece) + 1] = kept;
        });
        std::partial_sum(m_before.begin(), m_before.end(), m_before.begin());
    }

    static bool isKept(const Mesh& mesh, std::int64_t i) {
        return !mesh.Vertex(static_cast<std::int32_t>(i))->IsD();
    }

    std::int64_t all() const { return m_before.back(); }

    /// The places of the first kept and the first deleted vertex of the piece that begins at
    /// `first`.
    std::int64_t placeOfKept(std::int64_t first) const {
        return m_before[static_cast<std::size_t>(first / kPiece)];
    }
    std::int64_t placeOfDeleted(std::int64_t first) const {
        return all() + first - placeOfKept(first);
    }

 private:
    std::vector<std::int64_t> m_before;  ///< kept vertices before each piece; last, all of them
};

float largerReach(float reach, float coordinate) {
    if (!std::isfinite(coordinate)) return std::numeric_limits<float>::infinity();
    return std::max(reach, std::fabs(coordinate));
}

/// The place of each vertex of the mesh in the flat arrays.
using Places = Tesk::RawVector<std::int32_t>;

/// Copies the vertices of a piece; returns their reach.
float copyPiece(const Mesh& mesh, const KeptVertices& kept, std::int64_t first, std::int64_t end,
                FlatMesh& flat, Places& places) {
    float reach = 0.0f;
    std::int64_t nextKept = kept.placeOfKept(first);
    std::int64_t nextDeleted = kept.placeOfDeleted(first);
    for (std::int64_t i = first; i < end; ++i) {
        const std::int64_t place = KeptVertices::isKept(mesh, i) ? nextKept++ : nextDeleted++;
        const UPoint3<float>& p = mesh.Vertex(static_cast<std::int32_t>(i))->P();
        const auto at = static_cast<std::size_t>(place);
        flat.x[at] = p.x;
        flat.y[at] = p.y;
        flat.z[at] = p.z;
        places[static_cast<std::size_t>(i)] = static_cast<std::int32_t>(place);
        reach = largerReach(largerReach(largerReach(reach, p.x), p.y), p.z);
    }
    return reach;
}

Places copyVertices(Tesk::Team& team, const Mesh& mesh, FlatMesh& flat) {
    const auto count = static_cast<std::size_t>(mesh.VertexCount());
    const KeptVertices kept(team, mesh);
    flat.keptVertices = static_cast<std::size_t>(kept.all());
    flat.x.resize(count);
    flat.y.resize(count);
    flat.z.resize(count);
    Places places(count);
    std::vector<float> reaches(static_cast<std::size_t>(team.size()));
    team.forPieces(mesh.VertexCount(), kPiece,
                   [&](std::int64_t first, std::int64_t end, int thread) {
                       float& reach = reaches[static_cast<std::size_t>(thread)];
                       reach = std::max(reach, copyPiece(mesh, kept, first, end, flat, places));
                   });
    flat.reach = *std::max_element(reaches.begin(), reaches.end());
    return places;
}

void copyCorners(const Mesh& mesh, const Places& places, std::int64_t first, std::int64_t end,
                 FlatMesh& flat) {
    for (std::int64_t i = first; i < end; ++i) {
        const UTriangle<float>& triangle = *mesh.Triangle(static_cast<std::int32_t>(i));
        for (int k = 0; k < 3; ++k) {
            const auto vertex = static_cast<std::size_t>(triangle.V(k)->Index());
            TESK_ASSERT(vertex < places.size());
            flat.corners[static_cast<std::size_t>(i)][static_cast<std::size_t>(k)] = places[vertex];
        }
    }
}

}  // namespace

FlatMesh flatten(Tesk::Team& team, const Mesh& mesh, const UMatrix4<float>& placement) {
    FlatMesh flat;
    flat.placement = placement;
    const Places places = copyVertices(team, mesh, flat);
    flat.corners.resize(static_cast<std::size_t>(mesh.TriangleCount()));
    // The first piece stands for the box, which is computed by one thread.
    team.forPieces(mesh.TriangleCount() + kPiece, kPiece,
                   [&](std::int64_t first, std::int64_t end, int) {
                       if (first == 0) {
                           flat.placedBox = boxThrough(flat, placement);
                       } else {
                           copyCorners(mesh, places, first - kPiece, end - kPiece, flat);
                       }
                   });
    return flat;
}

FlatMesh flatten(const Mesh& mesh, const UMatrix4<float>& placement) {
    Tesk::Team alone;
    return flatten(alone, mesh, placement);
}

}  // namespace Tesk::orient
