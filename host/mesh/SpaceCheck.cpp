#include "host/mesh/SpaceCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <numeric>

#include "host/FileError.h"
#include "host/mesh/CheckProgress.h"
#include "host/mesh/ExactHull.h"
#include "host/mesh/SpaceGeometry.h"
#include "model/geometry/CEsfera.h"

namespace Meseta47::host {

namespace {

struct KindWords {
  char const *name, *one, *many;
};

constexpr KindWords kWords[] = {
    {"repeated_corner", "tetrahedron has a vertex twice", "tetrahedra have a vertex twice"},
    {"inverted", "tetrahedron runs the wrong way round", "tetrahedra run the wrong way round"},
    {"flat", "tetrahedron has no volume", "tetrahedra have no volume"},
    {"doubled_tetrahedron", "tetrahedron has the vertices of another", "tetrahedra have the vertices of another"},
    {"doubled_vertex", "vertex lies at the place of another", "vertices lie at the place of another"},
    {"unused_vertex", "vertex belongs to no tetrahedron", "vertices belong to no tetrahedron"},
    {"crowded_face", "face belongs to more than two tetrahedra", "faces belong to more than two tetrahedra"},
    {"same_side_face", "face has both its tetrahedra on one side", "faces have both their tetrahedra on one side"},
    {"not_delaunay", "inner face is not Delaunay", "inner faces are not Delaunay"},
    {"separate_piece", "piece lies apart from the first", "pieces lie apart from the first"},
    {"no_ball", "mesh is no ball, by Euler's count", "meshes are no balls, by Euler's count"},
    {"wrong_volume", "mesh does not fill its convex hull", "meshes do not fill their convex hulls"},
};

/// A face with the tetrahedron that it is of, and the corner across from it: 4 * tetrahedron + corner.
struct Face {
  std::array<std::uint32_t, 3> v;  // ascending
  std::uint32_t of;

  bool operator<(Face const& o) const { return v != o.v ? v < o.v : of < o.of; }
};

class SpaceChecker {
 public:
  SpaceChecker(ExactSpaceMesh const& mesh, bool whole, Steps const& steps)
      : mesh_(mesh), whole_(whole), progress_(steps, std::size(kParts)) {
    report_.vertices = mesh.vertices.size();
    report_.tetrahedra = mesh.tetrahedra.size();
  }

  SpaceReport run() {
    for (auto const part : kParts) {
      progress_.part();
      (this->*part)();
    }
    std::sort(report_.faults.begin(), report_.faults.end(), [](auto& a, auto& b) { return a.kind < b.kind; });
    return std::move(report_);
  }

 private:
  void checkTetrahedra() {
    std::vector<bool> used(mesh_.vertices.size());
    upright_.resize(mesh_.tetrahedra.size());
    for (std::uint32_t i = 0; i < upright_.size(); ++i) {
      Tetrahedron const& t = mesh_.tetrahedra[i];
      for (const std::uint32_t v : t) used[v] = true;
      if (repeatsCorner(i)) {
        note(SpaceFaultKind::repeatedCorner, [&] { return nameTetrahedron(i); });
        continue;
      }
      const Entero128 volume = sixVolumes(at(t[0]), at(t[1]), at(t[2]), at(t[3]));
      upright_[i] = volume.Signo() > 0;
      sixVolumes_ = volume.Signo() < 0 ? sixVolumes_ - volume : sixVolumes_ + volume;
      if (upright_[i]) continue;
      note(volume.Signo() < 0 ? SpaceFaultKind::inverted : SpaceFaultKind::flat, [&] { return nameTetrahedron(i); });
    }
    for (std::uint32_t v = 0; v < used.size(); ++v) {
      if (!used[v]) note(SpaceFaultKind::unusedVertex, [&] { return nameVertex(v); });
    }
  }

  void findDoubledTetrahedra() {
    std::vector<std::pair<Tetrahedron, std::uint32_t>> sorted;
    sorted.reserve(mesh_.tetrahedra.size());
    for (std::uint32_t i = 0; i < mesh_.tetrahedra.size(); ++i) {
      sorted.emplace_back(mesh_.tetrahedra[i], i);
      std::sort(sorted.back().first.begin(), sorted.back().first.end());
    }
    progress_.sort(sorted.begin(), sorted.end());
    for (std::size_t i = 1; i < sorted.size(); ++i) {
      if (sorted[i].first != sorted[i - 1].first) continue;
      note(SpaceFaultKind::doubledTetrahedron, [&] {
        return fmt::format("{}, like tetrahedron {}", nameTetrahedron(sorted[i].second), sorted[i - 1].second);
      });
    }
  }

