#include "host/render/SurfaceRaster.h"

#include <algorithm>
#include <cmath>

namespace Meseta47::host {

namespace {

bool isAbove(Corner const& a, Corner const& b) { return a.row != b.row ? a.row < b.row : a.column < b.column; }

/// Where a side from `upper` to `lower`, which are on different rows, crosses a row.
Corner crossing(Corner const& upper, Corner const& lower, double row) {
  const double part = (row - upper.row) / (lower.row - upper.row);
  const auto share = static_cast<float>(part);
  return {upper.column + (lower.column - upper.column) * part, row,
          upper.height + (lower.height - upper.height) * share, upper.light + (lower.light - upper.light) * share};
}

/// The first cell whose centre is not before a place; within 0 and `end`.
int firstCentre(double place, int end) {
  return static_cast<int>(std::clamp(std::ceil(place - 0.5), 0.0, static_cast<double>(end)));
}

}  // namespace

SurfaceRaster::SurfaceRaster(int columns, int firstRow, int rows)
    : columns_(columns),
      firstRow_(firstRow),
      rows_(rows),
      cells_(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {}

//      a           The long side a-c is cut once by every row between its ends; the other cut is on a-b above the
//     / \          middle corner and on b-c below it. Rows are taken from the upper end on and before the lower one, so
//    /   b         that a side's end belongs to one triangle of those that meet there.
//   / .
//  c
void SurfaceRaster::add(Corner const& p, Corner const& q, Corner const& r) {
  Corner const *a = &p, *b = &q, *c = &r;
  if (isAbove(*b, *a)) std::swap(a, b);
  if (isAbove(*c, *b)) std::swap(b, c);
  if (isAbove(*b, *a)) std::swap(a, b);
  const int begin = firstCentre(a->row - firstRow_, rows_), end = firstCentre(c->row - firstRow_, rows_);
  for (int i = begin; i < end; ++i) {
    const int row = firstRow_ + i;
    const double centre = row + 0.5;
    const Corner onLong = crossing(*a, *c, centre);
    const Corner onShort = centre < b->row ? crossing(*a, *b, centre) : crossing(*b, *c, centre);
    const bool longFirst = onLong.column < onShort.column;
    addRow(row, longFirst ? onLong : onShort, longFirst ? onShort : onLong);
  }
}

void SurfaceRaster::addRow(int row, Corner const& left, Corner const& right) {
  const int end = firstCentre(right.column, columns_);
  const double width = right.column - left.column;
  for (int column = firstCentre(left.column, columns_); column < end; ++column) {
    const auto share = static_cast<float>((column + 0.5 - left.column) / width);
    Cell& cell = cells_[index(column, row)];
    const float height = left.height + (right.height - left.height) * share;
    if (height > cell.height) cell = {height, left.light + (right.light - left.light) * share};
  }
}

}  // namespace Meseta47::host
