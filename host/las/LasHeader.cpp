#include "host/las/LasHeader.h"

#include <algorithm>
#include <limits>

#include "host/las/LasBytes.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kLegacyReturns = 5;
constexpr std::uint8_t kFormatBits = 0x3f;  // of the format's byte; the others tell of compression
constexpr std::uint8_t kCompressed = 0x80;

void decodeAxes(std::uint8_t const* bytes, LasHeader& header) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    header.scale[axis] = load<double>(bytes + 131 + 8 * axis);
    header.offset[axis] = load<double>(bytes + 155 + 8 * axis);
    header.max[axis] = load<double>(bytes + 179 + 16 * axis);
    header.min[axis] = load<double>(bytes + 187 + 16 * axis);
  }
}

void decodeCounts(std::uint8_t const* bytes, LasHeader& header) {
  header.pointCount = load<std::uint32_t>(bytes + 107);
  for (std::size_t i = 0; i < kLegacyReturns; ++i) {
    header.pointsByReturn[i] = load<std::uint32_t>(bytes + 111 + 4 * i);
  }
  // Writers are seen that fill the old fields of 1.4 alone.
  const auto count = header.versionMinor >= 4 ? load<std::uint64_t>(bytes + 247) : 0;
  if (count == 0) {
    return;
  }
  header.pointCount = count;
  for (std::size_t i = 0; i < header.pointsByReturn.size(); ++i) {
    header.pointsByReturn[i] = load<std::uint64_t>(bytes + 255 + 8 * i);
  }
}

void encodeAxes(LasHeader const& header, std::uint8_t* bytes) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    store(bytes + 131 + 8 * axis, header.scale[axis]);
    store(bytes + 155 + 8 * axis, header.offset[axis]);
    store(bytes + 179 + 16 * axis, header.max[axis]);
    store(bytes + 187 + 16 * axis, header.min[axis]);
  }
}

void encodeCounts(LasHeader const& header, std::uint8_t* bytes) {
  if (header.pointFormat < 6 && header.pointCount <= std::numeric_limits<std::uint32_t>::max()) {
    store(bytes + 107, static_cast<std::uint32_t>(header.pointCount));
    for (std::size_t i = 0; i < kLegacyReturns; ++i) {
      store(bytes + 111 + 4 * i, static_cast<std::uint32_t>(header.pointsByReturn[i]));
    }
  }
  if (header.versionMinor >= 4) {
    store(bytes + 247, header.pointCount);
    for (std::size_t i = 0; i < header.pointsByReturn.size(); ++i) {
      store(bytes + 255 + 8 * i, header.pointsByReturn[i]);
    }
  }
}

}  // namespace

LasHeader decodeLasHeader(std::span<std::uint8_t const, kLasHeaderLongest> span) {
  std::uint8_t const* const bytes = span.data();
  LasHeader header;
  header.fileSourceId = load<std::uint16_t>(bytes + 4);
  header.globalEncoding = load<std::uint16_t>(bytes + 6);
  std::copy_n(bytes + 8, header.guid.size(), header.guid.begin());
  header.versionMajor = bytes[24];
  header.versionMinor = bytes[25];
  header.systemId = loadText(bytes + 26, 32);
  header.software = loadText(bytes + 58, 32);
  header.creationDay = load<std::uint16_t>(bytes + 90);
  header.creationYear = load<std::uint16_t>(bytes + 92);
  header.headerSize = load<std::uint16_t>(bytes + 94);
  header.offsetToPoints = load<std::uint32_t>(bytes + 96);
  header.vlrCount = load<std::uint32_t>(bytes + 100);
  header.pointFormat = bytes[104] & kFormatBits;
  header.compressed = (bytes[104] & ~kFormatBits) != 0;
  header.recordLength = load<std::uint16_t>(bytes + 105);
  decodeCounts(bytes, header);
  decodeAxes(bytes, header);
  header.waveformStart = header.versionMinor >= 3 ? load<std::uint64_t>(bytes + 227) : 0;
  header.evlrStart = header.versionMinor >= 4 ? load<std::uint64_t>(bytes + 235) : 0;
  header.evlrCount = header.versionMinor >= 4 ? load<std::uint32_t>(bytes + 243) : 0;
  return header;
}

std::array<std::uint8_t, kLasHeaderLongest> encodeLasHeader(LasHeader const& header) {
  std::array<std::uint8_t, kLasHeaderLongest> block{};
  std::uint8_t* const bytes = block.data();
  storeText(bytes, 4, "LASF");
  store(bytes + 4, header.fileSourceId);
  store(bytes + 6, header.globalEncoding);
  std::copy(header.guid.begin(), header.guid.end(), bytes + 8);
  bytes[24] = header.versionMajor;
  bytes[25] = header.versionMinor;
  storeText(bytes + 26, 32, header.systemId);
  storeText(bytes + 58, 32, header.software);
  store(bytes + 90, header.creationDay);
  store(bytes + 92, header.creationYear);
  store(bytes + 94, header.headerSize);
  store(bytes + 96, header.offsetToPoints);
  store(bytes + 100, header.vlrCount);
  bytes[104] = header.compressed ? header.pointFormat | kCompressed : header.pointFormat;
  store(bytes + 105, header.recordLength);
  encodeCounts(header, bytes);
  encodeAxes(header, bytes);
  if (header.versionMinor >= 3) {
    store(bytes + 227, header.waveformStart);
  }
  if (header.versionMinor >= 4) {
    store(bytes + 235, header.evlrStart);
    store(bytes + 243, header.evlrCount);
  }
  return block;
}

}  // namespace Meseta47::host
