#include "reports/PlateReport.h"

#include <fmt/format.h>

#include <algorithm>

#include "part/MeshChecks.h"
#include "part/PathText.h"
#include "plate/ItemTurn.h"
#include "poses/Turn.h"
#include "reports/ReportText.h"

namespace App {

namespace {

std::string counted(std::size_t count, const char* one, const char* many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

const char* wordFor(const LoadedPlate& plate, std::size_t count) {
    if (plate.isSplit) return count == 1 ? "body" : "bodies";
    return count == 1 ? "object" : "objects";
}

/// "scaled by 2, 1, 1" would need axes; a shape that is not as the object has it says so only.
std::string stretchText(const Shape& shape) {
    UMatrix4<double> mirrored;
    for (int i = 0; i < 3; ++i) mirrored.at(i, i) = -1.0;
    if (shape.stretch == UMatrix4<double>()) return "";
    const auto& m = shape.stretch;
    if (shape.stretch == mirrored) return ", mirrored";
    return m.at(0, 0) < 0.0 ? ", scaled and mirrored" : ", scaled";
}

std::string headingOf(const LoadedPlate& plate, const Shape& shape, const LoadedPart& lying) {
    const Tesk::PlateObject& object = plate.plate.objects[shape.object];
    std::string text = nameOf(plate, shape.object);
    if (!object.name.empty()) text += fmt::format(" (object {})", object.id);
    if (!object.partNumber.empty()) text += fmt::format(", part number {}", object.partNumber);
    text += stretchText(shape);
    if (!plate.isSplit) text += fmt::format(", {}", counted(shape.items.size(), "item", "items"));
    const std::array<double, 3> size = sizeOf(lying.mesh);
    return fmt::format("{}: {}, {}, {:.1f} × {:.1f} × {:.1f} mm\n\n", text,
                       counted(lying.mesh.triangles.size(), "triangle", "triangles"),
                       counted(lying.mesh.positions.size(), "vertex", "vertices"), size[0], size[1],
                       size[2]);
}

/// What becomes of the items, as far as the section does not say it.
std::string itemsText(const Shape& shape, const NewPlaces& places) {
    if (shape.items.size() == 1) {
        const bool isMoved = places[shape.items.front()].change == Change::kMoved;
        return isMoved ? "It is put down on the plate.\n" : "";
    }
    std::string text;
    for (const Change change : {Change::kTurned, Change::kMoved, Change::kKept}) {
        const auto count = std::count_if(shape.items.begin(), shape.items.end(),
                                         [&](std::size_t i) { return places[i].change == change; });
        if (count == 0) continue;
        const char* const what = change == Change::kTurned  ? "turned"
                                 : change == Change::kMoved ? "only put down on the plate"
                                                            : "left as they are";
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, what);
    }
    return fmt::format("That is for the first of {} items. Of all: {}.\n", shape.items.size(),
                       text);
}

Json rowsOf(const UMatrix4<double>& m) {
    Json rows = Json::array();
    for (int row = 0; row < 3; ++row) {
        rows.push_back({m.at(row, 0) + 0.0, m.at(row, 1) + 0.0, m.at(row, 2) + 0.0});
    }
    return rows;
}

Json itemsValue(const LoadedPlate& plate, const Shape& shape, const NewPlaces& places) {
    Json items = Json::array();
    for (const std::size_t i : shape.items) {
        const Tesk::PlateItem& item = plate.plate.items[i];
        items.push_back({{"item", item.place + 1},
                         {"partNumber", item.partNumber},
                         {"isPrintable", item.isPrintable},
                         {"change", nameOf(places[i].change)},
                         {"turn", valueOf(turnIn(toFloat(places[i].turn)))},
                         {"transform", item.transform.m},
                         {"newTransform", places[i].transform.m}});
    }
    return items;
}

Json inputOf(const CommonOptions& options, const LoadedPlate& plate) {
    return {{"file", displayName(options.part)},  {"format", Tesk::nameOf(plate.plate.format)},
            {"form", plate.plate.form},           {"unit", plate.unit.name},
            {"unitFromFile", plate.unitFromFile}, {"objects", plate.plate.objects.size()},
            {"items", plate.plate.items.size()}};
}

Json jsonOf(const CommonOptions& options, const LoadedPlate& plate, const PlateFrame& frame,
            const std::vector<PlateSection>& sections, const std::vector<PlateFinding>& findings) {
    Json conventions = {
        {"objects", "one for each object, and for each way in which its items scale or mirror it"},
        {"items", "counted from 1 in the order of the file"},
        {"stretch", "row vectors: what its items do to the object before they turn and move it"},
        {"transform", "as 3MF has it: four rows of three, in the file's unit"},
        {"frame", "figures and matrices are of the object as its first item lies on the plate"}};
    conventions.update(frame.conventions);
    Json objects = Json::array();
    for (const PlateSection& section : sections) objects.push_back(section.members);
    Json report = {{"schema", "tesk-orient/plate/1"},
                   {"command", frame.command},
                   {"input", inputOf(options, plate)}};
    if (!frame.settings.is_null()) report["settings"] = frame.settings;
    report["conventions"] = conventions;
    report["objects"] = objects;
    report["warnings"] = warningsValue(plate, findings);
    return report;
}

}  // namespace

PlateSection withObject(const LoadedPlate& plate, const Shape& shape, const LoadedPart& lying,
                        const NewPlaces& places, const PlateSection& section) {
    const Tesk::PlateObject& object = plate.plate.objects[shape.object];
    Json members = {{"id", object.id},
                    {"name", object.name},
                    {"partNumber", object.partNumber},
                    {"modelPart", object.modelPart},
                    {"stretch", rowsOf(shape.stretch)},
                    {"triangles", lying.mesh.triangles.size()},
                    {"vertices", lying.mesh.positions.size()},
                    {"sizeMm", sizeOf(lying.mesh)},
                    {"items", itemsValue(plate, shape, places)}};
    members.update(section.members);
    return {headingOf(plate, shape, lying) + section.table + itemsText(shape, places), members};
}

Json warningsValue(const LoadedPlate& plate, const std::vector<PlateFinding>& findings) {
    Json values = Json::array();
    for (const PlateFinding& finding : findings) {
        Json items = Json::array();
        for (const std::size_t i : finding.items) items.push_back(plate.plate.items[i].place + 1);
        Json value = {{"code", finding.warning.code},
                      {"count", finding.warning.count},
                      {"text", finding.warning.text},
                      {"items", items}};
        if (finding.distance > 0.0) value["distanceMm"] = finding.distance;
        values.push_back(value);
    }
    return values;
}

Report plateReport(const CommonOptions& options, const LoadedPlate& plate, const PlateFrame& frame,
                   const std::vector<PlateSection>& sections,
                   const std::vector<PlateFinding>& findings) {
    if (options.isJson) return {{}, jsonOf(options, plate, frame, sections, findings), {}};
    const std::size_t objects = plate.plate.objects.size();
    const std::size_t items = plate.plate.items.size();
    std::string text =
        fmt::format("{}: {}{}{}, {} {}", displayName(options.part.filename()), plate.plate.form,
                    plate.plate.form.empty() ? "" : " ", Tesk::nameOf(plate.plate.format), objects,
                    wordFor(plate, objects));
    if (!plate.isSplit) text += fmt::format(", {}", counted(items, "item", "items"));
    text += "\n";
    for (const PlateSection& section : sections) text += "\n" + section.table;
    return {text, {}, {}};
}

}  // namespace App
