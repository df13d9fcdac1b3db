#include "ReferenceShapes.h"

#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

Part makeOpenBoxes() {
    Part part = makeStack(2, 2, 2, 3.0f).withoutEvery(5);
    return part.join(makeSphere(4.0f, 200).withoutEvery(3).moved(2.0f, 2.0f, 5.0f));
}

Part makeMixture() {
    Part part = makeSoup(60, 10.0f, 11);
    return part.join(makeTable()).withDegenerateTriangles().withUnusedVertices(7);
}

/// The same gear as it stands in a mesh with shared vertices, away from the origin.
Part makeGearFarAway() {
    return makeGear(11, 9.0f, 3.0f).moved(4000.5f, -2500.25f, 800.125f);
}

}  // namespace

const std::vector<NamedPart>& referenceShapes() {
    static const std::vector<NamedPart> shapes = {
        {"UnitCube", makeBox({0, 0, 0}, {1, 1, 1})},
        {"Box", makeBox({0, 0, 0}, {2, 3, 4})},
        {"ColumnWithArm", makeColumnWithArm()},
        {"Prism", makePrism()},
        {"Bracket", makeBracket(12.0f, 9.0f, 1.5f, 6.0f)},
        {"Cylinder", makeCylinder(5.0f, 12.0f, 48)},
        {"Gear", makeGear(12, 8.0f, 3.0f)},
        {"GearFarAway", makeGearFarAway()},
        {"PlateWithHoles", makePlateWithHoles(3, 2, 6.0f, 1.0f, 24)},
        {"Sphere", makeSphere(6.0f, 900)},
        {"Table", makeTable()},
        {"TableInsideOut", makeTable().turnedInsideOut()},
        {"Stack", makeStack(3, 2, 3, 2.5f)},
        {"TouchingSolids", makeTouchingSolids()},
        {"TouchingSolidsWelded", makeTouchingSolids().welded()},
        {"OpenBoxes", makeOpenBoxes()},
        {"WavySheet", makeWavySheet(14, 20.0f)},
        {"Soup", makeSoup(90, 12.0f, 5)},
        {"SmallTrianglesSoup", makeSoup(300, 1.0f, 6)},
        {"CommonCentroid", makeCommonCentroid(60)},
        {"Copies", makeCopies(40)},
        {"Needle", makeBox({0, 0, 0}, {60, 0.4f, 0.3f})},
        {"ThinPlate", makeBox({0, 0, 0}, {25, 25, 0.01f})},
        {"Mixture", makeMixture()},
        {"Assembly1", makeRandomAssembly(1)},
        {"Assembly2", makeRandomAssembly(2)},
        {"Assembly3", makeRandomAssembly(3)},
        {"Assembly4", makeRandomAssembly(4)},
        {"Assembly5", makeRandomAssembly(5).withoutEvery(7)},
        {"Assembly6", makeRandomAssembly(6).welded()},
    };
    return shapes;
}
