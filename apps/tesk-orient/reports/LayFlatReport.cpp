#include "reports/LayFlatReport.h"

#include <fmt/format.h>

#include "part/MeshChecks.h"
#include "poses/Turn.h"
#include "reports/ReportText.h"

namespace App {

std::string layFlatText(const LayFlatResult& result) {
    const auto before = sizeOf(result.part.mesh);
    const auto after = sizeOf(result.placed);
    std::string text =
        "  Size    As it lies     Laid flat\n"
        "                  mm            mm\n";
    for (std::size_t i = 0; i < 3; ++i) {
        text += fmt::format("     {}  {:>12.3f}  {:>12.3f}\n", "XYZ"[i], before[i], after[i]);
    }
    text += fmt::format(
        "\nTo lay it flat, {}, and set it down on z = 0.\n"
        "As a matrix, for row vectors in mm, [x y z 1] * matrix:\n\n",
        textOf(turnIn(result.matrix)));
    for (int row = 0; row < 4; ++row) {
        const auto cell = [&](int col) {
            return static_cast<double>(result.matrix.at(row, col)) + 0.0;
        };
        text += fmt::format("  {:>12.6f}  {:>12.6f}  {:>12.6f}  {:>4.0f}\n", cell(0), cell(1),
                            cell(2), cell(3));
    }
    return text + "\n";
}

std::string layFlatReportTable(const LayFlatOptions& options, const LayFlatResult& result) {
    return headingOf(options, result.part) + layFlatText(result);
}

Json layFlatConventions() {
    return {{"matrix", kMatrixConvention},
            {"placement",
             "longest side of the smallest box along X, shortest along Z, lowest point at z = 0"},
            {"turn", "right-handed; the matrix also moves the part"}};
}

Json layFlatMembers(const LayFlatResult& result) {
    return {{"sizeBeforeMm", sizeOf(result.part.mesh)},
            {"sizeAfterMm", sizeOf(result.placed)},
            {"turn", valueOf(turnIn(result.matrix))},
            {"matrix", valueOf(result.matrix)}};
}

Json layFlatReportJson(const LayFlatOptions& options, const LayFlatResult& result) {
    Json report = {{"schema", "tesk-orient/lay-flat/1"},
                   {"input", inputValue(options, result.part)},
                   {"conventions", layFlatConventions()}};
    report.update(layFlatMembers(result));
    return report;
}

}  // namespace App
