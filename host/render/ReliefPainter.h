#pragma once

#include <cstdint>
#include <vector>

#include "host/Steps.h"
#include "host/mesh/Surface.h"
#include "host/render/Canvas.h"

namespace Meseta47::host {

/// The heights that a tint tells apart. What lies beyond takes the colour of the end.
struct HeightRange {
  double low = 0, high = 1;
  bool lower = false, higher = false;  ///< whether the land goes on beyond it
};

/// The range of the heights of the vertices in a view: all of them, unless a few in a thousand would stretch it by half
/// or more, as birds and echoes from below the ground do. Never empty.
[[nodiscard]] HeightRange heightRangeOf(Surface const& surface, View const& view);

/// How a relief takes its colours.
struct ReliefStyle {
  HeightRange range;
  bool classes = false;  ///< colours of the classes of points, over grey relief, in place of tints of height
};

/// Paints the surface into the map of a picture, four samples a pixel. O(triangles and pixels); memory for 64 MB of
/// samples at a time.
void paintRelief(Canvas& canvas, Layout const& layout, View const& view, Surface const& surface,
                 ReliefStyle const& style, Steps const& step);

}  // namespace Meseta47::host