  void findDoubledVertices() {
    std::vector<std::uint32_t> sorted(mesh_.vertices.size());
    std::iota(sorted.begin(), sorted.end(), 0U);
    const auto position = [this](std::uint32_t v) { return std::array{at(v).x, at(v).y, at(v).z}; };
    progress_.sort(sorted.begin(), sorted.end(),
                   [&](auto a, auto b) { return std::pair(position(a), a) < std::pair(position(b), b); });
    for (std::size_t i = 1; i < sorted.size(); ++i) {
      if (position(sorted[i]) != position(sorted[i - 1])) continue;
      note(SpaceFaultKind::doubledVertex,
           [&] { return fmt::format("{}, like vertex {}", nameVertex(sorted[i]), sorted[i - 1]); });
    }
  }

  // --- faces

  void pairFaces() {
    std::vector<Face> faces;
    faces.reserve(4 * mesh_.tetrahedra.size());
    for (std::uint32_t i = 0; i < mesh_.tetrahedra.size(); ++i) {
      if (repeatsCorner(i)) continue;
      for (std::uint32_t corner = 0; corner < 4; ++corner) {
        Face face{{}, 4 * i + corner};
        for (std::uint32_t k = 0, f = 0; k < 4; ++k) {
          if (k != corner) face.v[f++] = mesh_.tetrahedra[i][k];
        }
        std::sort(face.v.begin(), face.v.end());
        faces.push_back(face);
      }
    }
    progress_.sort(faces.begin(), faces.end());
    pieceOf_.resize(mesh_.tetrahedra.size());
    std::iota(pieceOf_.begin(), pieceOf_.end(), 0U);
    for (std::size_t i = 0, j = 0; i < faces.size(); i = j) {
      progress_.tick();
      for (j = i + 1; j < faces.size() && faces[j].v == faces[i].v;) ++j;
      ++report_.faces;
      if (j - i == 1) ++report_.boundaryFaces;
      if (j - i == 2) judgePair(faces[i], faces[i + 1]);
      if (j - i > 2) {
        note(SpaceFaultKind::crowdedFace, [&] { return fmt::format("{}, of {}", nameFace(faces[i]), j - i); });
      }
    }
  }

  void judgePair(Face const& f, Face const& g) {
    pieceOf_[root(f.of / 4)] = root(g.of / 4);
    auto const& [a, b, c] = f.v;
    const std::uint32_t d = apex(f), e = apex(g);
    const int one = SignoDeVolumen(at(a), at(b), at(c), at(d)), other = SignoDeVolumen(at(a), at(b), at(c), at(e));
    if (one * other > 0) {
      note(SpaceFaultKind::sameSideFace,
           [&] { return fmt::format("{}, of tetrahedra {} and {}", nameFace(f), f.of / 4, g.of / 4); });
    } else if (upright_[f.of / 4] && upright_[g.of / 4] && LadoDeEsfera(at(a), at(b), at(c), at(d), at(e)) < 0) {
      note(SpaceFaultKind::notDelaunay, [&] {
        return fmt::format("{}: {} lies in the sphere of tetrahedron {}", nameFace(f), nameVertex(e), f.of / 4);
      });
    }
  }

  void countEdges() {
    std::vector<std::uint64_t> edges;
    edges.reserve(6 * mesh_.tetrahedra.size());
    for (std::uint32_t i = 0; i < mesh_.tetrahedra.size(); ++i) {
      if (repeatsCorner(i)) continue;
      Tetrahedron t = mesh_.tetrahedra[i];
      std::sort(t.begin(), t.end());
      for (unsigned a = 0; a < 4; ++a) {
        for (unsigned b = a + 1; b < 4; ++b) edges.push_back(std::uint64_t{t[a]} << 32 | t[b]);
      }
    }
    progress_.sort(edges.begin(), edges.end());
    report_.edges = static_cast<std::uint64_t>(std::unique(edges.begin(), edges.end()) - edges.begin());
  }

  std::uint32_t root(std::uint32_t t) {
    while (pieceOf_[t] != t) t = pieceOf_[t] = pieceOf_[pieceOf_[t]];
    return t;
  }

  // --- the whole

