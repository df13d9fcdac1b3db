#pragma once

#include "picture/Image.h"
#include "picture/StandingPart.h"

namespace App {

/// The scale at which a part fills a picture, seen as drawPanel() shows it: mm per pixel.
double scaleFor(const Point& size, int width, int height);

/// Draws a part on a plate with lines every 10 mm, from the front, left and above, in parallel
/// projection: lit, its overhangs, its contact and its support coloured, its edges lined.
Image drawPanel(const StandingPart& part, double plateSize, int width, int height,
                double mmPerPixel);

}  // namespace App
