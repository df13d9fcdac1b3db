#include "commands/PlateWork.h"

#include <fmt/format.h>

#include <utility>

#include "part/PathText.h"

namespace App {

namespace {

bool isThreeMf(const std::filesystem::path& path) {
    return Tesk::formatOf(path) == Tesk::PartFormat::kThreeMf;
}

}  // namespace

PlateWork::PlateWork(const CommonOptions& options, const WarningSink& warn)
    : m_options(options),
      m_warn(warn),
      m_plate(loadPlate(options, /*keepsPackage=*/isThreeMf(options.output))),
      m_places(presentPlaces(m_plate)) {
    stopIfInterrupted();
    try {
        m_shapes = shapesOf(m_plate);
    } catch (const InputFailure& failure) {
        fail(failure.code(), failure.what());
    }
    for (const Warning& warning : m_plate.warnings) tell({warning, {}, 0.0});
}

CheckedPart PlateWork::check(const Shape& shape, Purpose purpose) {
    const std::string name = nameOf(m_plate, shape.object);
    LoadedPart part;
    part.unit = m_plate.unit;
    try {
        part.mesh = meshOf(m_plate, shape);
    } catch (const InputFailure& failure) {
        fail(failure.code(), name + ": " + failure.what());
    }
    CheckedPart checked = checkedPart(m_options, std::move(part), purpose);
    for (Warning warning : checked.part.warnings) {
        warning.text = name + ": " + warning.text;
        tell({warning, shape.items, 0.0, /*isOfShape=*/true});
    }
    return checked;
}

TriangleMesh PlateWork::lyingMesh(const Shape& shape) const {
    return moved(m_plate.plate.objects[shape.object].mesh, place(shape.items.front()).toPlate);
}

void PlateWork::turn(std::size_t item, const UMatrix4<double>& rotation,
                     std::optional<double> height) {
    m_places[item] = withRotation(m_plate, item, place(item), rotation, height);
}

void PlateWork::addSection(const Shape& shape, const LoadedPart& lying,
                           const PlateSection& section) {
    m_sections.push_back(withObject(m_plate, shape, lying, m_places, section));
}

void PlateWork::checkPlaces(const UVector3<float>& buildVolume) {
    for (PlateFinding& finding : overlapsOn(m_plate, m_places)) tell(std::move(finding));
    for (PlateFinding& finding : leavingVolume(m_plate, m_places, buildVolume)) {
        tell(std::move(finding));
    }
}

Json PlateWork::plateWarnings() const {
    std::vector<PlateFinding> findings;
    for (const PlateFinding& finding : m_findings) {
        if (!finding.isOfShape) findings.push_back(finding);
    }
    return warningsValue(m_plate, findings);
}

Report PlateWork::report(const PlateFrame& frame) const {
    return plateReport(m_options, m_plate, frame, m_sections, m_findings);
}

void PlateWork::fail(ExitCode code, const std::string& text) const {
    throw Failure(code, displayName(m_options.part) + ": " + text);
}

void PlateWork::tell(PlateFinding finding) {
    if (m_warn) m_warn(finding.warning);
    m_findings.push_back(std::move(finding));
}

}  // namespace App
