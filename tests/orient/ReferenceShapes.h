#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "shapes/Part.h"

/// A shape by its name: letters and digits only, so that it can stand in a test's name.
struct NamedPart {
    std::string name;
    Part part;

    /// For the test framework, which shows the parameters of tests.
    friend void PrintTo(const NamedPart& shape, std::ostream* out) { *out << shape.name; }
};

/// CAD-like and random shapes, sound and defective ones, each of them of moderate size.
const std::vector<NamedPart>& referenceShapes();
