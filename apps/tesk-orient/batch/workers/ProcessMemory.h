#pragma once

#include <cstdint>
#include <optional>

namespace App {

/// Lets this process allocate about so many bytes more than it has now; what goes beyond fails as
/// it does where memory is exhausted. Memory that is reserved counts, whether it is used or not.
/// False where the system refuses.
bool limitMemory(std::uint64_t bytes);

/// Offers this process to the system as the first to end where memory runs out.
void volunteerWhenMemoryRunsOut();

/// Measures the peak anew from here on, where the system can do that: on Linux.
void resetPeakMemory();

/// The most memory, in bytes, that this process held at once. Empty where nobody knows.
std::optional<std::uint64_t> peakMemoryBytes();

}  // namespace App
