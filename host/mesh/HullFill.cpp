#include "host/mesh/HullFill.h"

#include <algorithm>

#include "host/mesh/BareDelaunay.h"
#include "host/mesh/FanOrder.h"
#include "host/mesh/SpaceGeometry.h"

namespace Meseta47::host {

void HullFill::addFramed(std::array<std::int32_t, 4> const& t) {
  constexpr std::size_t kEnough = 1 << 22;  // points come once for each of their tetrahedra
  Face face{};
  std::size_t real = 0;
  for (const std::int32_t n : t) {
    if (n < 0) continue;
    if (real < 3) face[real] = n;
    ++real;
    numbers_.push_back(n);
  }
  if (real == 3) {
    std::sort(face.begin(), face.end());
    walls_.push_back(face);
  }
  if (numbers_.size() > kEnough && numbers_.size() == numbers_.capacity()) sortNumbers();
}

void HullFill::addKept(std::array<std::int32_t, 4> const& t) {
  numbers_.insert(numbers_.end(), t.begin(), t.end());
  walls_.insert(walls_.end(), {{t[0], t[1], t[2]}, {t[0], t[1], t[3]}, {t[0], t[2], t[3]}, {t[1], t[2], t[3]}});
}

void HullFill::sortNumbers() {
  std::sort(numbers_.begin(), numbers_.end());
  numbers_.erase(std::unique(numbers_.begin(), numbers_.end()), numbers_.end());
}

/// A face between two tetrahedra of the frame bounds nothing that was kept.
void HullFill::dropInnerWalls() {
  std::sort(walls_.begin(), walls_.end());
  auto to = walls_.begin();
  for (auto at = walls_.begin(); at != walls_.end();) {
    const auto next = std::find_if(at, walls_.end(), [&](Face const& f) { return f != *at; });
    if (next - at == 1) *to++ = *at;
    at = next;
  }
  walls_.erase(to, walls_.end());
}

bool HullFill::meetsWall(Face face) {
  std::sort(face.begin(), face.end());
  const auto wall = std::lower_bound(walls_.begin(), walls_.end(), face);
  if (wall == walls_.end() || *wall != face) return false;
  met_[static_cast<std::size_t>(wall - walls_.begin())] = true;
  return true;
}

std::vector<std::array<std::int32_t, 3>> HullFill::unmetWalls() const {
  std::vector<Face> unmet;
  for (std::size_t i = 0; i < walls_.size(); ++i) {
    if (!met_[i]) unmet.push_back(walls_[i]);
  }
  return unmet;
}

void HullFill::orderByWalls(std::vector<CCoor3D<int>> const& points) {
  std::vector<std::array<std::uint32_t, 3>> walls(walls_.size());
  const auto placeOf = [this](std::int32_t n) {
    return static_cast<std::uint32_t>(std::lower_bound(numbers_.begin(), numbers_.end(), n) - numbers_.begin());
  };
  for (std::size_t i = 0; i < walls.size(); ++i) {
    std::transform(walls_[i].begin(), walls_[i].end(), walls[i].begin(), placeOf);
  }
  std::vector<std::int32_t> turns;
  turns.reserve(numbers_.size());
  for (const std::uint32_t place : fanOrder(points, walls)) turns.push_back(numbers_[place]);
  numbers_ = std::move(turns);
}

//      hull  ___________        From each endless cell inward, through every face that is no wall: what is met lies
//           \  missing /        between the hull and the mesh.
//     walls  \__/\____/
//             kept
void HullFill::fill(std::vector<CCoor3D<int>> points) {
  met_.assign(walls_.size(), false);
  tetrahedra_.clear();
  hull_.clear();
  hullVolume_ = filledVolume_ = Entero128(0);
  const BareDelaunay mesh(std::move(points));
  auto const& at = mesh.points();
  auto const& cells = mesh.cells();
  const auto volume = [&](BareDelaunay::Cell const& c) {
    return sixVolumes(at[c.v[0]], at[c.v[1]], at[c.v[2]], at[c.v[3]]);
  };
  const auto faceOf = [&](BareDelaunay::Cell const& c, unsigned corner) {
    Face face{};
    for (unsigned i = 0, f = 0; i < 4; ++i) {
      if (i != corner) face[f++] = numbers_[c.v[i]];
    }
    // Seen from the corner of a right-handed cell, the others in order run clockwise or not by its place.
    if (corner % 2 == 0) std::swap(face[0], face[1]);
    return face;
  };
  std::vector<bool> met(cells.size());
  std::vector<std::uint32_t> ahead;
  const auto enter = [&](BareDelaunay::Cell const& from, unsigned corner) {
    const std::uint32_t to = from.n[corner];
    if (meetsWall(faceOf(from, corner)) || met[to] || BareDelaunay::endlessCorner(cells[to]) < 4) return;
    met[to] = true;
    ahead.push_back(to);
  };
  for (BareDelaunay::Cell const& cell : cells) {
    if (!mesh.isUsed(cell)) continue;
    if (const unsigned endless = BareDelaunay::endlessCorner(cell); endless < 4) {
      hull_.push_back(faceOf(cell, endless));
      enter(cell, endless);
    } else {
      hullVolume_ = hullVolume_ + volume(cell);
    }
  }
  while (!ahead.empty()) {
    BareDelaunay::Cell const& cell = cells[ahead.back()];
    ahead.pop_back();
    tetrahedra_.push_back({numbers_[cell.v[0]], numbers_[cell.v[1]], numbers_[cell.v[2]], numbers_[cell.v[3]]});
    filledVolume_ = filledVolume_ + volume(cell);
    for (unsigned corner = 0; corner < 4; ++corner) enter(cell, corner);
  }
}

}  // namespace Meseta47::host
