#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "host/las/LasCodec.h"
#include "host/laz/LazScheme.h"
#include "tests/host/HostScenes.h"

namespace Meseta47::host {

/// A kind of compressed points, with a name for the test that fails.
struct LazKind {
  LazScheme scheme;
  std::string name;
};

/// All formats in all versions that have them, with and without extra bytes.
inline std::vector<LazKind> everyLazKind() {
  std::vector<LazKind> kinds;
  for (unsigned format = 0; format < kLasFormats; ++format) {
    for (const unsigned extra : {0U, 3U}) {
      for (const unsigned version : isExtended(format) ? std::array{3U, 4U} : std::array{1U, 2U}) {
        LazScheme scheme = lazSchemeFor(format, extra);
        scheme.itemVersion = version;
        kinds.push_back({scheme, "format" + std::to_string(format) + "_version" + std::to_string(version) + "_extra" +
                                     std::to_string(extra)});
      }
    }
  }
  return kinds;
}

enum class Family { still, walk, strips, wild };
inline constexpr Family kFamilies[] = {Family::still, Family::walk, Family::strips, Family::wild};

/// Records of a format: one and the same, points along a scan, several strips and channels in turn, and bytes at
/// random.
inline Bytes recordsOf(LazScheme const& scheme, Family family, std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  const auto some = [&](int range) { return static_cast<int>(random() % static_cast<unsigned>(range)); };
  const std::size_t length = scheme.recordLength(), core = lasRecordLength(scheme.pointFormat);
  Bytes records(count * length);
  if (family == Family::wild) {
    for (std::uint8_t& byte : records) byte = static_cast<std::uint8_t>(random());
    return records;
  }
  LasPoint p = somePoint(3);
  std::array<double, 5> clocks{};
  for (std::size_t i = 0; i < count; ++i) {
    std::uint8_t* const record = records.data() + i * length;
    if (family != Family::still) {
      p.x += some(200) - 80;
      p.y += some(60) - 30;
      p.z += some(400) - 200;
      p.intensity = static_cast<std::uint16_t>(some(900));
      p.returns = static_cast<std::uint8_t>(1 + some(3));
      p.returnNumber = static_cast<std::uint8_t>(1 + some(p.returns));
      p.classification = static_cast<std::uint8_t>(some(20) == 0 ? 6 : 2);
      p.gpsTime += some(3) == 0 ? 0 : 1e-5;
      p.red = static_cast<std::uint16_t>(p.red + 256 * some(5));
      p.green = static_cast<std::uint16_t>(some(4) == 0 ? p.red : p.green + some(900));
      p.blue = static_cast<std::uint16_t>(some(2) == 0 ? p.green : p.blue);
      p.nir = static_cast<std::uint16_t>(p.nir + some(700));
    }
    if (family == Family::strips) {
      const auto strip = static_cast<unsigned>(some(5));
      p.channel = isExtended(scheme.pointFormat) ? strip & 3U : 0;
      p.sourceId = static_cast<std::uint16_t>(7 + strip);
      p.gpsTime = 1e5 * strip + (clocks[strip] += 1e-4 * some(900));
      p.scanAngle = static_cast<std::int16_t>(500 * (some(20) - 10));
      p.edgeOfFlightLine = some(9) == 0;
      p.scanDirection = some(2) == 0;
      p.userData = static_cast<std::uint8_t>(some(256));
      p.flags = static_cast<std::uint8_t>(some(8));
    }
    encodeLasPoint(scheme.pointFormat, p, record);
    for (std::size_t b = core - (hasWaveform(scheme.pointFormat) ? 29U : 0U); b < length; ++b) {
      record[b] = static_cast<std::uint8_t>(family == Family::still ? static_cast<int>(b) : some(b % 3 == 0 ? 256 : 2));
    }
  }
  return records;
}

}  // namespace Meseta47::host
