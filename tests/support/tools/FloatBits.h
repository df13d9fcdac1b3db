#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

/// Whether two floats are the same bit for bit; every NaN counts as the same.
inline bool sameBits(float a, float b) {
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// A float with all its bits, as printf's %a writes it.
inline std::string hexFloat(float value) {
    if (std::isnan(value)) return "nan";
    char text[40];
    std::snprintf(text, sizeof text, "%a", static_cast<double>(value));
    return text;
}

/// Condenses a sequence of floats into one number (FNV-1a over their bits; all NaN are one).
class BitHash {
 public:
    void add(std::uint32_t word) {
        for (int shift = 0; shift < 32; shift += 8) {
            m_hash = (m_hash ^ ((word >> shift) & 0xffu)) * 0x100000001b3u;
        }
    }
    void add(float value) {
        add(std::isnan(value) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(value));
    }
    void add(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        add(static_cast<std::uint32_t>(bits));
        add(static_cast<std::uint32_t>(bits >> 32));
    }
    std::uint64_t value() const { return m_hash; }

 private:
    std::uint64_t m_hash = 0xcbf29ce484222325u;
};
