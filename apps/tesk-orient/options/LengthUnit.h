#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace App {

/// A unit that a mesh file's numbers can be in.
struct LengthUnit {
    std::string_view name;      ///< as the option --units takes it, and as reports print it
    std::string_view longName;  ///< as 3MF writes it
    double millimetres;
};

/// All of them; the first is the millimetre.
std::span<const LengthUnit> lengthUnits();

/// The unit of a name or long name.
std::optional<LengthUnit> unitNamed(std::string_view name);

}  // namespace App
