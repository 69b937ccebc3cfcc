#pragma once

#include <cstdint>
#include <span>

#include "host/las/LasPoint.h"

namespace Meseta47::host {

inline constexpr unsigned kLasFormats = 11;  ///< point formats 0 to 10

/// What the records of a point format hold.
[[nodiscard]] constexpr bool hasGpsTime(unsigned format) { return format != 0 && format != 2; }
[[nodiscard]] constexpr bool hasColour(unsigned format) {
  return format == 2 || format == 3 || format == 5 || format == 7 || format == 8 || format == 10;
}
[[nodiscard]] constexpr bool hasInfrared(unsigned format) { return format == 8 || format == 10; }
[[nodiscard]] constexpr bool hasWaveform(unsigned format) {
  return format == 4 || format == 5 || format == 9 || format == 10;
}
/// Formats 6 to 10: a whole byte for the class, four bits for each return field, scan angle in 0.006 degrees.
[[nodiscard]] constexpr bool isExtended(unsigned format) { return format >= 6; }

/// Bytes of a record of a format, before extra bytes.
[[nodiscard]] constexpr std::uint16_t lasRecordLength(unsigned format) {
  const unsigned core = isExtended(format) ? 30U : hasGpsTime(format) ? 28U : 20U;
  return static_cast<std::uint16_t>(core + (hasColour(format) ? 6U : 0U) + (hasInfrared(format) ? 2U : 0U) +
                                    (hasWaveform(format) ? 29U : 0U));
}

/// Place of the byte that holds the class within a record of a format.
[[nodiscard]] constexpr std::size_t lasClassByte(unsigned format) { return isExtended(format) ? 16 : 15; }

/// Bits of that byte that are the class; the others are flags.
[[nodiscard]] constexpr std::uint8_t lasClassMask(unsigned format) { return isExtended(format) ? 0xff : 0x1f; }

/// Reads `points.size()` records that stand `recordLength` bytes apart.
void decodeLasPoints(unsigned format, std::uint8_t const* records, std::size_t recordLength,
                     std::span<LasPoint> points);

/// Writes one record, all of lasRecordLength(format) bytes. Return fields that the format cannot hold become its
/// largest; a class loses the bits above the fifth in formats 0 to 5; waveform fields are zero.
void encodeLasPoint(unsigned format, LasPoint const& point, std::uint8_t* record);

}  // namespace Meseta47::host
