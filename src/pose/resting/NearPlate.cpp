#include "pose/resting/NearPlate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"
#include "pose/facets/FacetMeasures.h"
#include "pose/geometry/PoseTurn.h"
#include "pose/mesh/FarthestVertex.h"
#include "pose/resting/FlatPoints.h"

namespace Tesk::pose {

namespace {

using Vector = UVector3<double>;

Vector wide(const UPoint3<float>& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}

Vector lowOf(const UBox3<float>& box) {
    return wide({box.MinX(), box.MinY(), box.MinZ()});
}

Vector highOf(const UBox3<float>& box) {
    return wide({box.MaxX(), box.MaxY(), box.MaxZ()});
}

/// Calls take(vertex) for the kept vertices, but for groups and blocks of them that are out.
template <class IsOut, class Take>
void forVertices(const PoseMesh& mesh, IsOut isOut, Take take) {
    const std::size_t blocks = mesh.vertexBounds.size();
    for (std::size_t block = 0; block < blocks; ++block) {
        if (block % kGroupOfBlocks == 0 && isOut(mesh.vertexGroupBounds[block / kGroupOfBlocks])) {
            block += kGroupOfBlocks - 1;
            continue;
        }
        if (isOut(mesh.vertexBounds[block])) continue;
        const std::size_t first = block * kBlockSize;
        const std::size_t end = std::min(first + kBlockSize, mesh.flat.keptVertices);
        for (std::size_t v = first; v < end; ++v) take(static_cast<std::int32_t>(v));
    }
}

/// The first of the lowest vertices; none if no height is a number. Heights are in float: the
/// rounding is far below the gap.
struct Lowest {
    float height = std::numeric_limits<float>::max();
    std::int32_t vertex = -1;

    Lowest(const PoseMesh& mesh, const UVector3<float>& up) {
        const std::int32_t low = farthestAlong(mesh, up * -1.0f, -1);
        if (low < 0) return;
        height = mesh.placed(low).Dot(up);
        forVertices(
            mesh, [&](const BlockBounds& b) { return !(b.leastAlong(up) <= height); },
            [&](std::int32_t v) {
                const float value = mesh.placed(v).Dot(up);
                if (!(value < height) && (vertex >= 0 || value != height)) return;
                height = value;
                vertex = v;
            });
    }
};

/// An octagon around what is seen from below.
class Octagon {
 public:
    explicit Octagon(const PoseTurn& turn) : m_turn(turn) { m_reach.fill(-kFar); }

    void add(const Vector& p) {
        const Vector t = m_turn.turned(p);
        const double along[kSides] = {t.x,  t.x + t.y,  t.y,  t.y - t.x,
                                      -t.x, -t.x - t.y, -t.y, t.x - t.y};
        for (std::size_t k = 0; k < kSides; ++k) m_reach[k] = std::max(m_reach[k], along[k]);
    }

    /// Of the rectangle, without the corners that are cut off.
    double area() const {
        if (m_reach[0] == -kFar) return 0.0;
        double area = (m_reach[0] + m_reach[4]) * (m_reach[2] + m_reach[6]);
        for (std::size_t k = 0; k < kSides; k += 2) {
            const double leg = m_reach[k] + m_reach[(k + 2) % kSides] - m_reach[k + 1];
            area -= std::max(leg, 0.0) * leg * 0.5;
        }
        return area;
    }

 private:
    static constexpr double kFar = std::numeric_limits<double>::max();
    static constexpr std::size_t kSides = 8;

    PoseTurn m_turn;
    std::array<double, kSides> m_reach;
};

/// How far a plate that is tilted by up to an angle goes up beside the lowest point.
struct Slope {
    double tangent;
    double gap;  ///< straight up from the plate to what still touches it

    explicit Slope(double withinDeg) {
        const double angleRad = withinDeg * std::numbers::pi / 180.0;
        const double cosine = Tesk::cosine(angleRad);
        tangent = Tesk::sine(angleRad) / cosine;
        gap = static_cast<double>(kPlateGap) / cosine;
    }

