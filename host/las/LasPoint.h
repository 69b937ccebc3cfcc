#pragma once

#include <cstdint>

namespace Meseta47::host {

/// What of the points is wanted.
enum class LasFields : std::uint8_t {
  all,
  surface,  ///< place, intensity, class and returns; the other fields then say nothing, and may cost no time
};

/// One point as a LAS file holds it, whatever its format: fields that the format lacks are zero.
struct LasPoint {
  std::int32_t x = 0, y = 0, z = 0;  ///< scaled integers of the file
  std::uint16_t intensity = 0;
  std::uint8_t returnNumber = 0;
  std::uint8_t returns = 0;         ///< number of returns of the pulse
  std::uint8_t classification = 0;  ///< class alone: the flag bits that formats 0 to 5 keep beside it stand in `flags`
  std::uint8_t flags = 0;           ///< bit 0 synthetic, 1 key point, 2 withheld, 3 overlap
  std::uint8_t channel = 0;
  bool scanDirection = false;
  bool edgeOfFlightLine = false;
  std::uint8_t userData = 0;
  std::int16_t scanAngle = 0;  ///< 0.006 degrees in every format; whole degrees are converted
  std::uint16_t sourceId = 0;
  double gpsTime = 0;
  std::uint16_t red = 0, green = 0, blue = 0, nir = 0;
};

}  // namespace Meseta47::host
