#include "host/mesh/ExactHull.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/mesh/SpaceGeometry.h"
#include "host/mesh/SpaceRank.h"

namespace Meseta47::host {

namespace {

struct Face {
  std::array<std::uint32_t, 3> v;          // counter-clockwise seen from outside
  std::array<std::uint32_t, 3> n;          // face across the edge from v[i] to the next
  std::vector<std::uint32_t> beyond = {};  // points strictly beyond it that no earlier face sees
  bool gone = false;
};

class Quickhull {
 public:
  explicit Quickhull(std::vector<CCoor3D<int>> const& points) : at_(points) {}

  ExactHull run() {
    ExactHull hull;
    if (!begin()) return hull;
    for (std::uint32_t f = 0; f < faces_.size(); ++f) {
      while (!faces_[f].gone && !faces_[f].beyond.empty()) raise(f);
    }
    for (Face const& f : faces_) {
      if (f.gone) continue;
      hull.faces.push_back(f.v);
      hull.sixVolumes =
          hull.sixVolumes - host::sixVolumes(at_[f.v[0]], at_[f.v[1]], at_[f.v[2]], at_[faces_.front().v[0]]);
    }
    return hull;
  }

 private:
  [[nodiscard]] bool sees(std::uint32_t p, Face const& f) const {
    return SignoDeVolumen(at_[f.v[0]], at_[f.v[1]], at_[f.v[2]], at_[p]) < 0;
  }

  bool begin() {
    SpaceRank rank;
    std::array<std::uint32_t, 4> s{};
    for (std::uint32_t p = 0; p < at_.size() && rank.points() < 4; ++p) {
      if (rank.add(at_[p])) s[rank.points() - 1] = p;
    }
    if (rank.points() < 4) return false;
    if (SignoDeVolumen(at_[s[0]], at_[s[1]], at_[s[2]], at_[s[3]]) < 0) std::swap(s[0], s[1]);
    // The fourth point lies behind the first face.
    faces_ = {{{s[0], s[1], s[2]}, {1, 2, 3}},
              {{s[1], s[0], s[3]}, {0, 3, 2}},
              {{s[2], s[1], s[3]}, {0, 1, 3}},
              {{s[0], s[2], s[3]}, {0, 2, 1}}};
    std::vector<std::uint32_t> all(at_.size());
    for (std::uint32_t p = 0; p < all.size(); ++p) all[p] = p;
    share(all, 0);
    return true;
  }

  /// Gives each point to the first of the faces from `from` on that it sees; what sees none lies within.
  void share(std::vector<std::uint32_t> const& points, std::size_t from) {
    for (const std::uint32_t p : points) {
      const auto f = std::find_if(faces_.begin() + static_cast<std::ptrdiff_t>(from), faces_.end(),
                                  [&](Face const& face) { return sees(p, face); });
      if (f != faces_.end()) f->beyond.push_back(p);
    }
  }

  [[nodiscard]] std::uint32_t farthest(Face const& f) const {
    const auto height = [&](std::uint32_t p) { return -sixVolumes(at_[f.v[0]], at_[f.v[1]], at_[f.v[2]], at_[p]); };
    std::uint32_t best = f.beyond.front();
    double most = 0;
    for (const std::uint32_t p : f.beyond) {
      const double h = std::abs(height(p));
      if (h > most) {
        most = h;
        best = p;
      }
    }
    return best;
  }
  [[nodiscard]] static double sixVolumes(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                                         CCoor3D<int> const& d) {
    return host::sixVolumes(a, b, c, d).Valor();
  }

  /// From the point to each edge between a face that it sees and one that it does not.
  void raise(std::uint32_t start) {
    const std::uint32_t p = farthest(faces_[start]);
    std::vector<std::uint32_t> seen{start}, orphans;
    faces_[start].gone = true;
    std::vector<std::pair<std::uint32_t, unsigned>> horizon;  // of the faces seen: which, and which edge
    for (std::size_t i = 0; i < seen.size(); ++i) {
      for (unsigned e = 0; e < 3; ++e) {
        const std::uint32_t other = faces_[seen[i]].n[e];
        if (faces_[other].gone) continue;
        if (sees(p, faces_[other])) {
          faces_[other].gone = true;
          seen.push_back(other);
        }
      }
    }
    for (const std::uint32_t f : seen) {
      for (unsigned e = 0; e < 3; ++e) {
        if (!faces_[faces_[f].n[e]].gone) horizon.emplace_back(f, e);
      }
      std::copy_if(faces_[f].beyond.begin(), faces_[f].beyond.end(), std::back_inserter(orphans),
                   [p](std::uint32_t q) { return q != p; });
      std::vector<std::uint32_t>().swap(faces_[f].beyond);
    }
    close(p, horizon);
    share(orphans, faces_.size() - horizon.size());
  }

  void close(std::uint32_t p, std::vector<std::pair<std::uint32_t, unsigned>> const& horizon) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> startsAt, endsAt;  // vertex of the horizon, new face
    for (auto const& [f, e] : horizon) {
      const std::uint32_t a = faces_[f].v[e], b = faces_[f].v[(e + 1) % 3], hidden = faces_[f].n[e];
      const auto made = static_cast<std::uint32_t>(faces_.size());
      for (unsigned k = 0; k < 3; ++k) {
        if (faces_[hidden].v[k] == b && faces_[hidden].v[(k + 1) % 3] == a) faces_[hidden].n[k] = made;
      }
      faces_.push_back({{a, b, p}, {hidden, 0, 0}});
      startsAt.emplace_back(a, made);
      endsAt.emplace_back(b, made);
    }
    std::sort(startsAt.begin(), startsAt.end());
    std::sort(endsAt.begin(), endsAt.end());
    for (std::size_t i = 0; i < startsAt.size(); ++i) {  // the horizon is a ring: each vertex starts and ends one edge
      faces_[endsAt[i].second].n[1] = startsAt[i].second;
      faces_[startsAt[i].second].n[2] = endsAt[i].second;
    }
  }

  std::vector<CCoor3D<int>> const& at_;
  std::vector<Face> faces_;
};

}  // namespace

ExactHull exactHull(std::vector<CCoor3D<int>> const& points) { return Quickhull(points).run(); }

}  // namespace Meseta47::host
