#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// An item as another program's library reads it.
struct JudgedItem {
    std::array<float, 12> transform{};  ///< in the order of 3MF
    /// Of the object with its components, each where its transform puts it; mirrored triangles are
    /// not reversed.
    std::vector<std::array<double, 3>> positions;
    std::vector<std::array<std::uint32_t, 3>> triangles;
};

/// The items of a 3MF package as lib3mf reads them. Throws std::runtime_error where it does not.
std::vector<JudgedItem> judgedItems(const std::string& package);
