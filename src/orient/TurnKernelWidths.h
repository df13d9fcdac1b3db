#pragma once

#include "TurnKernels.h"

/// For every processor of the platform.
extern const TurnKernels kBaseKernels;

/// For x86-64 processors with AVX2 only.
extern const TurnKernels kAvx2Kernels;
