#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

/// Clouds that triangulations fail on. Each is there for one weakness; coordinates read as millimetres.
enum class Family {
  Uniform,
  RegularGrid,        ///< every square cocircular, rows and columns collinear
  JitteredGrid,       ///< nearly cocircular everywhere
  Circle,             ///< exactly cocircular points, up to 972 of them; the rest rounded to the same circle
  ConcentricCircles,  ///< exactly cocircular rings of 324 points, which line up along rays
  HorizontalLine,     ///< the lines are exactly straight but for one point off them
  VerticalLine,
  DiagonalLine,
  GeneralLine,
  Clusters,    ///< dense spots in an empty area
  Duplicates,  ///< about four points at each plan position, most of them at different heights
  Slivers,     ///< two lines that are almost parallel and almost touch: enormous circles
  HugeSpread,  ///< as wide as a frame of 32 bits allows, its extreme corners included
  UpperLimit,  ///< as close to the largest 32-bit numbers as the frame allows
  LowerLimit,
  Negative,
  Spiral,
  ScanLines,  ///< an airborne scanner's zigzag: dense along a scan, sparse across, coordinates in whole centimetres
  DenseLineAndOutlier,  ///< neighbours one unit apart, and one point a thousand million units away
  TwoFarClusters,
};

inline constexpr std::array kAllFamilies{Family::Uniform,
                                         Family::RegularGrid,
                                         Family::JitteredGrid,
                                         Family::Circle,
                                         Family::ConcentricCircles,
                                         Family::HorizontalLine,
                                         Family::VerticalLine,
                                         Family::DiagonalLine,
                                         Family::GeneralLine,
                                         Family::Clusters,
                                         Family::Duplicates,
                                         Family::Slivers,
                                         Family::HugeSpread,
                                         Family::UpperLimit,
                                         Family::LowerLimit,
                                         Family::Negative,
                                         Family::Spiral,
                                         Family::ScanLines,
                                         Family::DenseLineAndOutlier,
                                         Family::TwoFarClusters};

[[nodiscard]] char const* name(Family family);

/// False for clouds that are nearly straight or nearly as wide as 32 bits; for the others, circles kept in doubles are
/// expected to answer like exact ones.
[[nodiscard]] bool hasOrdinarySpread(Family family);

/// n points of a family, the same on every machine. A family with a natural order (a grid, a line) is shuffled, unless
/// the seed is 0. From two points on, the frame around them fits 32 bits and has a width.
[[nodiscard]] std::vector<Point> family(Family kind, std::size_t n, std::uint64_t seed);

/// A test parameter: small to copy, its points are made on demand.
struct HardCloud {
  HardCloud(Family kind, std::size_t n, std::uint64_t seedUsed);

  Family kind;
  std::size_t size;
  std::uint64_t seed;
  std::string recipe;  ///< "RegularGrid, 1000 points, seed 7"

  [[nodiscard]] std::vector<Point> points() const { return family(kind, size, seed); }

  /// A name that a test can carry: "RegularGrid_1000_7".
  [[nodiscard]] std::string testName() const;
};

std::ostream& operator<<(std::ostream& out, HardCloud const& cloud);

/// Every family in each of the sizes.
[[nodiscard]] std::vector<HardCloud> hardClouds(std::vector<std::size_t> const& sizes, std::uint64_t seed);

}  // namespace Meseta47::support
