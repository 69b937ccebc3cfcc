#include "host/las/LasCheck.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "host/CloudPoint.h"
#include "host/FileError.h"
#include "host/las/LasBytes.h"
#include "host/las/LasCodec.h"
#include "host/laz/LazScheme.h"

namespace Meseta47::host {

namespace {

constexpr std::string_view kAxes = "xyz";

// Finer than a tenth of a nanometre or coarser than a thousand kilometres is no unit of a survey.
constexpr double kFinestScale = 1e-10;
constexpr double kCoarsestScale = 1e6;

// The first bytes of what is no LAS file, fit for a terminal.
std::string printable(std::span<std::uint8_t const> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += byte >= 0x20 && byte < 0x7f ? static_cast<char>(byte) : '?';
  }
  return text;
}

std::array<std::uint8_t, kLasHeaderLongest> readHeaderBytes(ByteSource& source) {
  if (source.size() == 0) {
    throw FileError(source.name(), "the file is empty (0 bytes): copy it again");
  }
  std::array<std::uint8_t, kLasHeaderLongest> bytes{};
  const std::size_t found = source.read(0, bytes);
  const auto magic = std::span(bytes).first(std::min<std::size_t>(found, 4));
  if (printable(magic) != "LASF") {
    throw FileError(source.name(), fmt::format("is not a LAS file: it begins with \"{}\" where \"LASF\" should stand: "
                                               "give a LAS file, or text with x, y and z named .txt, .xyz or .csv",
                                               printable(magic)));
  }
  const std::size_t needed = lasHeaderSize(found > 25 ? std::min<unsigned>(bytes[25], 4) : 0);
  if (found < needed) {
    throw FileError(source.name(),
                    fmt::format("the header is cut short ({} bytes expected, {} found): {}", needed, found, kDamaged));
  }
  return bytes;
}

void checkKind(std::string const& name, LasHeader const& header) {
  if (header.versionMajor != 1 || header.versionMinor > 4) {
    throw FileError(name, fmt::format("LAS version {}.{} is not known: versions 1.0 to 1.4 are read; convert it to one "
                                      "of them",
                                      header.versionMajor, header.versionMinor));
  }
  if (header.pointFormat >= kLasFormats) {
    throw FileError(name, fmt::format("point format {} is not known: formats 0 to 10 are read; convert it to one of "
                                      "them",
                                      header.pointFormat));
  }
  if (header.recordLength < lasRecordLength(header.pointFormat)) {
    throw FileError(name, fmt::format("the header gives {} bytes a point, format {} needs {}: the file is damaged",
                                      header.recordLength, header.pointFormat, lasRecordLength(header.pointFormat)));
  }
}

void checkPlaces(ByteSource const& source, LasHeader const& header) {
  const std::size_t smallest = lasHeaderSize(header.versionMinor);
  if (header.headerSize < smallest) {
    throw FileError(source.name(), fmt::format("the header says that it is {} bytes long, version 1.{} needs {}: the "
                                               "file is damaged",
                                               header.headerSize, header.versionMinor, smallest));
  }
  if (header.offsetToPoints < header.headerSize) {
    throw FileError(source.name(), fmt::format("points begin at byte {}, within the header of {} bytes: the file is "
                                               "damaged",
                                               withThousands(header.offsetToPoints), header.headerSize));
  }
  if (header.offsetToPoints > source.size()) {
    throw FileError(source.name(),
                    fmt::format("points begin at byte {}, but the file ends at byte {}: {}",
                                withThousands(header.offsetToPoints), withThousands(source.size()), kDamaged));
  }
}

void checkNumbers(std::string const& name, LasHeader const& header) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double scale = header.scale[axis];
    if (!(scale >= kFinestScale && scale <= kCoarsestScale)) {
      throw FileError(name, fmt::format("the scale of {} is {}, and no survey has one outside {} to {}: the file is "
                                        "damaged; write it again with a scale such as 0.001",
                                        kAxes[axis], scale, kFinestScale, kCoarsestScale));
    }
    const double offset = header.offset[axis];
    if (!(std::abs(offset) <= kFarthestPlace)) {
      throw FileError(name,
                      fmt::format("the offset of {} is {}, which leads to no place on Earth: the file is damaged; "
                                  "write it again with whole metres as offset",
                                  kAxes[axis], offset));
    }
  }
}

