// Compiled for processors with AVX2. Nothing of the standard library is called from here: the
// linker could take its copy of an inline function for everyone's.
#include "orient/kernels/TurnKernelLoops.h"
#include "orient/kernels/TurnKernelWidths.h"

namespace Tesk::orient {

const TurnKernels kAvx2Kernels = kernelsOf<FloatPack8>("avx2");

}  // namespace Tesk::orient
