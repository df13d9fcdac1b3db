#include "orient/kernels/TurnKernels.h"

#include <algorithm>
#include <atomic>

#include "TeskCommon/Assert.h"
#include "orient/kernels/TurnKernelWidths.h"

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

namespace Tesk::orient {
namespace {

#ifdef TESK_HAS_AVX2_KERNELS
bool hasAvx2() {
#if defined(_MSC_VER) && !defined(__clang__)
    constexpr int kSavesVectors = 1 << 27;  // leaf 1, ecx
    constexpr int kAvx2 = 1 << 5;           // leaf 7, ebx
    constexpr unsigned long long kVectorState = 6;
    int leaf[4];
    __cpuid(leaf, 1);
    if ((leaf[2] & kSavesVectors) == 0 || (_xgetbv(0) & kVectorState) != kVectorState) return false;
    __cpuidex(leaf, 7, 0);
    return (leaf[1] & kAvx2) != 0;
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
    TESK_ASSERT(std::ranges::count(availableTurnKernels(), &kernels) == 1);
    chosen = &kernels;
}

}  // namespace Tesk::orient
