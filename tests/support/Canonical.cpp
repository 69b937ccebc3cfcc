#include "support/Canonical.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <numeric>
#include <utility>

#include "support/Predicates.h"
#include "support/SideTable.h"

namespace Meseta47::support {

namespace {

/// Sets that only ever merge, with path halving.
class Partition {
 public:
  explicit Partition(std::size_t n) : parent(n) { std::iota(parent.begin(), parent.end(), std::size_t{0}); }

  std::size_t find(std::size_t i) {
    while (parent[i] != i) i = parent[i] = parent[parent[i]];
    return i;
  }

  void merge(std::size_t a, std::size_t b) { parent[find(a)] = find(b); }

 private:
  std::vector<std::size_t> parent;
};

/// The triangles that only one of two meshes has: those of the first, then those of the second.
struct Disputed {
  std::vector<Triangle> triangles;
  std::size_t fromFirst = 0;

  [[nodiscard]] bool isFromFirst(HalfSide h) const { return h / 3 < fromFirst; }
};

Disputed symmetricDifference(std::vector<Triangle> const& first, std::vector<Triangle> const& second) {
  Disputed disputed;
  auto& all = disputed.triangles;
  std::set_difference(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(all));
  disputed.fromFirst = all.size();
  std::set_difference(second.begin(), second.end(), first.begin(), first.end(), std::back_inserter(all));
  return disputed;
}

/// Gathers the triangles that cover one patch. A side that both meshes have separates patches: it joins the triangles
/// of the two meshes that lie on the same hand of it. A side that one mesh alone has is a diagonal: it joins its
/// triangles.
Partition patches(Disputed const& disputed) {
  Partition partition(disputed.triangles.size());
  forEachSide(sortedSides(disputed.triangles), [&](auto first, auto last) {
    const auto fromFirst = [&](SideUse const& use) { return disputed.isFromFirst(use.half); };
    const bool shared = std::any_of(first, last, fromFirst) && !std::all_of(first, last, fromFirst);
    for (auto a = first; a != last; ++a) {
      for (auto b = a + 1; b != last; ++b) {
        const bool sameHand = startOf(disputed.triangles, a->half) == startOf(disputed.triangles, b->half);
        if (sameHand || !shared) partition.merge(a->half / 3, b->half / 3);
      }
    }
  });
  return partition;
}

using DirectedSide = std::pair<std::int32_t, std::int32_t>;

/// The sides that no other triangle of the list runs the other way.
std::vector<DirectedSide> outline(std::vector<Triangle> const& triangles) {
  std::vector<DirectedSide> sides;
  forEachSide(sortedSides(triangles), [&](auto first, auto last) {
    if (last - first == 1) sides.emplace_back(startOf(triangles, first->half), endOf(triangles, first->half));
  });
  std::sort(sides.begin(), sides.end());
  return sides;
}

struct Patch {
  std::vector<Triangle> first;
  std::vector<Triangle> second;
};

bool isCocircular(Mesh const& mesh, Patch const& patch) {
  if (patch.first.empty()) return false;
  Triangle const& t = patch.first.front();
  Point const &a = mesh.at(t[0]), &b = mesh.at(t[1]), &c = mesh.at(t[2]);
  const auto onCircle = [&](Triangle const& u) {
    return std::all_of(u.begin(), u.end(), [&](std::int32_t k) { return inCircle(a, b, c, mesh.at(k)) == 0; });
  };
  return orientation(a, b, c) != 0 && std::all_of(patch.first.begin(), patch.first.end(), onCircle) &&
         std::all_of(patch.second.begin(), patch.second.end(), onCircle);
}

std::string listed(std::vector<Triangle> const& triangles) {
  constexpr std::size_t most = 5;
  std::string text;
  for (std::size_t i = 0; i < std::min(most, triangles.size()); ++i) text += " " + toText(triangles[i]);
  if (triangles.size() > most) text += " and " + std::to_string(triangles.size() - most) + " more";
  return text.empty() ? " nothing" : text;
}

}  // namespace

Triangle canonical(Triangle const& triangle) {
  Triangle rotated = triangle;
  std::rotate(rotated.begin(), std::min_element(rotated.begin(), rotated.end()), rotated.end());
  return rotated;
}

std::vector<Triangle> canonicalSet(std::vector<Triangle> triangles) {
  std::transform(triangles.begin(), triangles.end(), triangles.begin(), canonical);
  std::sort(triangles.begin(), triangles.end());
  return triangles;
}

std::uint64_t goldenHash(std::vector<Triangle> const& triangles) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (Triangle const& t : canonicalSet(triangles)) {
    for (const std::int32_t number : t) {
      for (int shift = 0; shift < 32; shift += 8) {
        hash ^= static_cast<std::uint32_t>(number) >> shift & 0xff;
        hash *= 0x100000001b3;
      }
    }
  }
  return hash;
}

std::vector<Triangle> renumbered(std::vector<Triangle> triangles, std::vector<std::int32_t> const& table) {
  for (auto& triangle : triangles) {
    for (auto& number : triangle) {
      if (number > 0) number = table[static_cast<std::size_t>(number) - 1];
    }
  }
  return triangles;
}

Difference compare(Mesh const& mesh, std::vector<Triangle> const& other) {
  const Disputed disputed = symmetricDifference(canonicalSet(mesh.triangles), canonicalSet(other));
  Partition partition = patches(disputed);
  std::map<std::size_t, Patch> found;
  for (std::size_t i = 0; i < disputed.triangles.size(); ++i) {
    Patch& patch = found[partition.find(i)];
    (i < disputed.fromFirst ? patch.first : patch.second).push_back(disputed.triangles[i]);
  }
  Difference difference;
  difference.onlyFirst = disputed.fromFirst;
  difference.onlySecond = disputed.triangles.size() - disputed.fromFirst;
  difference.regions = found.size();
  for (auto const& [root, patch] : found) {
    if (isCocircular(mesh, patch) && outline(patch.first) == outline(patch.second)) continue;
    if (difference.realRegions++ == 0) {
      difference.first = "the first has" + listed(patch.first) + ", the second" + listed(patch.second);
    }
  }
  return difference;
}

}  // namespace Meseta47::support
