#include "host/mesh/ModelCheck.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>
#include <span>
#include <utility>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/mesh/CheckProgress.h"
#include "model/geometry/CirculoExacto.h"

namespace Meseta47::host {

namespace {

struct KindWords {
  char const *name, *one, *many;
};

constexpr KindWords kWords[] = {
    {"repeated_corner", "triangle has a vertex twice", "triangles have a vertex twice"},
    {"clockwise", "triangle runs the wrong way round", "triangles run the wrong way round"},
    {"flat", "triangle has no area in plan", "triangles have no area in plan"},
    {"doubled_triangle", "triangle has the vertices of another", "triangles have the vertices of another"},
    {"doubled_vertex", "vertex lies at the place of another", "vertices lie at the place of another"},
    {"unused_vertex", "vertex belongs to no triangle", "vertices belong to no triangle"},
    {"crowded_side", "side belongs to more than two triangles", "sides belong to more than two triangles"},
    {"same_way_side", "side is run the same way by both its triangles", "sides are run the same way by both triangles"},
    {"not_delaunay", "side is not Delaunay", "sides are not Delaunay"},
    {"overlapping_fan", "vertex has triangles one over the other", "vertices have triangles one over the other"},
    {"no_sheet", "piece is no sheet with holes, by Euler's count", "pieces are no sheets with holes, by Euler's count"},
    {"dent", "corner of the rim lies inside the convex hull, which a whole surface fills",
     "corners of the rim lie inside the convex hull, which a whole surface fills"},
    {"hole", "hole in a surface that should be whole", "holes in a surface that should be whole"},
    {"separate_piece", "piece lies apart from the first", "pieces lie apart from the first"},
    {"outline_not_closed", "ring of the outline is no ring", "rings of the outline are no rings"},
    {"outline_aside", "side of the outline does not bound the surface",
     "sides of the outline do not bound the surface"},
    {"outline_missing", "bounding side is not in the outline", "bounding sides are not in the outline"},
    {"wrong_hole", "ring is a hole or not, but the outline says the reverse",
     "rings are holes or not, but the outline says the reverse"},
};

/// A side of a triangle in the direction in which the triangle runs: 3 * triangle + place of its first vertex.
using HalfSide = std::uint32_t;
constexpr HalfSide kNone = std::numeric_limits<HalfSide>::max();

HalfSide after(HalfSide h) { return h % 3 == 2 ? h - 2 : h + 1; }
HalfSide before(HalfSide h) { return h % 3 == 0 ? h + 2 : h - 1; }

/// A side as both its triangles know it.
std::uint64_t keyOf(std::uint32_t a, std::uint32_t b) { return std::uint64_t{std::min(a, b)} << 32 | std::max(a, b); }

struct Vector {
  std::int64_t x, y;
};

double cross(Vector a, Vector b) { return ProductoVectorial(a.x, a.y, b.x, b.y); }

/// Whether `v` lies less than a half turn to the left of `from`; the direction of `from` itself does.
bool isLeft(Vector from, Vector v) {
  const double turn = cross(from, v);
  if (turn != 0) return turn > 0;
  return from.x != 0 ? (from.x > 0) == (v.x > 0) : (from.y > 0) == (v.y > 0);
}

class Check {
 public:
  Check(ExactModel const& model, bool whole, Steps const& steps)
      : model_(model), whole_(whole), progress_(steps, std::size(kParts)) {
    if (model.triangles.size() > kNone / 3) throw Failure("the model has too many triangles to number their sides");
    report_.vertices = model.vertices.size();
    report_.triangles = model.triangles.size();
  }

  ModelReport run() {
    for (auto const part : kParts) {
      progress_.part();
      (this->*part)();
    }
    std::sort(report_.faults.begin(), report_.faults.end(), [](auto& a, auto& b) { return a.kind < b.kind; });
    return std::move(report_);
  }

