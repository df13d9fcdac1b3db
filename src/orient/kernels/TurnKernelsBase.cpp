#include "orient/kernels/TurnKernelLoops.h"
#include "orient/kernels/TurnKernelWidths.h"

namespace Tesk::orient {

#ifdef TESK_HAS_SSE2
const TurnKernels kBaseKernels = kernelsOf<FloatPack4>("sse2");
#else
const TurnKernels kBaseKernels = kernelsOf<FloatPack1>("plain");
#endif

}  // namespace Tesk::orient
