#pragma once

#include <atomic>
#include <cstdint>

// Replaces the allocation functions of a program, so that a chosen allocation fails, on whichever
// thread it happens. Compiled into the programs that want it, and no others.

/// More allocations than any test makes.
constexpr std::int64_t kNever = std::int64_t{1} << 40;

/// How many more succeed; after them all fail.
extern std::atomic<std::int64_t> allocationsLeft;

/// How many blocks are not given back yet.
extern std::atomic<std::int64_t> blocksHeld;
