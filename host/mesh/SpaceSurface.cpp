#include "host/mesh/SpaceSurface.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/mesh/Pieces.h"

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

/// Vertices that faces use come together in their order, and the faces are turned. `pointAt` gives the point at a place
/// that `faces` name.
template <class PointAt>
SpaceSurface surfaceOf(CDataSemilla const& seed, std::size_t places, std::vector<Face> faces, PointAt const& pointAt) {
  SpaceSurface surface;
  surface.seed = seed;
  std::vector<std::uint32_t> placeOf(places, 0);
  for (Face const& f : faces) {
    for (const std::uint32_t v : f) placeOf[v] = 1;
  }
  bool coloured = false;
  for (std::uint32_t i = 0; i < places; ++i) {
    if (placeOf[i] == 0) continue;
    CPuntoTIN const& p = pointAt(i);
    placeOf[i] = static_cast<std::uint32_t>(surface.vertices.size());
    surface.vertices.emplace_back(p);
    surface.colours.push_back({p.aero.rojo, p.aero.verde, p.aero.azul});
    coloured = coloured || (p.aero.rojo | p.aero.verde | p.aero.azul) != 0;
  }
  if (!coloured) surface.colours.clear();
  for (Face& f : faces) {
    for (std::uint32_t& v : f) v = placeOf[v];
    std::sort(f.begin(), f.end());
  }
  std::sort(faces.begin(), faces.end());
  surface.faces = std::move(faces);
  Turning(surface).run();
  return surface;
}

/// Which sides of a tetrahedron are long, in the order 12, 13, 14, 23, 24, 34 of its four numbers.
std::array<bool, 6> longSides(CTriangulacion3D& mesh, CTriangulacion3D::CCuatro const& t, double limit2) {
  std::array<bool, 6> isLong{};
  for (unsigned i = 0, side = 0; i < 4; ++i) {
    for (unsigned j = i + 1; j < 4; ++j, ++side) {
      isLong[side] = t[i] < 0 || t[j] < 0;
      if (isLong[side]) continue;
      const Vector d =
          between(*mesh.Punto(static_cast<unsigned>(t[i] - 1)), *mesh.Punto(static_cast<unsigned>(t[j] - 1)));
      isLong[side] = d.x * d.x + d.y * d.y + d.z * d.z > limit2;
    }
  }
  return isLong;
}

}  // namespace

SpaceSurface surfaceInSpace(CTIN const& tin) {
  std::vector<Face> faces(tin.Cantidad());
  for (std::uint32_t i = 0; i < faces.size(); ++i) faces[i] = tin.Vertices(i);
  return surfaceOf(tin.semilla, tin.puntos.size(), std::move(faces),
                   [&tin](std::uint32_t i) -> CPuntoTIN const& { return *tin.Punto(i); });
}

SpaceSurface surfaceInSpace(CTriangulacion3D& mesh, double maxSide, Steps const& step) {
  constexpr unsigned kCorner[4][3] = {{0, 1, 2}, {0, 1, 3}, {0, 2, 3}, {1, 2, 3}};
  constexpr unsigned kSide[4][3] = {{0, 1, 3}, {0, 2, 4}, {1, 2, 5}, {3, 4, 5}};
  constexpr std::uint64_t kPerStep = 1 << 16;
  const double limit = maxSide * mesh.Precision();
  std::vector<Face> faces;
  std::uint64_t seen = 0;
  mesh.RecorreMalla([&](CTriangulacion3D::CCuatro const& t) {
    if (seen++ % kPerStep == 0) step(seen, mesh.CantidadTetraedros());
    if (std::count_if(t.begin(), t.end(), [](std::int32_t n) { return n < 0; }) > 1) return;
    const std::array<bool, 6> isLong = longSides(mesh, t, limit * limit);
    if (std::none_of(isLong.begin(), isLong.end(), [](bool l) { return l; })) return;
    for (unsigned f = 0; f < 4; ++f) {
      if (isLong[kSide[f][0]] || isLong[kSide[f][1]] || isLong[kSide[f][2]]) continue;
      const auto vertex = [&](unsigned i) { return static_cast<std::uint32_t>(t[kCorner[f][i]] - 1); };
      faces.push_back({vertex(0), vertex(1), vertex(2)});
    }
  });
  std::sort(faces.begin(), faces.end());
  faces.erase(std::unique(faces.begin(), faces.end()), faces.end());
  return surfaceOf(mesh.Semilla(), mesh.CantidadPuntos(), std::move(faces),
                   [&mesh](std::uint32_t i) -> CPuntoTIN const& { return *mesh.Punto(i); });
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
