// Compiled for processors with AVX2. Nothing here may call the standard library: the linker could
// choose this file's copy of an inline function for the whole library.
#include "orient/kernels/TurnKernelLoops.h"
#include "orient/kernels/TurnKernelWidths.h"

namespace Tesk::orient {

const TurnKernels kAvx2Kernels = kernelsOf<FloatPack8>("avx2");

}  // namespace Tesk::orient
