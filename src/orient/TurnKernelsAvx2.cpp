// Compiled for processors with AVX2. Nothing of the standard library is called from here: the
// linker could take its copy of an inline function for everyone's.
#include "TurnKernelLoops.h"
#include "TurnKernelWidths.h"

const TurnKernels kAvx2Kernels = kernelsOf<FloatPack8>("avx2");