 private:
  // --- triangles and vertices, each for itself

  void checkTriangles() {
    upright_.resize(model_.triangles.size());
    std::vector<bool> used(model_.vertices.size());
    for (std::uint32_t t = 0; t < upright_.size(); ++t) {
      auto const& [a, b, c] = model_.triangles[t];
      used[a] = used[b] = used[c] = true;
      const double area = a == b || b == c || c == a ? 0 : cross(between(a, b), between(a, c));
      upright_[t] = area > 0;
      if (area > 0) continue;
      const bool repeats = a == b || b == c || c == a;
      note(repeats    ? ModelFaultKind::repeatedCorner
           : area < 0 ? ModelFaultKind::clockwise
                      : ModelFaultKind::flat,
           [&] { return nameTriangle(t); });
    }
    for (std::uint32_t v = 0; v < used.size(); ++v) {
      if (used[v]) continue;
      ++report_.unused;
      if (model_.usesAllVertices || whole_) note(ModelFaultKind::unusedVertex, [&] { return nameVertex(v); });
    }
    used_ = std::move(used);
  }

  void findDoubledTriangles() {
    std::vector<std::pair<Surface::Triangle, std::uint32_t>> sorted;
    sorted.reserve(model_.triangles.size());
    for (std::uint32_t t = 0; t < model_.triangles.size(); ++t) {
      sorted.emplace_back(model_.triangles[t], t);
      std::sort(sorted.back().first.begin(), sorted.back().first.end());
    }
    progress_.sort(sorted.begin(), sorted.end());
    for (std::size_t i = 1; i < sorted.size(); ++i) {
      if (sorted[i].first != sorted[i - 1].first) continue;
      note(ModelFaultKind::doubledTriangle,
           [&] { return fmt::format("{}, like triangle {}", nameTriangle(sorted[i].second), sorted[i - 1].second); });
    }
  }

  /// Points that a native model keeps besides its surface may lie anywhere.
  void findDoubledVertices() {
    std::vector<std::uint32_t> sorted;
    for (std::uint32_t v = 0; v < used_.size(); ++v) {
      if (used_[v] || model_.usesAllVertices) sorted.push_back(v);
    }
    auto const& at = model_.vertices;
    const auto position = [&at](std::uint32_t v) { return std::pair(at[v].x, at[v].y); };
    progress_.sort(sorted.begin(), sorted.end(),
                   [&](auto a, auto b) { return std::pair(position(a), a) < std::pair(position(b), b); });
    for (std::size_t i = 1; i < sorted.size(); ++i) {
      if (position(sorted[i]) != position(sorted[i - 1])) continue;
      note(ModelFaultKind::doubledVertex,
           [&] { return fmt::format("{}, like vertex {}", nameVertex(sorted[i]), sorted[i - 1]); });
    }
  }

  // --- sides

  void pairSides() {
    std::vector<std::pair<std::uint64_t, HalfSide>> sides;
    sides.reserve(3 * model_.triangles.size());
    for (HalfSide h = 0; h < 3 * model_.triangles.size(); ++h) {
      if (!repeatsCorner(h / 3)) sides.emplace_back(keyOf(start(h), end(h)), h);
    }
    progress_.sort(sides.begin(), sides.end());
    twins_.assign(3 * model_.triangles.size(), kNone);
    for (std::size_t i = 0, j; i < sides.size(); i = j) {
      for (j = i + 1; j < sides.size() && sides[j].first == sides[i].first;) ++j;
      ++report_.sides;
      pair(std::span(sides).subspan(i, j - i));
    }
  }

  void pair(std::span<std::pair<std::uint64_t, HalfSide> const> same) {
    const HalfSide first = same[0].second;
    if (same.size() == 1) {
      ++report_.boundarySides;
    } else if (same.size() > 2) {
      note(ModelFaultKind::crowdedSide, [&] { return fmt::format("{}, of {}", nameSide(first), same.size()); });
    } else if (start(first) == start(same[1].second)) {
      note(ModelFaultKind::sameWaySide,
           [&] { return fmt::format("{}, of triangles {} and {}", nameSide(first), first / 3, same[1].second / 3); });
    } else {
      twins_[first] = same[1].second;
      twins_[same[1].second] = first;
    }
  }

