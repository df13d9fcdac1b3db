#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace Tesk {

/// An allocator that leaves default-constructed elements uninitialised. The memory of a large
/// vector is then first touched, and so provided by the system, by the threads that fill it.
template <class T>
class RawAllocator : public std::allocator<T> {
 public:
    template <class U>
    struct rebind {
        using other = RawAllocator<U>;
    };

    RawAllocator() = default;
    template <class U>
    RawAllocator(const RawAllocator<U>&) noexcept {}

    template <class U>
    void construct(U* place) noexcept {
        ::new (static_cast<void*>(place)) U;
    }
    template <class U, class... Arguments>
    void construct(U* place, Arguments&&... arguments) {
        ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
    }
};

/// A vector of plain values whose resize() leaves new elements undefined: write each before reading
/// it.
template <class T>
using RawVector = std::vector<T, RawAllocator<T>>;

}  // namespace Tesk
