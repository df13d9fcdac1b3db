#include "tools/FailingAllocations.h"

#include <cstdlib>
#include <new>

std::atomic<std::int64_t> allocationsLeft = kNever;
std::atomic<std::int64_t> blocksHeld = 0;

namespace {

/// A block, or null where this allocation is to fail.
void* tryToAllocate(std::size_t size) {
    if (allocationsLeft.fetch_sub(1) <= 0) return nullptr;
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr) ++blocksHeld;
    return block;
}

void* allocate(std::size_t size) {
    void* block = tryToAllocate(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void release(void* block) {
    if (block != nullptr) --blocksHeld;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return tryToAllocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return tryToAllocate(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
