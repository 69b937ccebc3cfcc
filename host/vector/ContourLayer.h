#pragma once

#include <cstdint>
#include <optional>

#include "host/vector/ContourLevels.h"
#include "host/vector/VectorOutput.h"
#include "model/drawing/CLinea.h"
#include "model/geometry/CDataSemilla.h"

namespace Meseta47::host {

/// Which contours are written, and which are marked.
struct ContourChoice {
  int indexEvery = 5;    ///< every so many levels, counted from the base, there is an index contour; 0: none
  double minLength = 0;  ///< in plan, in units of the input
};

/// What a layer of contours holds.
struct ContourCounts {
  std::uint64_t contours = 0, closed = 0, index = 0, vertices = 0, levels = 0;
  std::uint64_t tooShort = 0;      ///< left out
  double length = 0;               ///< of all, in plan, in units of the input
  double lowest = 0, highest = 0;  ///< heights; without contours, 0
};

/// The layer `contour`: lines with heights and the fields ELEV (height), INDEX (1 for an index contour, else 0), CLOSED
/// (1 for a ring, else 0) and LENGTH (in plan). A DXF has the layers `contour` and `contour_index` instead.
[[nodiscard]] VectorLayer contourLayer(int decimals);

/// Adds contours to an output with that layer, one after another, lowest first, and counts them.
class ContourWriter {
 public:
  /// The contours stand on the seed. What is given must outlive the writer.
  ContourWriter(CDataSemilla const& seed, ContourLevels const& levels, ContourChoice const& choice,
                VectorOutput& output);

  /// A line of one height; throws FileError.
  void add(CLinea<int> const& line);

  [[nodiscard]] ContourCounts const& counts() const { return counts_; }

 private:
  void count(int z, bool isIndex, bool isClosed, double length);

  CDataSemilla seed_;
  ContourLevels const& levels_;
  ContourChoice const& choice_;
  VectorOutput& output_;
  ContourCounts counts_;
  std::optional<int> level_;  // of the line before
  Ring places_;
};

}  // namespace Meseta47::host
