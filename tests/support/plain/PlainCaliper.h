#pragma once

#include <array>
#include <vector>

#include "TeskDataBasic/UVector3.h"

/// The rectangle kernels, step by step. `points` are the hull's vertices; an outline is a cyclic
/// list of indices into them, and a position an index into the outline.

/// A rectangle around an outline seen along a direction n.
struct PlainRect {
    UVector3<double> r0;           ///< along the bottom side
    UVector3<double> r1;           ///< from the bottom to the top side
    std::array<int, 4> support{};  ///< positions at the base, right, top and left side
    std::array<double, 2> q{};     ///< squared lengths of r0 and r1
    double area = 0.0;             ///< times the length of n
    float score = -1.0f;           ///< for the caller
};

/// The squared sine between a side and the outline edge that leaves its support.
struct PlainAngle {
    double sinSq = 0.0;
    int side = 0;
};

/// Up to four of them.
struct PlainAngles {
    std::array<PlainAngle, 4> entries{};
    int count = 0;
};

using PlainPoints = std::vector<UVector3<double>>;

void plainRemoveCollinear(const PlainPoints& points, const UVector3<double>& n,
                          std::vector<int>& outline);

/// Drops vertices from which an edge leads along n, to within a sine of 1e-7.
void plainRemoveSteep(const PlainPoints& points, const UVector3<double>& n,
                      std::vector<int>& outline);

/// Drops vertices in line with their neighbours; where fewer than three are left, those that steep
/// edges start at, and then again.
void plainTidyOutline(const PlainPoints& points, const UVector3<double>& n,
                      std::vector<int>& outline);

/// The rectangle whose bottom side is flush with the edge from position i0 to position i1.
PlainRect plainEdgeRect(const PlainPoints& points, const UVector3<double>& n,
                        const std::vector<int>& outline, int i0, int i1);

PlainAngles plainAngles(const PlainPoints& points, const UVector3<double>& n,
                        const std::vector<int>& outline, const PlainRect& rect);

/// Places of the entries in ascending order; equal ones keep theirs.
std::array<int, 4> plainSortAngles(const PlainAngles& angles);

/// Turns the rectangle onto the next edge. False where its bottom vertex was visited already.
bool plainUpdateSupport(const PlainPoints& points, const UVector3<double>& n,
                        const std::vector<int>& outline, const PlainAngles& angles,
                        const std::array<int, 4>& order, std::vector<bool>& visited,
                        PlainRect& rect);

/// All rectangles of a run, in its order: the first on the edge from the last position to the
/// first, then one per update until the run ends.
std::vector<PlainRect> plainRun(const PlainPoints& points, const UVector3<double>& n,
                                const std::vector<int>& outline);

/// The rectangle of least area, the first of equal ones.
PlainRect plainMinRect(const PlainPoints& points, const UVector3<double>& n,
                       const std::vector<int>& outline);
