#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "host/Parsing.h"
#include "host/las/ByteSource.h"
#include "host/las/LasHeader.h"
#include "host/las/LasVlr.h"
#include "host/laz/ChunkTable.h"

namespace Meseta47::host {

/// One cube of a cloud in an octree: a chunk of points that lie in it, spaced more widely than those of its children.
struct CopcNode {
  std::int32_t level = 0;                ///< 0 is the root
  std::array<std::int32_t, 3> column{};  ///< along each axis, from 0 to 2^level - 1
  LazChunk chunk;
};

/// A compressed file whose chunks are the nodes of an octree (COPC): a part of it, or a coarse view of the whole, can
/// be read without the rest.
struct Copc {
  std::array<double, 3> centre{};
  double halfSize = 0;          ///< of the root cube's side
  double spacing = 0;           ///< between points of the root; half of it at each further level
  std::vector<CopcNode> nodes;  ///< those that have points, in the order of the file

  /// Levels that have points, counted from the root.
  [[nodiscard]] int levels() const;
  [[nodiscard]] double spacingOf(int level) const;
  /// True when some of a node's cube is in the box in plan, limits included.
  [[nodiscard]] bool touches(CopcNode const& node, Bounds const& box) const;
  /// The first level whose points stand no farther apart than so many units, or the last one.
  [[nodiscard]] int levelFor(double resolution) const;
};

/// Reads the pages of the hierarchy. None when the file has no octree, or one that does not fit the file.
[[nodiscard]] std::optional<Copc> readCopc(ByteSource& source, LasHeader const& header,
                                           std::vector<LasVlr> const& vlrs);

}  // namespace Meseta47::host
