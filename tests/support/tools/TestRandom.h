#pragma once

#include <cstdint>

/// Random numbers for making test data: the same on every platform, and no relation to the ones
/// that the library draws.
class TestRandom {
 public:
    explicit TestRandom(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t bits() {
        m_state += 0x9e3779b97f4a7c15u;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }

    /// 0..n-1.
    int below(int n) { return static_cast<int>(bits() % static_cast<std::uint64_t>(n)); }

    /// In [low, high), with 24 random bits.
    float in(float low, float high) {
        const float unit = static_cast<float>(bits() >> 40) * 0x1p-24f;
        return low + (high - low) * unit;
    }

 private:
    std::uint64_t m_state;
};
