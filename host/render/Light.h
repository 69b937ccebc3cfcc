#pragma once

#include <vector>

#include "host/mesh/Surface.h"

namespace Meseta47::host {

/// How steep a surface is at a vertex: rise per unit eastwards and northwards.
struct Gradient {
  float east = 0, north = 0;
};

/// The gradient at each vertex, from the normals of the triangles around it, weighed by their areas; whichever way
/// round a triangle runs, its normal points up. Zero where there is no triangle.
[[nodiscard]] std::vector<Gradient> gradientsOf(Surface const& surface);

/// By what to multiply the slopes of a surface so that its relief shows: gentle land more, rough land less. It brings
/// the steeper of its slopes to those that light tells apart best, whatever units heights and plan are in.
[[nodiscard]] double reliefScale(std::vector<Gradient> gradients);

/// Light on a slope: 1 on level ground, 0 in full shadow, up to 1.42 where it faces the light. Most of it comes from
/// the north-west, where readers of maps expect it; some from west and north, so that ridges along it are seen.
[[nodiscard]] float lightOn(Gradient const& slope);

}  // namespace Meseta47::host
