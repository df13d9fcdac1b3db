#pragma once

#include "MinBoundingBox.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"

/// The box of a hull without faces: of a point (axes X, Y, Z), of a segment (the first axis along
/// it, no extent across it), or none.
OrientedBox3 lowDimensionBox(MinBoundingBoxImpl& impl);

/// The box of all hull vertices along axes that are orthogonal, not of zero length.
OrientedBox3 boxAlong(MinBoundingBoxImpl& impl, const std::array<Vector, 3>& axes);

/// A vector at a right angle to one that is not zero.
Vector anyOrthogonal(const Vector& v);
