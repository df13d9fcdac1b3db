#include "LayFlatReport.h"

#include <fmt/format.h>

#include "MeshChecks.h"
#include "ReportText.h"
#include "ReportValues.h"

namespace App {

std::string layFlatReportTable(const LayFlatOptions& options, const LayFlatResult& result) {
    const auto size = sizeOf(result.placed);
    std::string text = headingOf(options, result.part);
    text += fmt::format(
        "Laid flat it takes {:.1f} × {:.1f} × {:.1f} mm. Matrix for row vectors,\n"
        "[x y z 1] * matrix, that turns it and sets it down on z = 0:\n\n",
        size[0], size[1], size[2]);
    for (int row = 0; row < 4; ++row) {
        const auto cell = [&](int col) {
            return static_cast<double>(result.matrix.at(row, col)) + 0.0;
        };
        text += fmt::format("  {:>12.6f}  {:>12.6f}  {:>12.6f}  {:>4.0f}\n", cell(0), cell(1),
                            cell(2), cell(3));
    }
    return text + "\n";
}

std::string layFlatReportJson(const LayFlatOptions& options, const LayFlatResult& result) {
    const auto size = sizeOf(result.placed);
    const Json report = {
        {"schema", "tesk-orient/lay-flat/1"},
        {"input", inputValue(options, result.part)},
        {"conventions",
         {{"matrix", kMatrixConvention},
          {"placement", "longest side along X, shortest along Z, lowest point at z = 0"}}},
        {"matrix", valueOf(result.matrix)},
        {"sizeMm", {size[0], size[1], size[2]}}};
    return textOf(report);
}

}  // namespace App
