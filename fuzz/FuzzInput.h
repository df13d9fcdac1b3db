#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Cuts the fuzzer's bytes into values; zeros after the end.
class FuzzInput {
 public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}

    template <class T>
    T take() {
        T value{};
        const std::size_t size = sizeof(T) < m_left ? sizeof(T) : m_left;
        std::memcpy(&value, m_data, size);
        m_data += size;
        m_left -= size;
        return value;
    }

    bool isEmpty() const { return m_left == 0; }

 private:
    const std::uint8_t* m_data;
    std::size_t m_left;
};
