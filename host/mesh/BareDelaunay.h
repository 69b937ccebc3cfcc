#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47::host {

/// Delaunay tetrahedralisation of points in memory without any frame around them: beyond each face of their convex hull
/// lies an endless cell, whose fourth vertex is no point.
///
/// Of five points on one sphere the last of the list stands as though it lay a trifle inside: the mesh is the one that
/// inserting the points in their order makes, on-sphere points taken for inner ones, whatever order they really come in
/// here. So it agrees, down to cubes and grids, with every other mesh made that way of these points and others.
///
/// All decisions are exact. About 0.4 kB a point; points on one sphere cost as the square of their number.
class BareDelaunay {
 public:
  static constexpr std::uint32_t kNowhere = std::numeric_limits<std::uint32_t>::max();  ///< the vertex of endless cells
  struct Cell {
    std::array<std::uint32_t, 4> v;  ///< places in the list; a right-handed system, as `sixVolumes` tells
    std::array<std::uint32_t, 4> n;  ///< cell across from each of them
  };

  /// The points are distinct. When all of them lie in one plane there are no cells.
  explicit BareDelaunay(std::vector<CCoor3D<int>> points);

  [[nodiscard]] std::vector<CCoor3D<int>> const& points() const { return points_; }
  /// Some are out of use.
  [[nodiscard]] std::vector<Cell> const& cells() const { return cells_; }
  [[nodiscard]] bool isUsed(Cell const& cell) const { return cell.v[0] != cell.v[1]; }
  /// The corner of an endless cell that is no point; 4 for a cell between points.
  [[nodiscard]] static unsigned endlessCorner(Cell const& cell) {
    for (unsigned i = 0; i < 4; ++i) {
      if (cell.v[i] == kNowhere) return i;
    }
    return 4;
  }

 private:
  struct Border {
    std::uint32_t outside;  // cell beyond a face of the cavity
    std::uint32_t inside;   // condemned cell on this side
    unsigned corner;        // of the condemned one, across from the face
  };

  [[nodiscard]] std::array<std::uint32_t, 4> firstCell() const;
  void begin(std::array<std::uint32_t, 4> const& first);
  void insert(std::uint32_t point);
  [[nodiscard]] std::uint32_t locate(std::uint32_t point) const;
  [[nodiscard]] int side(Cell const& cell, unsigned corner, std::uint32_t point) const;
  [[nodiscard]] bool holds(Cell const& cell, std::uint32_t point) const;
  [[nodiscard]] bool holdsOnSphere(Cell const& cell, std::uint32_t point) const;
  void findCavity(std::uint32_t start, std::uint32_t point);
  void fillCavity(std::uint32_t point);
  std::uint32_t newCell(Cell const& cell);

  std::vector<CCoor3D<int>> points_;
  std::vector<Cell> cells_;
  std::vector<std::uint32_t> stamps_;  // of each cell: twice the insertion that looked at it, plus 1 if it goes
  std::vector<std::uint32_t> free_;
  std::uint32_t last_ = 0, insertion_ = 0;
  // scratch of an insertion
  std::vector<std::uint32_t> cavity_;
  std::vector<Border> border_;
  std::vector<std::pair<std::uint64_t, std::uint32_t>> edges_;
};

}  // namespace Meseta47::host