std::uint64_t wholePoints(ByteSource const& source, LasHeader const& header) {
  return (source.size() - header.offsetToPoints) / header.recordLength;
}

/// Where the points end, as far as the header tells: where compressed ones end, only they tell.
std::uint64_t endOfPoints(LasHeader const& header) {
  return header.offsetToPoints + (header.compressed ? 0 : header.pointCount * header.recordLength);
}

bool extendedRecordsFit(ByteSource const& source, LasHeader const& header) {
  return header.evlrCount == 0 || (header.evlrStart >= endOfPoints(header) && header.evlrStart <= source.size());
}

void checkPointsFit(ByteSource const& source, LasHeader const& header) {
  const std::uint64_t room = source.size() - header.offsetToPoints;
  if (!header.compressed && header.pointCount > wholePoints(source, header)) {
    failAtCutPoint(source, header, wholePoints(source, header), room % header.recordLength);
  }
  if (!extendedRecordsFit(source, header)) {
    throw FileError(
        source.name(),
        fmt::format("extended records begin at byte {}, outside what follows the points (bytes {} to {}): "
                    "the file is damaged; --partial takes its points",
                    withThousands(header.evlrStart), withThousands(endOfPoints(header)), withThousands(source.size())));
  }
}

LasVlr readVlr(ByteSource& source, std::uint64_t place, std::uint64_t end, std::size_t headBytes,
               std::string_view which) {
  std::array<std::uint8_t, kEvlrHead> bytes{};
  const auto head = std::span(bytes).first(headBytes);
  LasVlr vlr;
  if (end - place >= headBytes && source.read(place, head) == headBytes) {
    vlr = decodeVlrHead(head, place);
    if (vlr.dataLength <= end - vlr.dataStart) {
      return vlr;
    }
  }
  throw FileError(source.name(),
                  fmt::format("{} is {} bytes long and only {} are left for it: {}", which,
                              withThousands(headBytes + vlr.dataLength), withThousands(end - place), kDamaged));
}

}  // namespace

void failAtCutPoint(ByteSource const& source, LasHeader const& header, std::uint64_t point, std::uint64_t found) {
  if (found == 0) {
    throw FileError(source.name(), fmt::format("the header promises {} points and the file ends after {}: {}",
                                               withThousands(header.pointCount), withThousands(point), kDamaged));
  }
  throw FileError(source.name(), fmt::format("point {} is cut short ({} bytes expected, {} found): {}",
                                             withThousands(point + 1), header.recordLength, found, kDamaged));
}

LasHeader readCheckedHeader(ByteSource& source) {
  const auto bytes = readHeaderBytes(source);
  const LasHeader header = decodeLasHeader(bytes);
  checkKind(source.name(), header);
  checkPlaces(source, header);
  checkNumbers(source.name(), header);
  return header;
}

std::vector<LasVlr> readCheckedVlrs(ByteSource& source, LasHeader& header, bool partial) {
  std::vector<LasVlr> vlrs;
  std::uint64_t place = header.headerSize;
  for (std::uint32_t i = 0; i < header.vlrCount; ++i) {
    const std::string which = fmt::format("record {} of the {} before the points", i + 1, header.vlrCount);
    vlrs.push_back(readVlr(source, place, header.offsetToPoints, kVlrHead, which));
    place = vlrs.back().dataStart + vlrs.back().dataLength;
  }
  // The record is left over in files that were decompressed: there all points have room.
  const bool tellsHow = std::any_of(vlrs.begin(), vlrs.end(), [](auto& v) { return v.is(kLazUser, kLazRecord); });
  if (tellsHow && header.pointCount > wholePoints(source, header)) header.compressed = true;
  if (partial) {
    if (!header.compressed) header.pointCount = std::min(header.pointCount, wholePoints(source, header));
    if (!extendedRecordsFit(source, header)) header.evlrCount = 0;
  }
  checkPointsFit(source, header);
  place = header.evlrStart;
  for (std::uint32_t i = 0; i < header.evlrCount; ++i) {
    const std::string which = fmt::format("record {} of the {} after the points", i + 1, header.evlrCount);
    try {
      vlrs.push_back(readVlr(source, place, source.size(), kEvlrHead, which));
    } catch (FileError const&) {
      if (!partial) throw;
      header.evlrCount = i;
      break;
    }
    place = vlrs.back().dataStart + vlrs.back().dataLength;
  }
  return vlrs;
}

}  // namespace Meseta47::host
