#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace Tesk {

/// A unit that a mesh file's numbers can be in.
struct LengthUnit {
    std::string_view name;      ///< short, for people: "mm"
    std::string_view longName;  ///< as 3MF writes it: "millimeter"
    double millimetres;
};

/// All units that 3MF knows; the first is the millimetre.
std::span<const LengthUnit> lengthUnits();

/// The unit of a name or long name; nothing for any other name. Short names are not part of 3MF,
/// but occur in its files.
std::optional<LengthUnit> unitNamed(std::string_view name);

/// How many millimetres the unit of a name has.
std::optional<double> millimetresPer(std::string_view unitName);

}  // namespace Tesk
