#pragma once

#include <string>
#include <vector>

#include "host/render/Canvas.h"
#include "host/render/ContourLines.h"

namespace Meseta47::host {

/// Every so many contours one is an index contour: drawn thicker, with its height written on it.
inline constexpr int kIndexEvery = 5;

/// Draws contours over the map of a picture. Heights stand along lines that are long and straight enough for them,
/// never upside down. `step` hears of each line that all below it is done.
void paintContours(Canvas& canvas, Layout const& layout, View const& view, std::vector<ContourLine> const& lines,
                   double interval, Steps const& step);

}  // namespace Meseta47::host
