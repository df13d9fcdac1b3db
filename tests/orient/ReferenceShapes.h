#pragma once

#include <string>
#include <vector>

#include "Part.h"

/// A shape by its name: letters and digits only, so that it can stand in a test's name.
struct NamedPart {
    std::string name;
    Part part;
};

/// CAD-like and random shapes, sound and defective ones, each of them of moderate size.
const std::vector<NamedPart>& referenceShapes();
