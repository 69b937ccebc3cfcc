#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

/// A rectangle in plan, limits included.
struct PlanBox {
  std::int64_t minX, minY, maxX, maxY;

  [[nodiscard]] bool touches(PlanBox const& o) const {
    return minX <= o.maxX && o.minX <= maxX && minY <= o.maxY && o.minY <= maxY;
  }
  void include(PlanBox const& o) {
    minX = std::min(minX, o.minX);
    minY = std::min(minY, o.minY);
    maxX = std::max(maxX, o.maxX);
    maxY = std::max(maxY, o.maxY);
  }
  [[nodiscard]] PlanBox grown(std::int64_t by) const { return {minX - by, minY - by, maxX + by, maxY + by}; }
};

[[nodiscard]] inline PlanBox boxOf(Point const& p, Point const& q) {
  return {std::min(p.x, q.x), std::min(p.y, q.y), std::max(p.x, q.x), std::max(p.y, q.y)};
}

/// Which of many rectangles touch: a tree of halves, each split at the median of the axis along which it is longer. It
/// takes rectangles of any sizes together. Built in O(n log n).
class BoxTree {
 public:
  explicit BoxTree(std::vector<PlanBox> given) : boxes(std::move(given)), order(boxes.size()) {
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::uint32_t>(i);
    if (!order.empty()) build(0, order.size());
  }

  /// Calls visit(i) for each rectangle that touches a box, until it answers false.
  template <class Visit>
  void forEachTouching(PlanBox const& box, Visit&& visit) const {
    if (!nodes.empty()) query(0, box, visit);
  }

  /// Calls visit(i, j) once for each pair of rectangles that touch.
  template <class Visit>
  void forEachPair(Visit&& visit) const {
    if (!nodes.empty()) join(0, 0, visit);
  }

 private:
  static constexpr std::size_t kLeaf = 8;
  struct Node {
    PlanBox box;
    std::size_t from, to;
    std::size_t right = 0;  ///< 0 in a leaf; the left child stands next to its parent
  };

  std::size_t build(std::size_t from, std::size_t to) {
    const std::size_t me = nodes.size();
    PlanBox box = boxes[order[from]];
    for (std::size_t i = from; i < to; ++i) box.include(boxes[order[i]]);
    nodes.push_back({box, from, to});
    if (to - from <= kLeaf) return me;
    const bool wide = box.maxX - box.minX > box.maxY - box.minY;
    const auto centre = [&](std::uint32_t i) {
      return wide ? boxes[i].minX + boxes[i].maxX : boxes[i].minY + boxes[i].maxY;
    };
    const auto at = [&](std::size_t i) { return order.begin() + static_cast<std::ptrdiff_t>(i); };
    const std::size_t middle = from + (to - from) / 2;
    std::nth_element(at(from), at(middle), at(to),
                     [&](std::uint32_t a, std::uint32_t b) { return centre(a) < centre(b); });
    build(from, middle);
    const std::size_t right = build(middle, to);
    nodes[me].right = right;
    return me;
  }

  template <class Visit>
  bool query(std::size_t n, PlanBox const& box, Visit& visit) const {
    Node const& node = nodes[n];
    if (!node.box.touches(box)) return true;
    if (node.right != 0) return query(n + 1, box, visit) && query(node.right, box, visit);
    for (std::size_t i = node.from; i < node.to; ++i) {
      if (boxes[order[i]].touches(box) && !visit(order[i])) return false;
    }
    return true;
  }

  template <class Visit>
  void join(std::size_t a, std::size_t b, Visit& visit) const {
    if (!nodes[a].box.touches(nodes[b].box)) return;
    if (nodes[a].right == 0 && nodes[b].right == 0) {
      joinLeaves(nodes[a], nodes[b], a == b, visit);
    } else if (a == b) {
      join(a + 1, a + 1, visit);
      join(a + 1, nodes[a].right, visit);
      join(nodes[a].right, nodes[a].right, visit);
    } else if (nodes[b].right == 0 ||
               (nodes[a].right != 0 && nodes[a].to - nodes[a].from > nodes[b].to - nodes[b].from)) {
      join(a + 1, b, visit);
      join(nodes[a].right, b, visit);
    } else {
      join(a, b + 1, visit);
      join(a, nodes[b].right, visit);
    }
  }

  template <class Visit>
  void joinLeaves(Node const& a, Node const& b, bool same, Visit& visit) const {
    for (std::size_t i = a.from; i < a.to; ++i) {
      for (std::size_t j = same ? i + 1 : b.from; j < b.to; ++j) {
        if (boxes[order[i]].touches(boxes[order[j]])) visit(order[i], order[j]);
      }
    }
  }

  std::vector<PlanBox> boxes;
  std::vector<std::uint32_t> order;
  std::vector<Node> nodes;
};

}  // namespace Meseta47::support
