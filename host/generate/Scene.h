#pragma once

#include <cstdint>

#include "host/generate/Buildings.h"
#include "host/generate/Terrain.h"
#include "host/generate/Trees.h"

namespace Meseta47::host {

/// The whole land of a seed: relief, rivers, roads, houses and trees, without end in any direction. Places are metres
/// from its centre. Houses and trees remember what they made last: an object serves one thread.
struct Scene {
  explicit Scene(std::uint64_t seed, LandStyle const& style = {})
      : terrain(seed, style), buildings(terrain, seed), trees(terrain, buildings, seed) {}
  Scene(Scene const&) = delete;
  Scene& operator=(Scene const&) = delete;

  Terrain terrain;
  Buildings buildings;
  Trees trees;
};

}  // namespace Meseta47::host
