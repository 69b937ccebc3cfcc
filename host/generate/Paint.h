#pragma once

#include <cstdint>

#include "host/generate/Noise.h"
#include "host/generate/Terrain.h"
#include "host/generate/Trees.h"
#include "host/las/LasPoint.h"

namespace Meseta47::host {

/// What a pulse came back from, as far as its look goes.
struct Material {
  std::uint8_t red = 0, green = 0, blue = 0;
  std::uint8_t intensity = 0;  ///< of a whole return at right angles; the file's range is 256 times as wide
  double spread = 0;           ///< how much the brightness changes from point to point, as a part of it
};

Material materialOf(Ground const& ground);
Material materialOf(Roof const& roof);
Material materialOf(Crown const& crown);
Material herbMaterial();
Material wallMaterial();
Material deckMaterial();
Material airMaterial();

/// Brightness in [0.35, 1.15] of a plane with these slopes under a sun in the south-west, 45 degrees high.
double shadeOf(double slopeX, double slopeY);

/// Gives a point its colour, 16 bits a channel, and its intensity; `share` is the part of the pulse's energy that this
/// return sends back.
void paint(Material const& material, double shade, double share, Random& random, LasPoint& point);

}  // namespace Meseta47::host
