#pragma once

#include <array>

#include "host/mesh/Surface.h"
#include "host/render/Canvas.h"
#include "host/render/Layout.h"
#include "host/render/ReliefPainter.h"

namespace Meseta47::host {

/// Whence a surface is looked at, from afar: without perspective.
struct Direction {
  double azimuth = 0;    ///< degrees clockwise from north: where the viewer stands
  double elevation = 0;  ///< degrees above the horizon; below it, the surface is seen from beneath
};

/// The way to the viewer, as east, north and up; of length 1.
[[nodiscard]] std::array<double, 3> towards(Direction const& from);

/// Reads AZIMUTH,ELEVATION; elevations lie between -90 and 90. Throws UsageError.
[[nodiscard]] Direction parseDirection(std::string const& text);

/// Paints the surface, which has triangles, as it is seen from there: in its colours, or those of its classes where
/// `classes` is set, or as stone, under a light from over the viewer's left shoulder; both sides of a triangle alike.
/// `unitsPerPixel` takes the scale. Throws what `step` throws.
[[nodiscard]] Canvas paintFrom(Surface const& surface, Direction const& from, PictureSize size, bool classes,
                               Steps const& step, double& unitsPerPixel);

}  // namespace Meseta47::host
