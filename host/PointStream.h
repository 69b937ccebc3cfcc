#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/CloudReader.h"
#include "model/geometry/CDataSemilla.h"

namespace Meseta47::host {

/// A position in scaled integers before it is known to fit 32 bits, with what else a surface needs of a point.
struct WidePoint {
  std::array<std::int64_t, 3> position;
  std::uint16_t intensity;
  std::uint8_t classification;
  std::array<std::uint8_t, 3> colour{};  ///< red, green, blue
};

/// A place in real coordinates on a seed.
[[nodiscard]] WidePoint scaled(std::array<double, 3> const& place, CDataSemilla const& seed);

/// The points of one file on a seed: integer = (coordinate - origin) * 10^precision, to nearest. Of a LAS file whose
/// scale and offset have no more decimals than the seed, that is exact integer arithmetic.
class PointStream {
 public:
  /// Throws FileError. Without all fields of a LAS file the points have no colour.
  explicit PointStream(std::string const& file, TextColumns const& columns = {}, LasReading const& reading = {});

  /// The LAS file behind it; null for text.
  [[nodiscard]] LasReader const* las() const { return reader_.las(); }
  [[nodiscard]] bool isText() const { return reader_.text() != nullptr; }
  /// Decimals that hold the file's coordinates.
  [[nodiscard]] int decimals();
  /// Where the points are: what the file declares when that makes sense and `believe` is set, else what the points say,
  /// which takes a pass over them. None for a file without points.
  [[nodiscard]] std::optional<Extent> extent(bool believe);
  /// How many points there are; 0 for text that has not been passed over yet.
  [[nodiscard]] std::uint64_t count() const { return reader_.points().value_or(measured_); }
  /// Replaces `points` by the next ones. False at the end.
  bool next(CDataSemilla const& seed, std::vector<WidePoint>& points);

 private:
  Extent const& measure();
  bool nextOfLas(LasReader& las, CDataSemilla const& seed, std::vector<WidePoint>& points);

  CloudReader reader_;
  bool coloured_;  ///< of a LAS file
  std::vector<CloudPoint> text_;
  std::optional<Extent> found_;
  std::uint64_t measured_ = 0;
};

}  // namespace Meseta47::host
