#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/CloudPoint.h"
#include "host/las/LasReader.h"
#include "host/mesh/NativeModel.h"
#include "host/text/TextReader.h"

namespace Meseta47::host {

/// Reads a cloud of any kind. What a file is follows from its first bytes: LAS begins with "LASF" and a native model,
/// of which the points are taken, with "Urdimbre-MDT", whatever the name of the file. Anything else is text, unless it
/// is called .las, .laz or .urd or holds bytes that no text has.
///
/// Colours of 16 bits are cut to their high byte. Files are common whose colours are 8-bit numbers in 16-bit fields:
/// when no point of a sample over the whole file (all points of a small one) has a colour above 255, they are taken as
/// they are, unless the reading does without them. Used by one thread at a time.
class CloudReader {
 public:
  static constexpr std::size_t kBatch = 65536;

  /// Opens the file; FileError when it cannot be read or is damaged. `columns` is for text alone,
  /// `reading` for LAS.
  explicit CloudReader(std::string const& path, TextColumns const& columns = {}, LasReading const& reading = {});

  /// Replaces `points` by the next ones in the order of the file and returns how many: 0 only after the last one. A
  /// coordinate of a LAS file is exactly X * scale + offset.
  std::size_t readBatch(std::vector<CloudPoint>& points, std::size_t max = kBatch);

  /// The next point to be read is the first one again.
  void rewind();

  [[nodiscard]] std::string const& name() const;
  [[nodiscard]] bool isLas() const { return las_ != nullptr; }

  [[nodiscard]] bool isModel() const { return model_ != nullptr; }

  /// The LAS file behind it, null for others: header, records and scaled integers. It shares the position in the file.
  [[nodiscard]] LasReader* las() { return las_.get(); }
  [[nodiscard]] LasReader const* las() const { return las_.get(); }
  /// The text behind it, null for others.
  [[nodiscard]] TextReader const* text() const { return text_.get(); }

  /// Number of points, where the file tells it before it is read.
  [[nodiscard]] std::optional<std::uint64_t> points() const;

  /// The extent that a header declares, where it makes sense. The points may disagree: nothing that must be right
  /// depends on it.
  [[nodiscard]] std::optional<Extent> declaredExtent() const;

  /// Decimals that hold the coordinates, from 0 to 7: of a LAS file by its scale and offset, of text those seen so far.
  [[nodiscard]] int precision() const;

  [[nodiscard]] bool hasColour() const;
  /// The colour of a point of the LAS file behind it, as readBatch gives it.
  [[nodiscard]] std::array<std::uint8_t, 3> colourOf(LasPoint const& point) const;

 private:
  void convert(std::vector<CloudPoint>& points) const;

  std::unique_ptr<LasReader> las_;
  std::unique_ptr<TextReader> text_;
  std::unique_ptr<ModelPoints> model_;
  std::vector<LasPoint> batch_;
  unsigned colourShift_ = 8;
};

}  // namespace Meseta47::host
