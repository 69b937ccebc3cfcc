#include "host/mesh/SpaceSurface.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Meseta47::host {

namespace {

using Face = SpaceSurface::Face;

/// A side of a face, its lower vertex first.
struct Side {
  std::uint32_t low, high, face, at;  // runs from corner `at` of the face to the next

  [[nodiscard]] bool meets(Side const& o) const { return low == o.low && high == o.high; }
};

std::vector<Side> sidesOf(std::vector<Face> const& faces) {
  std::vector<Side> sides;
  sides.reserve(3 * faces.size());
  for (std::uint32_t f = 0; f < faces.size(); ++f) {
    for (std::uint32_t i = 0; i < 3; ++i) {
      const auto [low, high] = std::minmax(faces[f][i], faces[f][(i + 1) % 3]);
      sides.push_back({low, high, f, i});
    }
  }
  std::sort(sides.begin(), sides.end(), [](Side const& a, Side const& b) {
    return a.low != b.low ? a.low < b.low : (a.high != b.high ? a.high < b.high : a.face < b.face);
  });
  return sides;
}

/// Calls `f(first, last)` for the faces of every side.
template <class F>
void forEachSide(std::vector<Side> const& sides, F const& f) {
  for (std::size_t i = 0, j; i < sides.size(); i = j) {
    for (j = i + 1; j < sides.size() && sides[j].meets(sides[i]);) ++j;
    f(sides.begin() + static_cast<std::ptrdiff_t>(i), sides.begin() + static_cast<std::ptrdiff_t>(j));
  }
}

/// Sets of things that hang together.
class Pieces {
 public:
  explicit Pieces(std::size_t count) : above_(count) { std::iota(above_.begin(), above_.end(), 0U); }
  std::uint32_t of(std::uint32_t i) {
    while (above_[i] != i) i = above_[i] = above_[above_[i]];
    return i;
  }
  void join(std::uint32_t a, std::uint32_t b) { above_[of(a)] = of(b); }

 private:
  std::vector<std::uint32_t> above_;
};

struct Vector {
  double x, y, z;
};
Vector between(CCoor3D<int> const& a, CCoor3D<int> const& b) {
  return {double{1} * b.x - a.x, double{1} * b.y - a.y, double{1} * b.z - a.z};
}
/// Twice the area of a face, along its normal.
Vector normalOf(SpaceSurface const& s, Face const& f) {
  const Vector u = between(s.vertices[f[0]], s.vertices[f[1]]), v = between(s.vertices[f[0]], s.vertices[f[2]]);
  return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}

/// Turns faces until those that meet at a side of two run alike, piece by piece from the first face of each.
class Turning {
 public:
  explicit Turning(SpaceSurface& surface)
      : surface_(surface), across_(surface.faces.size(), {kNone, kNone, kNone}), seen_(surface.faces.size()) {
    forEachSide(sidesOf(surface.faces), [this](auto first, auto last) {
      if (last - first != 2) return;
      across_[first->face][first->at] = first[1].face;
      across_[first[1].face][first[1].at] = first->face;
    });
  }
  void run() {
    for (std::uint32_t f = 0; f < seen_.size(); ++f) {
      if (!seen_[f]) turnPiece(f);
    }
  }

 private:
  static constexpr std::uint32_t kNone = ~0U;

  void flip(std::uint32_t f) {
    std::swap(surface_.faces[f][1], surface_.faces[f][2]);
    std::swap(across_[f][0], across_[f][2]);
  }
  [[nodiscard]] bool runsAlike(std::uint32_t f, std::uint32_t i, std::uint32_t other) const {
    const std::uint32_t a = surface_.faces[f][i], b = surface_.faces[f][(i + 1) % 3];
    Face const& o = surface_.faces[other];
    for (std::uint32_t k = 0; k < 3; ++k) {
      if (o[k] == b && o[(k + 1) % 3] == a) return true;
    }
    return false;
  }
  void turnPiece(std::uint32_t first) {
    std::vector<std::uint32_t> piece{first};
    seen_[first] = true;
    bool closed = true;
    for (std::size_t n = 0; n < piece.size(); ++n) {
      for (std::uint32_t i = 0; i < 3; ++i) {
        const std::uint32_t other = across_[piece[n]][i];
        closed = closed && other != kNone;
        if (other == kNone || seen_[other]) continue;
        if (!runsAlike(piece[n], i, other)) flip(other);
        seen_[other] = true;
        piece.push_back(other);
      }
    }
    double outward = 0;
    CCoor3D<int> const& base = surface_.vertices[surface_.faces[first][0]];
    for (const std::uint32_t f : piece) {
      const Vector n = normalOf(surface_, surface_.faces[f]),
                   p = between(base, surface_.vertices[surface_.faces[f][0]]);
      outward += closed ? n.x * p.x + n.y * p.y + n.z * p.z : n.z;
    }
    if (outward >= 0) return;
    for (const std::uint32_t f : piece) flip(f);
  }

  SpaceSurface& surface_;
  std::vector<std::array<std::uint32_t, 3>> across_;
  std::vector<bool> seen_;
};

}  // namespace

SpaceSurface surfaceInSpace(CTIN const& tin) {
  SpaceSurface surface;
  surface.seed = tin.semilla;
  std::vector<std::uint32_t> placeOf(tin.puntos.size(), 0);
  const auto count = static_cast<std::uint32_t>(tin.Cantidad());
  for (std::uint32_t i = 0; i < count; ++i) {
    for (const std::uint32_t v : tin.Vertices(i)) placeOf[v] = 1;
  }
  bool coloured = false;
  for (std::uint32_t i = 0; i < placeOf.size(); ++i) {
    if (placeOf[i] == 0) continue;
    CPuntoTIN const& p = *tin.Punto(i);
    placeOf[i] = static_cast<std::uint32_t>(surface.vertices.size());
    surface.vertices.emplace_back(p);
    surface.colours.push_back({p.aero.rojo, p.aero.verde, p.aero.azul});
    coloured = coloured || (p.aero.rojo | p.aero.verde | p.aero.azul) != 0;
  }
  if (!coloured) surface.colours.clear();
  for (std::uint32_t i = 0; i < count; ++i) {
    auto const& t = tin.Vertices(i);
    surface.faces.push_back({placeOf[t[0]], placeOf[t[1]], placeOf[t[2]]});
  }
  Turning(surface).run();
  return surface;
}

SurfaceCounts countsOf(SpaceSurface const& surface) {
  SurfaceCounts counts;
  counts.faces = surface.faces.size();
  counts.vertices = surface.vertices.size();
  Pieces pieces(surface.faces.size()), rims(surface.vertices.size());
  std::vector<bool> onRim(surface.vertices.size());
  forEachSide(sidesOf(surface.faces), [&](auto first, auto last) {
    for (auto side = first + 1; side < last; ++side) pieces.join(first->face, side->face);
    if (last - first > 2) ++counts.branchSides;
    if (last - first != 1) return;
    ++counts.borderSides;
    onRim[first->low] = onRim[first->high] = true;
    rims.join(first->low, first->high);
  });
  for (std::uint32_t f = 0; f < surface.faces.size(); ++f) counts.components += pieces.of(f) == f ? 1U : 0U;
  for (std::uint32_t v = 0; v < surface.vertices.size(); ++v) counts.borders += onRim[v] && rims.of(v) == v ? 1U : 0U;
  const double units = surface.seed.Precision();
  for (Face const& f : surface.faces) {
    const Vector n = normalOf(surface, f);
    counts.area += std::hypot(n.x, n.y, n.z) / 2 / (units * units);
  }
  return counts;
}

}  // namespace Meseta47::host
