#include "bytes/HugePages.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace Tesk::files {

void preferHugePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) {
#if defined(__linux__)
    constexpr std::size_t kLeast = std::size_t{8} << 20;
    if (size < kLeast) return;
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto start = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (start + page - 1) / page * page;
    const std::uintptr_t last = (start + size) / page * page;
    // Refused where the kernel has no huge pages, which does no harm.
    madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#endif
}

}  // namespace Tesk::files
