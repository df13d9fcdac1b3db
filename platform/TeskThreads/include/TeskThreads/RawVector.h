#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace Tesk {

/// Leaves elements that are made without arguments uninitialised: so that a big list's memory is
/// first touched, and thereby got from the system, by the threads that fill it.
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

/// A list of plain values that resize() leaves undefined; each is to be written before it is read.
template <class T>
using RawVector = std::vector<T, RawAllocator<T>>;

}  // namespace Tesk
