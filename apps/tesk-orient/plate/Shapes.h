#pragma once

#include <cstddef>
#include <vector>

#include "TriangleMesh.h"
#include "plate/ItemPlace.h"
#include "plate/LoadedPlate.h"

namespace App {

/// An object as some of its items scale or mirror it: what is measured, once for them all.
struct Shape {
    std::size_t object = 0;
    UMatrix4<double> stretch;        ///< snapped: the identity where they only move the object
    std::vector<std::size_t> items;  ///< indices into Plate::items; at least one
};

/// The items of a plate, and the shapes of those that are taken, in the order in which items first
/// have them.
struct Shapes {
    std::vector<ItemPlace> places;  ///< of every taken item; others are empty
    std::vector<Shape> shapes;
};

/// Throws InputFailure, without the file's name, where an item cannot be turned.
Shapes shapesOf(const LoadedPlate& plate);

/// A shape's mesh in mm, in the object's own frame: every position · stretch, triangles reversed
/// where that mirrors them. Throws InputFailure, without the file's name, where a position is not
/// finite.
TriangleMesh meshOf(const LoadedPlate& plate, const Shape& shape);

/// A mesh that a matrix has moved, computed in double; triangles reversed where it mirrors.
TriangleMesh moved(const Tesk::PartMesh& mesh, const UMatrix4<double>& matrix);

}  // namespace App
