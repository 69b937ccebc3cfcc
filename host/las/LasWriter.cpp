#include "host/las/LasWriter.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>
#include <utility>

#include "host/FileError.h"
#include "host/las/LasCodec.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::uint16_t kReferenceSystemIsWkt = 1U << 4U;
constexpr unsigned kLastFormat[] = {1, 1, 3, 5, 10};  // by minor version

LazScheme schemeOf(LasWriterOptions const& options) {
  LazScheme scheme = lazSchemeFor(options.pointFormat, options.extraBytes);
  scheme.chunkPoints = options.chunkPoints;
  return scheme;
}

LasWriterOptions requireKnownKind(std::string const& path, LasWriterOptions options) {
  if (options.versionMinor > 4 || options.pointFormat > kLastFormat[options.versionMinor]) {
    throw FileError(path, fmt::format("LAS 1.{} has no point format {}: choose version 1.4", options.versionMinor,
                                      options.pointFormat));
  }
  if (options.versionMinor < 4 && !options.evlrs.empty()) {
    throw FileError(path,
                    fmt::format("LAS 1.{} has no records after the points: choose version 1.4", options.versionMinor));
  }
  const auto tooLong = [](LasVlrRecord const& vlr) { return vlr.data.size() > 65535; };
  if (std::any_of(options.vlrs.begin(), options.vlrs.end(), tooLong)) {
    throw FileError(path, "a record before the points holds more than 65,535 bytes: put it after them, in version 1.4");
  }
  if (options.compressed) options.vlrs.push_back(encodeLazScheme(schemeOf(options)));
  return options;
}

LasHeader headerOf(LasWriterOptions const& options) {
  LasHeader header;
  header.versionMinor = static_cast<std::uint8_t>(options.versionMinor);
  header.pointFormat = static_cast<std::uint8_t>(options.pointFormat);
  header.compressed = options.compressed;
  header.recordLength = static_cast<std::uint16_t>(lasRecordLength(options.pointFormat) + options.extraBytes);
  header.fileSourceId = options.fileSourceId;
  header.globalEncoding = options.globalEncoding;
  if (isExtended(options.pointFormat)) {
    header.globalEncoding |= kReferenceSystemIsWkt;  // these formats allow no other
  }
  header.systemId = options.systemId;
  header.software = options.software;
  header.creationDay = options.creationDay;
  header.creationYear = options.creationYear;
  header.scale = options.scale;
  header.offset = options.offset;
  header.headerSize = lasHeaderSize(options.versionMinor);
  header.vlrCount = static_cast<std::uint32_t>(options.vlrs.size());
  header.evlrCount = static_cast<std::uint32_t>(options.evlrs.size());
  header.offsetToPoints = header.headerSize;
  for (LasVlrRecord const& vlr : options.vlrs) {
    header.offsetToPoints += static_cast<std::uint32_t>(kVlrHead + vlr.data.size());
  }
  return header;
}

}  // namespace

LasWriter::LasWriter(std::string const& path, LasWriterOptions options)
    : options_(requireKnownKind(path, std::move(options))), header_(headerOf(options_)), file_(path) {
  least_.fill(std::numeric_limits<std::int32_t>::max());
  most_.fill(std::numeric_limits<std::int32_t>::min());
  block_.reserve(kBlock + header_.recordLength);
  file_.write(encodeLasHeader(header_).data(), header_.headerSize);
  writeRecords(options_.vlrs, false);
  if (options_.compressed) laz_ = std::make_unique<LazRecordWriter>(file_, schemeOf(options_));
}

void LasWriter::add(LasPoint const& point, std::span<std::uint8_t const> extra) {
  if ((point.classification & ~lasClassMask(options_.pointFormat)) != 0) {
    throw FileError(file_.name(),
                    fmt::format("class {} does not fit point format {}, which ends at 31: choose a format "
                                "from 6 on",
                                point.classification, options_.pointFormat));
  }
  const std::size_t place = block_.size();
  block_.resize(place + header_.recordLength);
  encodeLasPoint(options_.pointFormat, point, block_.data() + place);
  const std::size_t known = std::min<std::size_t>(extra.size(), options_.extraBytes);
  std::copy_n(extra.begin(), known, block_.end() - options_.extraBytes);
  takeNote(point);
  if (block_.size() >= kBlock) {
    flush();
  }
}

void LasWriter::takeNote(LasPoint const& point) {
  const std::array<std::int32_t, 3> place{point.x, point.y, point.z};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    least_[axis] = std::min(least_[axis], place[axis]);
    most_[axis] = std::max(most_[axis], place[axis]);
  }
  ++header_.pointCount;
  const std::size_t returns = isExtended(options_.pointFormat) ? 15 : 5;
  if (point.returnNumber >= 1 && point.returnNumber <= returns) {
    ++header_.pointsByReturn[point.returnNumber - 1U];
  }
}

void LasWriter::flush() {
  if (laz_) {
    laz_->add(block_);
  } else {
    file_.write(block_.data(), block_.size());
  }
  block_.clear();
}

void LasWriter::endChunk() {
  flush();
  if (laz_) laz_->endChunk();
}

void LasWriter::writeRecords(std::vector<LasVlrRecord> const& records, bool extended) {
  for (LasVlrRecord const& record : records) {
    const auto bytes = encodeVlr(record, extended);
    file_.write(bytes.data(), bytes.size());
  }
}

void LasWriter::finish() {
  flush();
  if (laz_) laz_->finish();
  if (options_.versionMinor < 4 && header_.pointCount > std::numeric_limits<std::uint32_t>::max()) {
    throw FileError(file_.name(), fmt::format("{} points do not fit LAS 1.{}: choose version 1.4",
                                              withThousands(header_.pointCount), options_.versionMinor));
  }
  header_.evlrStart = options_.evlrs.empty() ? 0 : file_.position();
  writeRecords(options_.evlrs, true);
  for (std::size_t axis = 0; axis < 3 && header_.pointCount > 0; ++axis) {
    header_.min[axis] = least_[axis] * header_.scale[axis] + header_.offset[axis];
    header_.max[axis] = most_[axis] * header_.scale[axis] + header_.offset[axis];
  }
  file_.seek(0);
  file_.write(encodeLasHeader(header_).data(), header_.headerSize);
  file_.commit();
}

}  // namespace Meseta47::host
