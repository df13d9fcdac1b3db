#include "TurnKernels.h"

#include <atomic>

#include "TurnKernelWidths.h"

#if defined(_MSC_VER) && !defined(__clang__)
#include <windows.h>
#endif

namespace {

#ifdef TESK_HAS_AVX2_KERNELS
bool hasAvx2() {
#if defined(_MSC_VER) && !defined(__clang__)
    return IsProcessorFeaturePresent(PF_AVX2_INSTRUCTIONS_AVAILABLE) != 0;
#else
    return __builtin_cpu_supports("avx2") != 0;
#endif
}
#endif

std::vector<const TurnKernels*> findKernels() {
    std::vector<const TurnKernels*> found = {&kBaseKernels};
#ifdef TESK_HAS_AVX2_KERNELS
    if (hasAvx2()) found.push_back(&kAvx2Kernels);
#endif
    return found;
}

std::atomic<const TurnKernels*> chosen = nullptr;

}  // namespace

const std::vector<const TurnKernels*>& availableTurnKernels() {
    static const std::vector<const TurnKernels*> kernels = findKernels();
    return kernels;
}

const TurnKernels& turnKernels() {
    const TurnKernels* kernels = chosen;
    return kernels != nullptr ? *kernels : *availableTurnKernels().back();
}

void useTurnKernels(const TurnKernels& kernels) {
    chosen = &kernels;
}
