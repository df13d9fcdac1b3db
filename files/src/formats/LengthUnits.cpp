#include "TeskPartFiles/LengthUnits.h"

#include <array>

namespace Tesk {

namespace {

constexpr std::array<LengthUnit, 6> kUnits = {{
    {"mm", "millimeter", 1.0},
    {"cm", "centimeter", 10.0},
    {"m", "meter", 1000.0},
    {"inch", "inch", 25.4},
    {"foot", "foot", 304.8},
    {"micron", "micron", 0.001},
}};

}  // namespace

std::span<const LengthUnit> lengthUnits() {
    return kUnits;
}

std::optional<LengthUnit> unitNamed(std::string_view name) {
    for (const LengthUnit& unit : kUnits) {
        if (name == unit.name || name == unit.longName) return unit;
    }
    return std::nullopt;
}

std::optional<double> millimetresPer(std::string_view unitName) {
    const auto unit = unitNamed(unitName);
    return unit ? std::optional(unit->millimetres) : std::nullopt;
}

}  // namespace Tesk