  void countPieces() {
    for (std::uint32_t i = 0; i < pieceOf_.size(); ++i) {
      if (root(i) != i || repeatsCorner(i)) continue;
      if (++report_.pieces > 1 && whole_) {
        note(SpaceFaultKind::separatePiece, [&] { return fmt::format("that of {}", nameTetrahedron(i)); });
      }
    }
  }

  void judgeVolume() {
    const Entero128 hull = exactHull(mesh_.vertices).sixVolumes;
    const double units = std::pow(10.0, mesh_.precision);
    report_.volume = sixVolumes_.Valor() / 6 / (units * units * units);
    if (hull.Signo() > 0) report_.hullShare = sixVolumes_.Valor() / hull.Valor();
    const int excess = (sixVolumes_ - hull).Signo();
    // More than the hull holds is too much for any mesh.
    if (excess == 0 || (excess < 0 && !whole_)) return;
    note(SpaceFaultKind::wrongVolume, [&] {
      return fmt::format("the tetrahedra have {:.9g} of its volume, {} than all", report_.hullShare,
                         excess < 0 ? "less" : "more");
    });
  }

  void judgeBall() {
    if (!whole_) return;
    const auto n = [](std::uint64_t count) { return static_cast<std::int64_t>(count); };
    const std::int64_t euler = n(report_.vertices) - n(report_.edges) + n(report_.faces) - n(report_.tetrahedra);
    if (euler == 1) return;
    note(SpaceFaultKind::noBall, [&] {
      return fmt::format("{} vertices - {} edges + {} faces - {} tetrahedra is {}, not 1", report_.vertices,
                         report_.edges, report_.faces, report_.tetrahedra, euler);
    });
  }

  // --- small things

  [[nodiscard]] CCoor3D<int> const& at(std::uint32_t vertex) const { return mesh_.vertices[vertex]; }
  [[nodiscard]] std::uint32_t apex(Face const& f) const { return mesh_.tetrahedra[f.of / 4][f.of % 4]; }
  [[nodiscard]] bool repeatsCorner(std::uint32_t i) const {
    auto const& [a, b, c, d] = mesh_.tetrahedra[i];
    return a == b || a == c || a == d || b == c || b == d || c == d;
  }
  template <class Words>
  void note(SpaceFaultKind kind, Words words) {
    auto& faults = report_.faults;
    auto found = std::find_if(faults.begin(), faults.end(), [kind](SpaceFault const& f) { return f.kind == kind; });
    if (found == faults.end()) found = faults.insert(found, {kind, 0, words()});
    ++found->count;
  }
  [[nodiscard]] std::string nameVertex(std::uint32_t v) const {
    return fmt::format("vertex {} ({})", v, mesh_.place(v));
  }
  [[nodiscard]] std::string nameFace(Face const& f) const {
    return fmt::format("{}, {}, {}", nameVertex(f.v[0]), nameVertex(f.v[1]), nameVertex(f.v[2]));
  }
  [[nodiscard]] std::string nameTetrahedron(std::uint32_t i) const {
    auto const& [a, b, c, d] = mesh_.tetrahedra[i];
    return fmt::format("tetrahedron {} ({}, {}, {}, {})", i, mesh_.place(a), mesh_.place(b), mesh_.place(c),
                       mesh_.place(d));
  }

  static constexpr void (SpaceChecker::*kParts[])() = {
      &SpaceChecker::checkTetrahedra,     &SpaceChecker::findDoubledTetrahedra,
      &SpaceChecker::findDoubledVertices, &SpaceChecker::pairFaces,
      &SpaceChecker::countEdges,          &SpaceChecker::countPieces,
      &SpaceChecker::judgeVolume,         &SpaceChecker::judgeBall};

  ExactSpaceMesh const& mesh_;
  const bool whole_;
  CheckProgress progress_;
  SpaceReport report_;
  std::vector<bool> upright_;  // of each tetrahedron
  std::vector<std::uint32_t> pieceOf_;
  Entero128 sixVolumes_{0};
};

}  // namespace

char const* SpaceFault::name() const { return kWords[static_cast<std::size_t>(kind)].name; }

std::string SpaceFault::text() const {
  KindWords const& words = kWords[static_cast<std::size_t>(kind)];
  return fmt::format("{} {}: {}{}", withThousands(count), count == 1 ? words.one : words.many,
                     count == 1 ? "" : "the first is ", first);
}

SpaceReport checkSpaceMesh(ExactSpaceMesh const& mesh, bool whole, Steps const& steps) {
  return SpaceChecker(mesh, whole, steps).run();
}

}  // namespace Meseta47::host
