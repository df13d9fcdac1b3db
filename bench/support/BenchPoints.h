#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "MinBoundingBox.h"
#include "shapes/BoxShapes.h"

/// What the benchmarks of hulls and boxes run on.
std::vector<NamedPoints> benchPointSets(std::size_t maxPoints);

/// The vertices of the sample meshes; none where they are not at hand.
std::vector<NamedPoints> samplePointSets(std::size_t maxPoints);

/// A hash of a box's fifteen floats.
std::uint64_t hashOf(const OrientedBox3& box);
