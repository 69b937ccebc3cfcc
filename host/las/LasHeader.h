#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace Meseta47::host {

/// Public header of a LAS file, of any version from 1.0 to 1.4: fields that the version lacks are zero.
struct LasHeader {
  std::uint16_t fileSourceId = 0;
  std::uint16_t globalEncoding = 0;  ///< bit 0: GPS time is adjusted standard time; bit 4: the reference system is WKT
  std::array<std::uint8_t, 16> guid{};
  std::uint8_t versionMajor = 1;
  std::uint8_t versionMinor = 2;
  std::string systemId;
  std::string software;
  std::uint16_t creationDay = 0;  ///< of the year, from 1
  std::uint16_t creationYear = 0;
  std::uint16_t headerSize = 0;
  std::uint32_t offsetToPoints = 0;
  std::uint32_t vlrCount = 0;
  std::uint8_t pointFormat = 0;
  bool compressed = false;  ///< the two high bits of the format's byte
  std::uint16_t recordLength = 0;
  std::uint64_t pointCount = 0;                    ///< from whichever of the two counts of 1.4 is in use
  std::array<std::uint64_t, 15> pointsByReturn{};  ///< by return number, from 1
  std::array<double, 3> scale{0.01, 0.01, 0.01};
  std::array<double, 3> offset{};
  std::array<double, 3> min{}, max{};  ///< as declared; files are seen where the points disagree
  std::uint64_t waveformStart = 0;
  std::uint64_t evlrStart = 0;
  std::uint32_t evlrCount = 0;
};

/// Bytes of the header of each version: the longest is that of 1.4.
inline constexpr std::size_t kLasHeaderLongest = 375;
[[nodiscard]] constexpr std::uint16_t lasHeaderSize(unsigned versionMinor) {
  return versionMinor >= 4 ? 375 : versionMinor == 3 ? 235 : 227;
}

/// Reads the fields, without judging them, from the bytes of a header; those beyond its version are not looked at.
[[nodiscard]] LasHeader decodeLasHeader(std::span<std::uint8_t const, kLasHeaderLongest> bytes);

/// The bytes of a header, as long as its version asks. Counts that do not fit the 32 bits of the older fields are left
/// 0 in them, as 1.4 has it, and so are those of formats 6 to 10.
[[nodiscard]] std::array<std::uint8_t, kLasHeaderLongest> encodeLasHeader(LasHeader const& header);

}  // namespace Meseta47::host
