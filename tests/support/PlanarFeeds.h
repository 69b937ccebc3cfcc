#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "support/Families.h"

namespace Meseta47::test {

/// The ways in which the points of one family reach a triangulation.
enum class Order {
  File,      ///< the natural one of the family: rows of a grid, points along a line
  Shuffled,  ///< with neighbours far apart
  Hilbert,   ///< along a curve that fills the plane
};

struct Feed {
  support::Family family;
  Order order;
  std::size_t size;

  [[nodiscard]] std::string Name() const;
  [[nodiscard]] std::vector<support::Point> Points() const;
};
std::ostream& operator<<(std::ostream& out, Feed const& feed);

/// Stable: what falls in one place of the curve keeps its order.
void SortAlongHilbert(std::vector<support::Point>& points);

/// Each family in each order.
[[nodiscard]] std::vector<Feed> EveryFeed(std::size_t size);

/// The size to which a family is tested along the curve: 200,000 points. Where every circle reaches across the whole
/// cloud the walk to a new point starts anywhere and its length grows with the cloud: those families end earlier.
[[nodiscard]] std::size_t LargestSize(support::Family family);

}  // namespace Meseta47::test