  void checkCircles() {
    auto const& at = model_.vertices;
    for (HalfSide h = 0; h < twins_.size(); ++h) {
      progress_.tick();
      if (twins_[h] == kNone || twins_[h] < h || !upright_[h / 3] || !upright_[twins_[h] / 3]) continue;
      auto const& [a, b, c] = model_.triangles[h / 3];
      const std::uint32_t across = start(before(twins_[h]));
      if (ExcesoSobreCirculo(at[a], at[b], at[c], at[across]) >= 0) continue;
      note(ModelFaultKind::notDelaunay, [&] {
        return fmt::format("{}: {} lies inside the circle of {}", nameSide(h), nameVertex(across), nameTriangle(h / 3));
      });
    }
  }

  // --- pieces, fans and rings

  /// What hangs together across paired sides.
  struct Piece {
    std::uint32_t triangle = 0;  // the first of it
    std::int64_t fans = 0, sides = 0, triangles = 0, rings = 0;
  };

  void findPieces() {
    pieceOf_.assign(model_.triangles.size(), kNone);
    std::vector<std::uint32_t> ahead;
    for (std::uint32_t first = 0; first < pieceOf_.size(); ++first) {
      if (pieceOf_[first] != kNone || repeatsCorner(first)) continue;
      const auto number = static_cast<std::uint32_t>(pieces_.size());
      Piece& piece = pieces_.emplace_back();
      piece.triangle = first;
      pieceOf_[first] = number;
      for (ahead.push_back(first); !ahead.empty();) {
        const std::uint32_t t = ahead.back();
        ahead.pop_back();
        ++piece.triangles;
        for (HalfSide h = 3 * t; h < 3 * t + 3; ++h) {
          if (twins_[h] == kNone || twins_[h] > h) ++piece.sides;
          if (twins_[h] == kNone || pieceOf_[twins_[h] / 3] != kNone) continue;
          pieceOf_[twins_[h] / 3] = number;
          ahead.push_back(twins_[h] / 3);
        }
      }
    }
    report_.pieces = pieces_.size();
  }

  //       d   c              The fan of v, counter-clockwise: v-b, v-c, v-d. A fan that is open begins at the side that
  //        \ /               no triangle has on its right.
  //     ----v---- b
  //
  void walkFans() {
    std::vector<bool> walked(twins_.size());
    for (HalfSide h = 0; h < twins_.size(); ++h) {
      progress_.tick();
      if (walked[h] || repeatsCorner(h / 3)) continue;
      HalfSide first = h;
      while (twins_[first] != kNone && after(twins_[first]) != h) first = after(twins_[first]);
      walkFan(first, walked);
    }
  }

  void walkFan(HalfSide first, std::vector<bool>& walked) {
    ++pieces_[pieceOf_[first / 3]].fans;
    const Vector origin = along(first);
    bool sound = true, wasLeft = true;
    int passes = 0;  // over the first side
    HalfSide h = first;
    do {
      walked[h] = true;
      sound = sound && upright_[h / 3];
      const bool left = isLeft(origin, between(start(h), start(before(h))));
      passes += left && !wasLeft;
      wasLeft = left;
      h = twins_[before(h)];
    } while (h != kNone && h != first);
    if (sound && passes > (h == first ? 1 : 0)) {
      note(ModelFaultKind::overlappingFan, [&] { return nameVertex(start(first)); });
    }
  }

