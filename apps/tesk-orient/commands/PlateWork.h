#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Failure.h"
#include "commands/CommandSupport.h"
#include "part/MeshOutput.h"
#include "plate/PlateChecks.h"
#include "plate/PlateOutput.h"
#include "plate/Shapes.h"
#include "reports/PlateReport.h"
#include "reports/Report.h"

namespace App {

/// What all commands do with a file object by object.
class PlateWork {
 public:
    /// Reads the file, whose bytes it keeps where a 3MF is to be made of them, and tells its
    /// warnings. Keeps references to the options and the sink. Throws Failure.
    PlateWork(const CommonOptions& options, const WarningSink& warn);

    const LoadedPlate& plate() const { return m_plate; }
    const std::vector<Shape>& shapes() const { return m_shapes.shapes; }
    const ItemPlace& place(std::size_t item) const { return m_shapes.places[item]; }

    /// A shape's mesh, in the object's own frame, checked; tells its warnings.
    CheckedPart check(const Shape& shape, Purpose purpose);

    /// A shape's mesh as its first item lies on the plate.
    TriangleMesh lyingMesh(const Shape& shape) const;

    /// Decides where an item goes: to a rotation and, if any is given, a height.
    void turn(std::size_t item, const UMatrix4<double>& rotation,
              std::optional<double> height = 0.0);

    /// Adds a section; the shape's items have been turned.
    void addSection(const Shape& shape, const LoadedPart& lying, const PlateSection& section);

    /// Looks for items that overlap, and if the size is not 0 for those that leave the build
    /// volume.
    void checkPlaces(const UVector3<float>& buildVolume);

    /// Writes the items in their new places.
    void write(MeshOutput& output) const { App::write(output, m_plate, m_places); }

    /// Warnings so far that are not about one shape's mesh.
    Json plateWarnings() const;

    Report report(const PlateFrame& frame) const;

    /// Throws a Failure that names the file.
    [[noreturn]] void fail(ExitCode code, const std::string& text) const;

    const NewPlaces& places() const { return m_places; }

 private:
    void tell(PlateFinding finding);

    const CommonOptions& m_options;
    const WarningSink& m_warn;
    LoadedPlate m_plate;
    Shapes m_shapes;
    NewPlaces m_places;
    std::vector<PlateSection> m_sections;
    std::vector<PlateFinding> m_findings;
};

}  // namespace App
