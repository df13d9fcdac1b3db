#pragma once

#include "orient/kernels/TurnKernels.h"

namespace Tesk::orient {

/// For every processor of the platform.
extern const TurnKernels kBaseKernels;

/// For x86-64 processors with AVX2 only.
extern const TurnKernels kAvx2Kernels;

}  // namespace Tesk::orient
