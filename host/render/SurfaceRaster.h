#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Meseta47::host {

/// A vertex over a raster: columns to the right, rows down, a cell's centre at halves.
struct Corner {
  double column = 0, row = 0;
  float height = 0, light = 0;
};

/// Heights and light of a surface at the centres of cells, for some rows of a raster.
///
/// A centre belongs to the triangle around it; one on a side belongs to the triangle on its right, or below. Crossings
/// of a side with a row come from the side alone, so that triangles on both sides of it agree: no centre inside a
/// surface is missed or taken twice, and the result does not depend on the order of triangles or corners.
class SurfaceRaster {
 public:
  SurfaceRaster(int columns, int firstRow, int rows);

  /// Adds a triangle; where one is already, the higher of the two stays. O(rows and cells that it covers).
  void add(Corner const& a, Corner const& b, Corner const& c);

  [[nodiscard]] int columns() const { return columns_; }
  [[nodiscard]] int firstRow() const { return firstRow_; }
  [[nodiscard]] int endRow() const { return firstRow_ + rows_; }

  /// What is at the centre of a cell; the row is one of these.
  [[nodiscard]] bool has(int column, int row) const { return cell(column, row).height >= kNothing / 2; }
  [[nodiscard]] float height(int column, int row) const { return cell(column, row).height; }
  [[nodiscard]] float light(int column, int row) const { return cell(column, row).light; }

 private:
  static constexpr float kNothing = -3e38F;  // below any height of the world
  struct Cell {
    float height = kNothing, light = 1;
  };

  [[nodiscard]] std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row - firstRow_) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }
  [[nodiscard]] Cell const& cell(int column, int row) const { return cells_[index(column, row)]; }
  void addRow(int row, Corner const& left, Corner const& right);

  int columns_, firstRow_, rows_;
  std::vector<Cell> cells_;
};

}  // namespace Meseta47::host
