#pragma once

#include "TeskDataBasic/UVector3.h"

namespace Tesk::minbox {

using Vector = UVector3<double>;

/// A vector orthogonal to a given one, which is not zero.
Vector anyOrthogonal(const Vector& v);

}  // namespace Tesk::minbox
