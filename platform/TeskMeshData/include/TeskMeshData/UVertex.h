#pragma once

#include <cstdint>

#include "TeskDataBasic/UPoint3.h"

/// A mesh vertex: its position in the mesh's own frame, its index in the vertex list, and whether
/// an edit has deleted it (deleted vertices stay in the list).
template <class T>
class UVertex {
 public:
    UVertex(const UPoint3<T>& position, std::int32_t index)
        : m_position(position), m_index(index) {}

    const UPoint3<T>& P() const { return m_position; }
    void SetP(const UPoint3<T>& position) { m_position = position; }

    bool IsD() const { return m_isDeleted; }
    void SetD(bool isDeleted) { m_isDeleted = isDeleted; }

    /// Index in the mesh's vertex list.
    std::int32_t Index() const { return m_index; }

 private:
    UPoint3<T> m_position;
    std::int32_t m_index;
    bool m_isDeleted = false;
};
