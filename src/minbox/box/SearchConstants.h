#pragma once

namespace Tesk::minbox {

/// The implementation object's constants, with which the searches compare and calculate.
struct SearchConstants {
    double zero;
    double one;
    double half;
    float zeroF;
    float oneF;
    float unsetF;
};

}  // namespace Tesk::minbox