  /// Turning about the end of a bounding side from triangle to triangle never leaves the surface that it bounds, even
  /// where another ring touches it there.
  void traceRings() {
    std::vector<bool> traced(twins_.size());
    std::vector<std::uint32_t> turnedOut;
    for (HalfSide first = 0; first < twins_.size(); ++first) {
      if (twins_[first] != kNone || traced[first] || repeatsCorner(first / 3)) continue;
      Piece& piece = pieces_[pieceOf_[first / 3]];
      ++report_.rings;
      if (++piece.rings > 1 && whole_) {
        note(ModelFaultKind::hole, [&] { return fmt::format("at {}", nameSide(first)); });
      }
      for (HalfSide h = first; !traced[h];) {
        traced[h] = true;
        const HalfSide last = h;
        for (h = after(h); twins_[h] != kNone;) h = after(twins_[h]);
        if (cross(along(last), along(h)) < 0) turnedOut.push_back(start(h));
      }
    }
    if (!whole_ || report_.rings != 1) return;  // a hole turns outwards too, and is told as such
    for (const std::uint32_t v : turnedOut) note(ModelFaultKind::dent, [&] { return nameVertex(v); });
  }

  void judgePieces() {
    for (Piece const& p : pieces_) {
      if (p.fans - p.sides + p.triangles != 2 - p.rings) {
        note(ModelFaultKind::noSheet, [&] {
          return fmt::format("that of {}, with {} vertices, {} sides, {} triangles and {} rings",
                             nameTriangle(p.triangle), p.fans, p.sides, p.triangles, p.rings);
        });
      }
      if (whole_ && &p != &pieces_.front()) {
        note(ModelFaultKind::separatePiece, [&] { return fmt::format("that of {}", nameTriangle(p.triangle)); });
      }
    }
  }

  // --- the outline that stands in the file

  void checkOutline() {
    if (!model_.hasOutline) return;
    std::vector<std::pair<std::uint64_t, HalfSide>> missing;
    for (HalfSide h = 0; h < twins_.size(); ++h) {
      if (twins_[h] == kNone && !repeatsCorner(h / 3)) missing.emplace_back(keyOf(start(h), end(h)), h);
    }
    std::sort(missing.begin(), missing.end());
    std::vector<bool> met(missing.size());
    for (std::size_t r = 0; r < model_.outline.size(); ++r) checkRing(r, missing, met);
    for (std::size_t i = 0; i < missing.size(); ++i) {
      if (!met[i]) note(ModelFaultKind::outlineMissing, [&] { return nameSide(missing[i].second); });
    }
  }

  void checkRing(std::size_t number, std::vector<std::pair<std::uint64_t, HalfSide>> const& bounding,
                 std::vector<bool>& met) {
    auto const& [ring, hole] = model_.outline[number];
    const std::size_t n = ring.size();
    std::vector<std::uint32_t> sorted = ring;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (n < 3 || twice != sorted.end()) {
      note(ModelFaultKind::outlineNotClosed, [&] {
        return fmt::format("ring {}, {}", number,
                           n < 3 ? fmt::format("of {} points", n) : "twice at " + nameVertex(*twice));
      });
      return;
    }
    std::size_t withSurface = 0;  // sides that run the way of their triangle, and have the surface on their left
    for (std::size_t i = 0; i < n; ++i) {
      const std::uint32_t a = ring[i], b = ring[(i + 1) % n];
      const auto found = std::lower_bound(bounding.begin(), bounding.end(), std::pair(keyOf(a, b), HalfSide{0}));
      const auto place = static_cast<std::size_t>(found - bounding.begin());
      if (found == bounding.end() || found->first != keyOf(a, b) || met[place]) {
        note(ModelFaultKind::outlineAside,
             [&] { return fmt::format("{} to {}, of ring {}", nameVertex(a), nameVertex(b), number); });
        continue;
      }
      met[place] = true;
      withSurface += start(found->second) == a;
    }
    if ((withSurface == n || withSurface == 0) && hole == ((withSurface == n) == runsLeft(ring))) {
      note(ModelFaultKind::wrongHole, [&] { return fmt::format("ring {}, of {} points", number, n); });
    }
  }

