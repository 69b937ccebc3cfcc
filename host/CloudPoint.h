#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace Meseta47::host {

/// A point of a cloud, whatever file it comes from: what the file lacks is zero.
struct CloudPoint {
  double x = 0, y = 0, z = 0;  ///< in the file's own reference system
  std::uint16_t intensity = 0;
  std::uint8_t classification = 0;
  std::uint8_t returnNumber = 0;
  std::uint8_t returns = 0;
  std::uint8_t r = 0, g = 0, b = 0;  ///< 16-bit colours are cut to their high byte
  std::uint16_t sourceId = 0;
  float scanAngle = 0;  ///< degrees
  double gpsTime = 0;
};

/// A box around points; one without points has min above max.
struct Extent {
  std::array<double, 3> min{1, 1, 1}, max{0, 0, 0};

  [[nodiscard]] bool isEmpty() const { return min[0] > max[0]; }
  void include(double x, double y, double z);
  void include(Extent const& other);
};

/// Decimals beyond which coordinates are not told apart, a tenth of a micrometre, and those of whole kilometres.
inline constexpr int kMostDecimals = 7, kFewestDecimals = -3;
/// No coordinate of a place on Earth is farther from 0: in millimetres that would be beyond the Moon. A double still
/// holds a tenth of a millimetre there.
inline constexpr double kFarthestPlace = 1e12;

/// Decimals that hold the coordinates of a file: the fewest, from 0 to 7, at which the scales and offsets of the axes
/// are whole numbers; where no number of decimals does that, those that tell the points of the finest axis apart.
[[nodiscard]] int defaultPrecision(std::span<double const, 3> scale, std::span<double const, 3> offset);

}  // namespace Meseta47::host
