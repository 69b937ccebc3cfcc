#include "host/las/LasCodec.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "host/las/LasBytes.h"

namespace Meseta47::host {

namespace {

constexpr int kAngleStepsIn3Degrees = 500;  // of 0.006 degrees

// Both roundings are to nearest, so that whole degrees come back as they were.
std::int16_t stepsOfDegrees(std::int8_t degrees) {
  const int thirds = degrees * kAngleStepsIn3Degrees;
  return static_cast<std::int16_t>((thirds + (thirds < 0 ? -1 : 1)) / 3);
}

std::int8_t degreesOfSteps(std::int16_t steps) {
  const int thrice = steps * 3;
  const int half = thrice < 0 ? -kAngleStepsIn3Degrees / 2 : kAngleStepsIn3Degrees / 2;
  return static_cast<std::int8_t>(std::clamp((thrice + half) / kAngleStepsIn3Degrees, -128, 127));
}

// Where the optional fields of a format begin.
constexpr std::size_t gpsTimeByte(unsigned format) { return isExtended(format) ? 22 : 20; }
constexpr std::size_t colourByte(unsigned format) { return isExtended(format) ? 30 : hasGpsTime(format) ? 28 : 20; }

void decodeLegacyFields(std::uint8_t const* record, LasPoint& point) {
  const unsigned bits = record[14];
  point.returnNumber = bits & 7U;
  point.returns = (bits >> 3U) & 7U;
  point.scanDirection = (bits & 0x40U) != 0;
  point.edgeOfFlightLine = (bits & 0x80U) != 0;
  point.classification = record[15] & 0x1fU;
  point.flags = static_cast<std::uint8_t>(record[15] >> 5U);
  point.scanAngle = stepsOfDegrees(static_cast<std::int8_t>(record[16]));
  point.userData = record[17];
  point.sourceId = load<std::uint16_t>(record + 18);
}

void decodeExtendedFields(std::uint8_t const* record, LasPoint& point) {
  const unsigned bits = record[15];
  point.returnNumber = record[14] & 15U;
  point.returns = static_cast<std::uint8_t>(record[14] >> 4U);
  point.flags = bits & 15U;
  point.channel = (bits >> 4U) & 3U;
  point.scanDirection = (bits & 0x40U) != 0;
  point.edgeOfFlightLine = (bits & 0x80U) != 0;
  point.classification = record[16];
  point.userData = record[17];
  point.scanAngle = load<std::int16_t>(record + 18);
  point.sourceId = load<std::uint16_t>(record + 20);
}

template <unsigned Format>
LasPoint decode(std::uint8_t const* record) {
  LasPoint point;
  point.x = load<std::int32_t>(record);
  point.y = load<std::int32_t>(record + 4);
  point.z = load<std::int32_t>(record + 8);
  point.intensity = load<std::uint16_t>(record + 12);
  if constexpr (isExtended(Format)) {
    decodeExtendedFields(record, point);
  } else {
    decodeLegacyFields(record, point);
  }
  if constexpr (hasGpsTime(Format)) {
    point.gpsTime = load<double>(record + gpsTimeByte(Format));
  }
  if constexpr (hasColour(Format)) {
    point.red = load<std::uint16_t>(record + colourByte(Format));
    point.green = load<std::uint16_t>(record + colourByte(Format) + 2);
    point.blue = load<std::uint16_t>(record + colourByte(Format) + 4);
  }
  if constexpr (hasInfrared(Format)) {
    point.nir = load<std::uint16_t>(record + colourByte(Format) + 6);
  }
  return point;
}

template <unsigned Format>
void decodeAll(std::uint8_t const* records, std::size_t recordLength, std::span<LasPoint> points) {
  for (LasPoint& point : points) {
    point = decode<Format>(records);
    records += recordLength;
  }
}

using Decoder = void (*)(std::uint8_t const*, std::size_t, std::span<LasPoint>);

template <unsigned... Formats>
constexpr std::array<Decoder, kLasFormats> decoders(std::integer_sequence<unsigned, Formats...>) {
  return {&decodeAll<Formats>...};
}

constexpr auto kDecoders = decoders(std::make_integer_sequence<unsigned, kLasFormats>());

unsigned directionBits(LasPoint const& point) {
  return (point.scanDirection ? 0x40U : 0U) | (point.edgeOfFlightLine ? 0x80U : 0U);
}

void encodeLegacyFields(LasPoint const& point, std::uint8_t* record) {
  const unsigned returns = std::min<unsigned>(point.returnNumber, 7) | std::min<unsigned>(point.returns, 7) << 3U;
  record[14] = static_cast<std::uint8_t>(returns | directionBits(point));
  record[15] = static_cast<std::uint8_t>((point.classification & 0x1fU) | (point.flags & 7U) << 5U);
  record[16] = static_cast<std::uint8_t>(degreesOfSteps(point.scanAngle));
  record[17] = point.userData;
  store(record + 18, point.sourceId);
}

void encodeExtendedFields(LasPoint const& point, std::uint8_t* record) {
  record[14] = static_cast<std::uint8_t>(std::min<unsigned>(point.returnNumber, 15) |
                                         std::min<unsigned>(point.returns, 15) << 4U);
  record[15] = static_cast<std::uint8_t>((point.flags & 15U) | (point.channel & 3U) << 4U | directionBits(point));
  record[16] = point.classification;
  record[17] = point.userData;
  store(record + 18, point.scanAngle);
  store(record + 20, point.sourceId);
}

}  // namespace

void decodeLasPoints(unsigned format, std::uint8_t const* records, std::size_t recordLength,
                     std::span<LasPoint> points) {
  kDecoders.at(format)(records, recordLength, points);
}

void encodeLasPoint(unsigned format, LasPoint const& point, std::uint8_t* record) {
  std::memset(record, 0, lasRecordLength(format));
  store(record, point.x);
  store(record + 4, point.y);
  store(record + 8, point.z);
  store(record + 12, point.intensity);
  isExtended(format) ? encodeExtendedFields(point, record) : encodeLegacyFields(point, record);
  if (hasGpsTime(format)) {
    store(record + gpsTimeByte(format), point.gpsTime);
  }
  if (hasColour(format)) {
    store(record + colourByte(format), point.red);
    store(record + colourByte(format) + 2, point.green);
    store(record + colourByte(format) + 4, point.blue);
  }
  if (hasInfrared(format)) {
    store(record + colourByte(format) + 6, point.nir);
  }
}

}  // namespace Meseta47::host
