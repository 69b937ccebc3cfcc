#include "host/PointStream.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "host/las/LasCodec.h"
#include "model/threads/Reparto.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kBlock = 8192;  // points that a thread takes at a time
constexpr std::size_t kPiece = 256;   // of them decoded at once: 12 KB, which stay in the nearest cache
constexpr double kFarthest = 9e15;    // beyond it a scaled coordinate is no whole number in a double any more

std::int64_t toWhole(double v) { return std::llround(std::clamp(v, -kFarthest, kFarthest)); }

/// From the integers of a LAS file to those of a seed, on one axis.
class AxisMap {
 public:
  AxisMap(double scale, double offset, double origin, double units)
      : factor_(scale * units), shift_((offset - origin) * units) {
    const double factor = std::round(factor_), shift = std::round(shift_);
    // What is left of a whole number after such products is below a thousandth; what is not one is a tenth at least.
    whole_ = factor >= 1 && factor < 1e6 && std::abs(factor_ - factor) <= 1e-9 * factor &&
             std::abs(shift_ - shift) <= 1e-3 && std::abs(shift) < kFarthest;
    wholeFactor_ = whole_ ? static_cast<std::int64_t>(factor) : 0;
    wholeShift_ = whole_ ? static_cast<std::int64_t>(shift) : 0;
  }

  [[nodiscard]] std::int64_t operator()(std::int32_t v) const {
    return whole_ ? v * wholeFactor_ + wholeShift_ : toWhole(v * factor_ + shift_);
  }

 private:
  double factor_, shift_;
  bool whole_;
  std::int64_t wholeFactor_, wholeShift_;
};

}  // namespace

WidePoint scaled(std::array<double, 3> const& place, CDataSemilla const& seed) {
  const double units = seed.Precision();
  const auto on = [&](std::size_t axis) { return toWhole((place[axis] - seed.origen[axis]) * units); };
  return {{on(0), on(1), on(2)}, 0, 0, {}};
}

PointStream::PointStream(std::string const& file, TextColumns const& columns, LasReading const& reading)
    : reader_(file, columns, reading), coloured_(reader_.hasColour() && reading.fields == LasFields::all) {}

Extent const& PointStream::measure() {
  if (found_) return *found_;
  found_.emplace();
  while (reader_.readBatch(text_) != 0) {
    measured_ += text_.size();
    for (CloudPoint const& p : text_) found_->include(p.x, p.y, p.z);
  }
  reader_.rewind();
  return *found_;
}

int PointStream::decimals() {
  if (!reader_.isLas()) measure();
  return reader_.precision();
}

std::optional<Extent> PointStream::extent(bool believe) {
  if (believe) {
    if (const auto declared = reader_.declaredExtent()) return declared;
  }
  Extent const& found = measure();
  return measured_ == 0 ? std::nullopt : std::optional(found);
}

bool PointStream::next(CDataSemilla const& seed, std::vector<WidePoint>& points) {
  if (reader_.isLas()) return nextOfLas(*reader_.las(), seed, points);
  points.clear();
  if (reader_.readBatch(text_) == 0) return false;
  for (CloudPoint const& p : text_) {
    points.push_back({scaled({p.x, p.y, p.z}, seed).position, p.intensity, p.classification, {p.r, p.g, p.b}});
  }
  return true;
}

bool PointStream::nextOfLas(LasReader& las, CDataSemilla const& seed, std::vector<WidePoint>& points) {
  const std::size_t count = las.readRecords();
  points.resize(count);
  const auto map = [&](std::size_t axis) {
    return AxisMap(las.header().scale[axis], las.header().offset[axis], seed.origen[axis], seed.Precision());
  };
  const AxisMap x = map(0), y = map(1), z = map(2);
  const unsigned format = las.header().pointFormat;
  const std::size_t length = las.header().recordLength;
  Reparte(count, kBlock, [&](std::size_t from, std::size_t to) {
    std::array<LasPoint, kPiece> piece;
    for (; from < to; from += kPiece) {
      const std::span part = std::span(piece).first(std::min(kPiece, to - from));
      decodeLasPoints(format, las.rawRecords().data() + from * length, length, part);
      WidePoint* wide = points.data() + from;
      for (LasPoint const& p : part) {
        *wide++ = {{x(p.x), y(p.y), z(p.z)}, p.intensity, p.classification, {}};
      }
      if (!coloured_) continue;
      wide -= part.size();
      for (LasPoint const& p : part) (wide++)->colour = reader_.colourOf(p);
    }
  });
  return count > 0;
}

}  // namespace Meseta47::host
