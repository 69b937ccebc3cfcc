#pragma once

#include <vector>

#include "support/Mesh.h"

/// The rules of the searches for noise once more, over the triangles of a mesh and as plainly as they can be said:
/// lists of lists, all pairs, one step after another.
namespace Meseta47::support {

/// By point: whether it was found. Points without a triangle are in no mesh and are never found.
using Found = std::vector<bool>;

/// Points with fewer than `leastNeighbours` along sides whose square in space is below `limit2`.
[[nodiscard]] Found plainIsolated(const Mesh& mesh, double limit2, unsigned leastNeighbours);

/// Points on steep triangles that stand out, by more than `factor` deviations, against those up to `radius` away.
[[nodiscard]] Found plainAerial(const Mesh& mesh, std::int32_t radius, double factor);

/// What the triangles around a point tell of it.
struct PlainHeights {
  std::int32_t least = 0, greatest = 0, sum = 0;
  unsigned char neighbours = 0, steep = 0;
};
/// By point, from triangles that hold no number below 1.
[[nodiscard]] std::vector<PlainHeights> plainHeights(const Mesh& mesh, double limit2, double slope,
                                                     std::int32_t height);
/// Whether that makes a point at `z` a peak or a pit.
[[nodiscard]] bool plainPeak(const PlainHeights& heights, std::int32_t z, std::int32_t height);
[[nodiscard]] Found plainPeaks(const Mesh& mesh, double limit2, double slope, std::int32_t height);

}  // namespace Meseta47::support