    /// The depth above the lowest point q at which it passes by a point, with p − q given.
    double at(const Vector& offset, const Vector& up) const {
        const double along = offset | up;
        const double lateralSq = (offset | offset) - along * along;
        return tangent * std::sqrt(std::max(lateralSq, 0.0));
    }
};

/// The octagon around those of some points that are near a plate.
double roomAmong(const std::vector<Vector>& points, const Vector& up, double withinDeg,
                 double rounding) {
    const Vector* lowest = nullptr;
    double least = std::numeric_limits<double>::infinity();
    for (const Vector& p : points) {
        const double height = p | up;
        if (!(height < least)) continue;
        least = height;
        lowest = &p;
    }
    if (lowest == nullptr) return 0.0;
    const Slope slope(withinDeg);
    const double tangentSq = slope.tangent * slope.tangent * (1.0 + 1e-9);
    Octagon octagon(PoseTurn::ontoUp(up));
    for (const Vector& p : points) {
        const Vector offset = p - *lowest;
        const double along = offset | up;
        const double depth = along - rounding - slope.gap;
        const double lateralSq = (offset | offset) - along * along;
        if (depth <= 0.0 || depth * depth <= tangentSq * lateralSq) octagon.add(offset);
    }
    return octagon.area();
}

/// Seven cones of half the angle hold every plate: that around `up`, and six around it. No plate
/// has more room than the one that its cone leaves. Stops once there is enough.
double roomFor(const std::vector<Vector>& points, const Vector& up, double withinDeg,
               double rounding, double wanted) {
    constexpr double kSixth = std::numbers::pi / 3.0;
    const double half = withinDeg * 0.5;
    // A little wider than in the plane, in which this angle would just do.
    const double within = half * 1.01;
    double room = roomAmong(points, up, within, rounding);
    if (room >= wanted) return room;
    const double tiltRad = half * std::numbers::sqrt3 * std::numbers::pi / 180.0;
    const PoseTurn turn = PoseTurn::ontoUp(up);
    for (int k = 0; k < 6; ++k) {
        const double sine = Tesk::sine(tiltRad);
        const Vector tilted(sine * Tesk::cosine(k * kSixth), sine * Tesk::sine(k * kSixth),
                            Tesk::cosine(tiltRad));
        room = std::max(room, roomAmong(points, turn.turnedBack(tilted), within, rounding));
        if (room >= wanted) return room;
    }
    return room;
}

/// What one look at a direction needs to know of each vertex.
class Look {
 public:
    Look(const PoseMesh& mesh, const Vector& up, double withinDeg)
        : m_mesh(mesh),
          m_up(up),
          m_along(up.As<float>()),
          m_lowest(mesh, m_along),
          m_slope(withinDeg) {
        if (!isFound()) return;
        m_q = wide(mesh.placed(m_lowest.vertex));
        const Vector low = lowOf(mesh.flat.placedBox);
        const Vector high = highOf(mesh.flat.placedBox);
        m_rounding = 1e-6 * std::max(low.GetLength(), high.GetLength());
    }

    bool isFound() const { return m_lowest.vertex >= 0; }
    double rounding() const { return m_rounding; }
    double bottom() const { return static_cast<double>(m_lowest.height); }

    /// Calls take(placed vertex, its offset from the lowest) for what a plate can reach, or comes
    /// within a gap of.
    template <class Take>
    void forReached(double gap, Take take) const {
        const double flat = bottom() + m_rounding + gap;
        forVertices(
            m_mesh,
            [&](const BlockBounds& b) {
                const double depth = static_cast<double>(b.leastAlong(m_along)) - flat;
                return depth > 0.0 && depth > m_slope.tangent * mostDistance(b);
            },
            [&](std::int32_t v) {
                const UPoint3<float> p = m_mesh.placed(v);
                const Vector offset = wide(p) - m_q;
                const double depth = static_cast<double>(p.Dot(m_along)) - flat;
                if (depth <= 0.0 || depth <= m_slope.at(offset, m_up)) take(p, offset);
            });
    }

    double gap() const { return m_slope.gap; }

 private:
    /// At least the distance of each of the block's vertices from the lowest.
    double mostDistance(const BlockBounds& b) const {
        double sum = 0.0;
        for (int i = 0; i < 3; ++i) {
            const double below = m_q[i] - static_cast<double>(b.low[i]);
            const double above = static_cast<double>(b.high[i]) - m_q[i];
            const double most = std::max(std::fabs(below), std::fabs(above));
            sum += most * most;
        }
        return std::sqrt(sum) * (1.0 + 1e-9);
    }

    const PoseMesh& m_mesh;
    Vector m_up;
    UVector3<float> m_along;
    Lowest m_lowest;
    Slope m_slope;
    Vector m_q;
    double m_rounding = 0.0;
};

/// A quick bound of the room: the square around what is within reach of any plate.
double squareAround(const std::vector<UPoint3<float>>& points) {
    UBox3<float> box;
    for (const UPoint3<float>& p : points) box.Extend(p);
    const double diagonal = (highOf(box) - lowOf(box)).GetLength();
    return diagonal * diagonal;
}

}  // namespace

NearPlate nearPlate(const PoseMesh& mesh, const Vector& up, double withinDeg, double roomWanted) {
    NearPlate near;
    const Look look(mesh, up, withinDeg);
    if (!look.isFound()) return near;
    look.forReached(0.0, [&](const UPoint3<float>& p, const Vector&) { near.points.push_back(p); });
    near.bottom = look.bottom();
    near.rounding = look.rounding();
    if (!(roomWanted > 0.0)) return near;
    // Room enough by far is not looked at closer.
    constexpr double kByFar = 16.0;
    near.room = squareAround(near.points);
    if (near.room >= kByFar * roomWanted) return near;
    std::vector<Vector> touchable;
    look.forReached(look.gap(),
                    [&](const UPoint3<float>&, const Vector& p) { touchable.push_back(p); });
    near.room = roomFor(touchable, up, withinDeg, 2.0 * look.rounding(), roomWanted);
    return near;
}

void thin(const Vector& up, NearPlate& near) {
    thinFlat(up, near.bottom, near.rounding, near.points);
    thinTilted(up, near.rounding, near.points);
}

}  // namespace Tesk::pose