  /// Whether a simple ring runs counter-clockwise: by the turn at its least point, where it cannot but turn its own
  /// way.
  [[nodiscard]] bool runsLeft(std::vector<std::uint32_t> const& ring) const {
    auto const& at = model_.vertices;
    const auto least = std::min_element(ring.begin(), ring.end(), [&at](std::uint32_t a, std::uint32_t b) {
      return std::pair(at[a].x, at[a].y) < std::pair(at[b].x, at[b].y);
    });
    const std::size_t n = ring.size(), i = static_cast<std::size_t>(least - ring.begin());
    return cross(between(ring[(i + n - 1) % n], *least), between(*least, ring[(i + 1) % n])) > 0;
  }

  // --- small things

  [[nodiscard]] std::uint32_t start(HalfSide h) const { return model_.triangles[h / 3][h % 3]; }
  [[nodiscard]] std::uint32_t end(HalfSide h) const { return start(after(h)); }
  [[nodiscard]] Vector between(std::uint32_t a, std::uint32_t b) const {
    auto const &p = model_.vertices[a], &q = model_.vertices[b];
    return {std::int64_t{q.x} - p.x, std::int64_t{q.y} - p.y};
  }
  [[nodiscard]] Vector along(HalfSide h) const { return between(start(h), end(h)); }
  [[nodiscard]] bool repeatsCorner(std::uint32_t t) const {
    auto const& [a, b, c] = model_.triangles[t];
    return a == b || b == c || c == a;
  }

  template <class Words>
  void note(ModelFaultKind kind, Words words) {
    auto& faults = report_.faults;
    auto found = std::find_if(faults.begin(), faults.end(), [kind](ModelFault const& f) { return f.kind == kind; });
    if (found == faults.end()) found = faults.insert(found, {kind, 0, words()});
    ++found->count;
  }
  [[nodiscard]] std::string nameVertex(std::uint32_t v) const {
    return fmt::format("vertex {} ({})", v, model_.place(v));
  }
  [[nodiscard]] std::string nameSide(HalfSide h) const {
    return fmt::format("{} to {}", nameVertex(start(h)), nameVertex(end(h)));
  }
  [[nodiscard]] std::string nameTriangle(std::uint32_t t) const {
    auto const& [a, b, c] = model_.triangles[t];
    return fmt::format("triangle {} ({}, {}, {})", t, model_.place(a), model_.place(b), model_.place(c));
  }

  static constexpr void (Check::*kParts[])() = {
      &Check::checkTriangles, &Check::findDoubledTriangles, &Check::findDoubledVertices,
      &Check::pairSides,      &Check::checkCircles,         &Check::findPieces,
      &Check::walkFans,       &Check::traceRings,           &Check::judgePieces,
      &Check::checkOutline};

  ExactModel const& model_;
  const bool whole_;
  CheckProgress progress_;
  ModelReport report_;
  std::vector<bool> upright_;    // of each triangle: runs counter-clockwise, with an area
  std::vector<bool> used_;       // of each vertex
  std::vector<HalfSide> twins_;  // of each half side; kNone where there is no pair
  std::vector<std::uint32_t> pieceOf_;
  std::vector<Piece> pieces_;
};

}  // namespace

char const* ModelFault::name() const { return kWords[static_cast<std::size_t>(kind)].name; }

std::string ModelFault::text() const {
  KindWords const& words = kWords[static_cast<std::size_t>(kind)];
  return fmt::format("{} {}: {}{}", withThousands(count), count == 1 ? words.one : words.many,
                     count == 1 ? "" : "the first is ", first);
}

ModelReport checkModel(ExactModel const& model, bool whole, Steps const& steps) {
  return Check(model, whole, steps).run();
}

}  // namespace Meseta47::host
