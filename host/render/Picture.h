#pragma once

#include <optional>
#include <string>

#include "host/Parsing.h"
#include "host/mesh/Surface.h"
#include "host/render/Canvas.h"
#include "host/render/ReliefPainter.h"

namespace Meseta47::host {

struct PictureOptions {
  PictureSize size;
  std::optional<Bounds> bounds;  ///< show only this part, in the units of the surface
  double contours = 0;           ///< interval of contours, in units of height; 0 draws none
  bool classes = false;          ///< colour points by class; the surface has classes
  std::string unit, heightUnit;  ///< in plan and of heights, as they are to be written; empty when nobody knows
};

/// What a picture came to show.
struct PictureFacts {
  int width = 0, height = 0;  ///< pixels
  double unitsPerPixel = 0;
  View view;
  HeightRange heights;
  std::size_t contourLines = 0;
};

/// The part of the surface that is shown: its box, or what of it the bounds leave. Throws Failure when that is empty or
/// the surface stands upright.
[[nodiscard]] View viewOf(Surface const& surface, std::optional<Bounds> const& bounds);

/// Paints a map of the surface, which has triangles: relief in tints of height or colours of classes, contours, legend,
/// scale bar. Throws Failure for what cannot be shown, and what `step` throws.
[[nodiscard]] Canvas paintPicture(Surface const& surface, PictureOptions const& options, Steps const& step,
                                  PictureFacts& facts);

}  // namespace Meseta47::host
