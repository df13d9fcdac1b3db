#include "TurnKernelLoops.h"
#include "TurnKernelWidths.h"

#ifdef TESK_HAS_SSE2
const TurnKernels kBaseKernels = kernelsOf<FloatPack4>("sse2");
#else
const TurnKernels kBaseKernels = kernelsOf<FloatPack1>("plain");
#endif
