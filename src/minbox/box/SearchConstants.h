#pragma once

namespace Tesk::minbox {

/// The numbers that the searches compare and calculate with, as the implementation object holds
/// them.
struct SearchConstants {
    double zero;
    double one;
    double half;
    float zeroF;
    float oneF;
    float unsetF;
};

}  // namespace Tesk::minbox
