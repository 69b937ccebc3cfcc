#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/Mesh.h"

/// Forms in which two runs can be compared whatever order their triangles came in.
namespace Meseta47::support {

/// The same triangle, turning the same way, with its smallest number first.
[[nodiscard]] Triangle canonical(Triangle const& triangle);

/// All of them canonical, in ascending order; copies stay.
[[nodiscard]] std::vector<Triangle> canonicalSet(std::vector<Triangle> triangles);

/// FNV-1a of 64 bits over the bytes of the canonical set, little-endian: one number to hold against a golden one.
[[nodiscard]] std::uint64_t goldenHash(std::vector<Triangle> const& triangles);

/// The same triangles with each number k > 0 replaced by table[k - 1]: with `representatives`, triangles that differ
/// only in which of several points at one plan position they took become equal.
[[nodiscard]] std::vector<Triangle> renumbered(std::vector<Triangle> triangles, std::vector<std::int32_t> const& table);

/// How two triangulations of the same points differ.
struct Difference {
  std::size_t onlyFirst = 0;    ///< triangles that the second one lacks
  std::size_t onlySecond = 0;   ///< triangles that the first one lacks
  std::size_t regions = 0;      ///< connected patches that those triangles cover
  std::size_t realRegions = 0;  ///< patches that are not two ways of cutting one cocircular polygon
  std::string first;            ///< a sentence about the first of those, with the numbers of its triangles

  /// True when both are the same Delaunay triangulation but for the choice among cocircular points.
  [[nodiscard]] bool onlyCocircular() const { return realRegions == 0; }
};

/// Compares `mesh.triangles` with other triangles over the same points and corners. Exact. A patch is excused when both
/// sides fill the same outline and all its vertices lie on one circle. Both have to pass `surfaceFaults`. O(T log T).
[[nodiscard]] Difference compare(Mesh const& mesh, std::vector<Triangle> const& other);

}  // namespace Meseta47::support
