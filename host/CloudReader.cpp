#include "host/CloudReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <tuple>
#include <utility>

#include "host/FileError.h"
#include "host/las/LasCodec.h"
#include "host/las/LasNames.h"

namespace Meseta47::host {

namespace {

constexpr double kDegreesAStep = 0.006;

bool isNoText(std::span<std::uint8_t const> start) {
  return std::any_of(start.begin(), start.end(), [](unsigned c) { return c < 9 || (c > 13 && c < 32); });
}

enum class Kind { las, text, model };

Kind kindOf(ByteSource& source) {
  std::array<std::uint8_t, 4096> bytes{};
  const auto start = std::span(bytes).first(source.read(0, bytes));
  const std::string_view beginning(reinterpret_cast<char const*>(start.data()), start.size());
  if (beginning.starts_with("LASF")) return Kind::las;
  if (isNativeModel(beginning, source.name())) return Kind::model;
  if (isNamedLas(source.name())) return Kind::las;
  if (beginning.starts_with("ply\n") || beginning.starts_with("ply\r")) {
    throw FileError(source.name(), "is a PLY model: of models, only native ones (.urd) can be taken for their points");
  }
  if (isNoText(start)) {
    throw FileError(source.name(), "is neither LAS, LAZ, a native model nor text: give one of these");
  }
  return Kind::text;
}

// Whether colours are 8-bit numbers, from a sample spread over the file.
bool coloursAreBytes(LasReader& reader) {
  constexpr std::uint64_t kPieces = 16;
  constexpr std::size_t kPiece = 1024;
  std::vector<LasPoint> points;
  for (std::uint64_t i = 0; i < kPieces; ++i) {
    const std::uint64_t count = reader.header().pointCount;
    reader.seek(count <= kPieces * kPiece ? i * kPiece : reader.goodStart(count / kPieces * i));
    reader.readBatch(points, kPiece);
    if (std::any_of(points.begin(), points.end(), [](auto& p) { return (p.red | p.green | p.blue) > 255; })) {
      return false;
    }
  }
  return true;
}

std::uint8_t colour(unsigned stored, unsigned shift) {
  return static_cast<std::uint8_t>(std::min(stored >> shift, 255U));
}

float degrees(LasPoint const& point, bool wholeDegrees) {
  const double angle = point.scanAngle * kDegreesAStep;
  return static_cast<float>(wholeDegrees ? std::round(angle) : angle);
}

}  // namespace

CloudReader::CloudReader(std::string const& path, TextColumns const& columns, LasReading const& reading) {
  auto source = std::make_unique<FileSource>(path);
  const Kind kind = kindOf(*source);
  if (kind != Kind::las && reading.resolution > 0) failWithoutLevels(path);
  if (kind == Kind::text) {
    text_ = std::make_unique<TextReader>(std::move(source), columns);
    return;
  }
  if (kind == Kind::model) {
    model_ = std::make_unique<ModelPoints>(path);
    return;
  }
  las_ = std::make_unique<LasReader>(std::move(source), reading);
  if (hasColour() && reading.fields == LasFields::all) {
    colourShift_ = coloursAreBytes(*las_) ? 0 : 8;
    las_->seek(0);
  }
}

std::string const& CloudReader::name() const { return las_ ? las_->name() : model_ ? model_->name() : text_->name(); }

bool CloudReader::hasColour() const {
  if (las_) return host::hasColour(las_->header().pointFormat);
  return text_ != nullptr && text_->hasColour();
}

std::optional<std::uint64_t> CloudReader::points() const {
  if (model_) return model_->count();
  return las_ ? std::optional(las_->header().pointCount) : std::nullopt;
}

std::optional<Extent> CloudReader::declaredExtent() const {
  if (!las_ || las_->header().pointCount == 0) {
    return std::nullopt;
  }
  const Extent extent{las_->header().min, las_->header().max};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (!(extent.min[axis] <= extent.max[axis]) || !std::isfinite(extent.max[axis] - extent.min[axis])) {
      return std::nullopt;
    }
  }
  return extent;
}

int CloudReader::precision() const {
  if (model_) return model_->precision();
  return las_ ? defaultPrecision(las_->header().scale, las_->header().offset)
              : std::clamp(text_->decimals(), 0, kMostDecimals);
}

void CloudReader::rewind() {
  if (las_) las_->seek(0);
  if (text_) text_->rewind();
  if (model_) model_->rewind();
}

std::size_t CloudReader::readBatch(std::vector<CloudPoint>& points, std::size_t max) {
  if (text_) return text_->readBatch(points, max);
  if (model_) return model_->readBatch(points, max);
  las_->readBatch(batch_, max);
  convert(points);
  return points.size();
}

std::array<std::uint8_t, 3> CloudReader::colourOf(LasPoint const& point) const {
  return {colour(point.red, colourShift_), colour(point.green, colourShift_), colour(point.blue, colourShift_)};
}

void CloudReader::convert(std::vector<CloudPoint>& points) const {
  auto const& [scale, offset] = std::tie(las_->header().scale, las_->header().offset);
  const bool wholeDegrees = !isExtended(las_->header().pointFormat);
  points.resize(batch_.size());
  for (std::size_t i = 0; i < batch_.size(); ++i) {
    LasPoint const& from = batch_[i];
    CloudPoint& to = points[i];
    to.x = from.x * scale[0] + offset[0];
    to.y = from.y * scale[1] + offset[1];
    to.z = from.z * scale[2] + offset[2];
    to.intensity = from.intensity;
    to.classification = from.classification;
    to.returnNumber = from.returnNumber;
    to.returns = from.returns;
    const auto [r, g, b] = colourOf(from);
    to.r = r;
    to.g = g;
    to.b = b;
    to.sourceId = from.sourceId;
    to.scanAngle = degrees(from, wholeDegrees);
    to.gpsTime = from.gpsTime;
  }
}

}  // namespace Meseta47::host
