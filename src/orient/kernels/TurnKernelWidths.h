#pragma once

#include "orient/kernels/TurnKernels.h"

namespace Tesk::orient {

/// Runs on every processor of the platform.
extern const TurnKernels kBaseKernels;

/// Runs only on x86-64 processors with AVX2.
extern const TurnKernels kAvx2Kernels;

}  // namespace Tesk::orient
