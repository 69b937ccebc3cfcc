#include "host/mesh/BareDelaunay.h"

#include <algorithm>

#include "host/mesh/SpaceRank.h"
#include "model/geometry/CEsfera.h"

namespace Meseta47::host {

BareDelaunay::BareDelaunay(std::vector<CCoor3D<int>> points) : points_(std::move(points)) {
  const std::array<std::uint32_t, 4> first = firstCell();
  if (first[3] == kNowhere) return;
  cells_.reserve(7 * points_.size());
  begin(first);
  for (std::uint32_t p = 0; p < points_.size(); ++p) {
    if (std::find(first.begin(), first.end(), p) == first.end()) insert(p);
  }
}

std::array<std::uint32_t, 4> BareDelaunay::firstCell() const {
  SpaceRank rank;
  std::array<std::uint32_t, 4> first{kNowhere, kNowhere, kNowhere, kNowhere};
  for (std::uint32_t p = 0; p < points_.size() && rank.points() < 4; ++p) {
    if (rank.add(points_[p])) first[rank.points() - 1] = p;
  }
  return first;
}

/// The cell between four points and the four endless ones around it.
void BareDelaunay::begin(std::array<std::uint32_t, 4> const& first) {
  Cell cell{first, {1, 2, 3, 4}};
  if (SignoDeVolumen(points_[first[0]], points_[first[1]], points_[first[2]], points_[first[3]]) > 0) {
    std::swap(cell.v[0], cell.v[1]);
  }
  newCell(cell);
  for (unsigned i = 0; i < 4; ++i) {
    Cell endless = cell;
    endless.v[i] = kNowhere;
    // Beyond the face, not on the side of the corner: the other way round.
    for (unsigned k = 0; k < 4; ++k) endless.n[k] = k == i ? 0 : k + 1;
    const unsigned a = (i + 1) % 4, b = (i + 2) % 4;
    std::swap(endless.v[a], endless.v[b]);
    std::swap(endless.n[a], endless.n[b]);
    newCell(endless);
  }
}

std::uint32_t BareDelaunay::newCell(Cell const& cell) {
  if (!free_.empty()) {
    const std::uint32_t place = free_.back();
    free_.pop_back();
    cells_[place] = cell;
    stamps_[place] = 0;
    return place;
  }
  cells_.push_back(cell);
  stamps_.push_back(0);
  return static_cast<std::uint32_t>(cells_.size() - 1);
}

/// On which side of the face across from a corner the point lies: +1 on that of the corner.
int BareDelaunay::side(Cell const& cell, unsigned corner, std::uint32_t point) const {
  std::array<std::uint32_t, 4> v = cell.v;
  v[corner] = point;
  return -SignoDeVolumen(points_[v[0]], points_[v[1]], points_[v[2]], points_[v[3]]);
}

/// Whether the point condemns the cell. Beyond a face of the hull everything does; in its plane, what lies in the
/// circle of the face, and with it in the sphere of the cell on this side.
bool BareDelaunay::holds(Cell const& cell, std::uint32_t point) const {
  if (const unsigned endless = endlessCorner(cell); endless < 4) {
    const int beyond = side(cell, endless, point);
    return beyond != 0 ? beyond > 0 : holds(cells_[cell.n[endless]], point);
  }
  auto const& [a, b, c, d] = cell.v;
  const int where = LadoDeEsfera(points_[a], points_[b], points_[c], points_[d], points_[point]);
  return where != 0 ? where < 0 : holdsOnSphere(cell, point);
}

/// Lift every point to the paraboloid over space: the sphere is then the hyperplane through the four. The point that
/// stands lowest compared with where it belongs, the last of the five, decides: if it is the new one, that is below the
/// plane; if it is a vertex, the plane sinks with it on its own side and rises on the other.
bool BareDelaunay::holdsOnSphere(Cell const& cell, std::uint32_t point) const {
  std::array<unsigned, 4> corners{0, 1, 2, 3};
  std::sort(corners.begin(), corners.end(), [&cell](unsigned i, unsigned j) { return cell.v[i] > cell.v[j]; });
  for (const unsigned corner : corners) {
    if (point > cell.v[corner]) return true;
    if (const int where = side(cell, corner, point); where != 0) return where < 0;
  }
  return true;
}

/// A cell that the point condemns: the one that it lies in.
std::uint32_t BareDelaunay::locate(std::uint32_t point) const {
  std::uint32_t at = last_;
  if (const unsigned endless = endlessCorner(cells_[at]); endless < 4) at = cells_[at].n[endless];
  for (unsigned from = 0;; from = (from + 1) % 4) {  // not always the same face first: that way it cannot go in circles
    Cell const& cell = cells_[at];
    if (endlessCorner(cell) < 4) return at;
    unsigned i = 0;
    while (i < 4 && side(cell, (from + i) % 4, point) >= 0) ++i;
    if (i == 4) return at;
    at = cell.n[(from + i) % 4];
  }
}

void BareDelaunay::findCavity(std::uint32_t start, std::uint32_t point) {
  const std::uint32_t kept = 2 * insertion_, condemned = kept + 1;
  cavity_.assign(1, start);
  border_.clear();
  stamps_[start] = condemned;
  for (std::size_t i = 0; i < cavity_.size(); ++i) {
    const std::uint32_t inside = cavity_[i];
    for (unsigned corner = 0; corner < 4; ++corner) {
      const std::uint32_t outside = cells_[inside].n[corner];
      if (stamps_[outside] < kept) {
        const bool goes = holds(cells_[outside], point);
        stamps_[outside] = goes ? condemned : kept;
        if (goes) cavity_.push_back(outside);
      }
      if (stamps_[outside] == kept) border_.push_back({outside, inside, corner});
    }
  }
}

/// A cell from the point to every face of the cavity's border. Two of them share the face over each edge of it.
void BareDelaunay::fillCavity(std::uint32_t point) {
  edges_.clear();
  for (Border const& b : border_) {
    Cell cell = cells_[b.inside];
    cell.v[b.corner] = point;
    cell.n[b.corner] = b.outside;
    const std::uint32_t made = newCell(cell);
    std::array<std::uint32_t, 4>& back = cells_[b.outside].n;
    *std::find(back.begin(), back.end(), b.inside) = made;
    for (unsigned i = 0; i < 4; ++i) {
      if (i == b.corner) continue;
      std::array<std::uint32_t, 2> edge{};
      for (unsigned k = 0, e = 0; k < 4; ++k) {
        if (k != i && k != b.corner) edge[e++] = cell.v[k];
      }
      const auto [low, high] = std::minmax(edge[0], edge[1]);
      edges_.emplace_back(std::uint64_t{low} << 32 | high, made * 4 + i);
    }
    last_ = made;
  }
  std::sort(edges_.begin(), edges_.end());
  for (std::size_t i = 0; i + 1 < edges_.size(); i += 2) {
    const std::uint32_t a = edges_[i].second, b = edges_[i + 1].second;
    cells_[a / 4].n[a % 4] = b / 4;
    cells_[b / 4].n[b % 4] = a / 4;
  }
  for (const std::uint32_t gone : cavity_) {
    cells_[gone].v = {};
    free_.push_back(gone);
  }
}

void BareDelaunay::insert(std::uint32_t point) {
  ++insertion_;
  findCavity(locate(point), point);
  fillCavity(point);
}

}  // namespace Meseta47::host
