#include "host/las/LasReader.h"

#include <algorithm>
#include <utility>

#include "host/FileError.h"
#include "host/las/LasBytes.h"
#include "host/las/LasCheck.h"
#include "host/las/LasCodec.h"
#include "platform/Procesadores.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kLargestBlock = std::size_t{8} << 20;
constexpr std::string_view kProjection = "LASF_Projection";

}  // namespace

void failWithoutLevels(std::string const& file) {
  throw FileError(file, "has no levels of detail, as a sound COPC file has: leave --resolution out");
}

LasReader::LasReader(std::unique_ptr<ByteSource> source, LasReading const& reading)
    : source_(std::move(source)),
      header_(readCheckedHeader(*source_)),
      missing_(header_.pointCount),
      vlrs_(readCheckedVlrs(*source_, header_, reading.partial)) {
  if (header_.compressed) laz_ = openCompressed(reading.fields);
  if (laz_ && reading.partial) header_.pointCount = laz_->takeWhole();
  missing_ -= std::min(missing_, header_.pointCount);
  if (reading.resolution > 0 || (laz_ && reading.box)) choose(reading);
}

void LasReader::choose(LasReading const& reading) {
  const auto copc = octree();
  if (!copc) {
    if (reading.resolution > 0) failWithoutLevels(name());
    return;
  }
  const int deepest = reading.resolution > 0 ? copc->levelFor(reading.resolution) : copc->levels();
  std::vector<LazChunk> chosen;
  header_.pointCount = 0;
  for (CopcNode const& node : copc->nodes) {
    if (node.level > deepest || (reading.box && !copc->touches(node, *reading.box))) continue;
    chosen.push_back(node.chunk);
    chosen.back().firstPoint = header_.pointCount;
    header_.pointCount += node.chunk.points;
  }
  laz_->choose(std::move(chosen));
}

std::unique_ptr<LazRecords> LasReader::openCompressed(LasFields fields) const {
  LasVlr const* const how = find(kLazUser, kLazRecord);
  if (how == nullptr) {
    throw FileError(name(), "its points are compressed, and the record that tells how is missing: the file is damaged");
  }
  return std::make_unique<LazRecords>(*source_, header_, decodeLazScheme(name(), header_, vlrData(*how)), fields);
}

std::size_t LasReader::extraBytes() const { return header_.recordLength - lasRecordLength(header_.pointFormat); }

std::vector<std::uint8_t> LasReader::vlrData(LasVlr const& vlr) const {
  std::vector<std::uint8_t> data(vlr.dataLength);
  if (bytes().read(vlr.dataStart, data) != data.size()) {
    throw FileError(name(), "became shorter while it was read: wait until it is written");
  }
  return data;
}

LasVlr const* LasReader::find(std::string_view user, unsigned record) const {
  const auto found = std::find_if(vlrs_.begin(), vlrs_.end(), [&](LasVlr const& v) { return v.is(user, record); });
  return found == vlrs_.end() ? nullptr : &*found;
}

std::string LasReader::wkt() const {
  LasVlr const* const vlr = find(kProjection, 2112);
  if (vlr == nullptr) {
    return {};
  }
  const std::vector<std::uint8_t> data = vlrData(*vlr);
  return loadText(data.data(), data.size());
}

std::optional<GeoKeys> LasReader::geoKeys() const {
  LasVlr const* const directory = find(kProjection, 34735);
  if (directory == nullptr) {
    return std::nullopt;
  }
  GeoKeys keys;
  const auto shorts = vlrData(*directory);
  keys.directory.resize(shorts.size() / sizeof(std::uint16_t));
  std::copy_n(shorts.data(), keys.directory.size() * sizeof(std::uint16_t),
              reinterpret_cast<std::uint8_t*>(keys.directory.data()));
  if (LasVlr const* const vlr = find(kProjection, 34736); vlr != nullptr) {
    const auto doubles = vlrData(*vlr);
    keys.doubles.resize(doubles.size() / sizeof(double));
    std::copy_n(doubles.data(), keys.doubles.size() * sizeof(double),
                reinterpret_cast<std::uint8_t*>(keys.doubles.data()));
  }
  if (LasVlr const* const vlr = find(kProjection, 34737); vlr != nullptr) {
    const auto text = vlrData(*vlr);
    keys.ascii = loadText(text.data(), text.size());
  }
  return keys;
}

std::size_t LasReader::readRecords(std::size_t max) {
  const std::uint64_t left = header_.pointCount - next_;
  const std::size_t fitting = kLargestBlock / header_.recordLength;
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>({left, max, fitting}));
  if (laz_) {
    laz_->seek(next_);
    records_ = laz_->read(count);
  } else {
    readPlain(count);
  }
  const std::size_t got = records_.size() / header_.recordLength;
  next_ += got;
  return got;
}

ByteSource& LasReader::bytes() const {
  if (aheadGot_.valid()) aheadGot_.wait();
  return *source_;
}

void LasReader::readPlain(std::size_t count) {
  const std::size_t length = count * header_.recordLength;
  std::size_t got = 0;
  if (aheadGot_.valid() && aheadFirst_ == next_ && ahead_.size() == length) {
    got = aheadGot_.get();
    raw_.swap(ahead_);
  } else {
    raw_.resize(length);
    got = bytes().read(header_.offsetToPoints + next_ * header_.recordLength, raw_);
  }
  if (got < raw_.size()) {
    failAtCutPoint(*source_, header_, next_ + got / header_.recordLength, got % header_.recordLength);
  }
  records_ = raw_;
  readAhead(count);
}

/// Whoever takes a large block goes on to the next one as a rule, and has work to do until then.
void LasReader::readAhead(std::size_t count) {
  constexpr std::size_t kWorthAThread = 8192;  // points
  const std::uint64_t first = next_ + count;
  count = static_cast<std::size_t>(std::min<std::uint64_t>(count, header_.pointCount - first));
  if (count < kWorthAThread || NumeroProcesadores() == 1) return;
  static_cast<void>(bytes());  // what was read ahead in vain
  ahead_.resize(count * header_.recordLength);
  aheadFirst_ = first;
  const std::uint64_t from = header_.offsetToPoints + first * header_.recordLength;
  aheadGot_ =
      std::async(std::launch::async | std::launch::deferred, [this, from] { return source_->read(from, ahead_); });
}

std::size_t LasReader::readBatch(std::vector<LasPoint>& points, std::size_t max) {
  const std::size_t count = readRecords(max);
  points.resize(count);
  decodeLasPoints(header_.pointFormat, records_.data(), header_.recordLength, points);
  return count;
}

}  // namespace Meseta47::host
