#include "host/mesh/CutMesh.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fmt/format.h>

#include "host/Failure.h"

namespace Meseta47::host {

namespace {

using Colour = std::array<std::uint8_t, 3>;
constexpr Colour kOuter{204, 196, 181}, kBared{222, 142, 84};  // stone, and a fresh break in it
constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr std::size_t kPerStep = 1 << 16;

struct Face {
  Surface::Triangle vertices;  // ascending
  std::uint32_t stays;         // 1 for one of a tetrahedron that the cut leaves

  bool operator<(Face const& o) const { return vertices < o.vertices; }
};

std::vector<Face> facesOf(ExactSpaceMesh const& mesh, std::optional<Cut> const& cut, Steps const& step) {
  std::vector<Face> faces;
  faces.reserve(4 * mesh.tetrahedra.size());
  for (std::size_t i = 0; i < mesh.tetrahedra.size(); ++i) {
    if (i % kPerStep == 0) step(i, mesh.tetrahedra.size());
    Tetrahedron t = mesh.tetrahedra[i];
    const std::uint32_t stays = cut && cut->takes(mesh, t) ? 0 : 1;
    std::sort(t.begin(), t.end());
    for (auto const& v : {Surface::Triangle{t[0], t[1], t[2]}, Surface::Triangle{t[0], t[1], t[3]},
                          Surface::Triangle{t[0], t[2], t[3]}, Surface::Triangle{t[1], t[2], t[3]}}) {
      faces.push_back({v, stays});
    }
  }
  std::sort(faces.begin(), faces.end());
  return faces;
}

/// A surface of some of a mesh's vertices, each once a colour.
class Painted {
 public:
  explicit Painted(ExactSpaceMesh const& mesh) : mesh_(mesh), units_(std::pow(10.0, mesh.precision)) {
    for (auto& places : placeOf_) places.assign(mesh.vertices.size(), kNone);
  }
  void add(Surface::Triangle const& face, bool bared) {
    surface_.triangles.push_back({vertex(face[0], bared), vertex(face[1], bared), vertex(face[2], bared)});
  }
  [[nodiscard]] Surface take() { return std::move(surface_); }

 private:
  std::uint32_t vertex(std::uint32_t v, bool bared) {
    std::uint32_t& place = placeOf_[bared ? 1 : 0][v];
    if (place != kNone) return place;
    place = static_cast<std::uint32_t>(surface_.vertices.size());
    CCoor3D<int> const& p = mesh_.vertices[v];
    surface_.vertices.push_back(
        {mesh_.origin[0] + p.x / units_, mesh_.origin[1] + p.y / units_, mesh_.origin[2] + p.z / units_});
    surface_.colours.push_back(bared ? kBared : kOuter);
    return place;
  }

  ExactSpaceMesh const& mesh_;
  double units_;
  std::vector<std::uint32_t> placeOf_[2];
  Surface surface_;
};

}  // namespace

bool Cut::takes(ExactSpaceMesh const& mesh, Tetrahedron const& t) const {
  std::int64_t sum = 0;
  for (const std::uint32_t v : t) {
    CCoor3D<int> const& p = mesh.vertices[v];
    sum += axis == 0 ? p.x : (axis == 1 ? p.y : p.z);
  }
  const double centre = mesh.origin[axis] + static_cast<double>(sum) / (4 * std::pow(10.0, mesh.precision));
  return greaterGoes ? centre > at : centre < at;
}

Cut parseCut(std::string const& text) {
  if (text.size() > 2 && text[0] >= 'x' && text[0] <= 'z' && text[1] == '=') {
    Cut cut;
    cut.axis = static_cast<unsigned>(text[0] - 'x');
    const auto read = std::from_chars(text.data() + 2, text.data() + text.size(), cut.at);
    if (read.ec == std::errc() && read.ptr == text.data() + text.size() && std::isfinite(cut.at)) return cut;
  }
  throw UsageError(fmt::format("--cut {}: give the axis and where on it, such as x=12.5", text));
}

Surface outerFaces(ExactSpaceMesh const& mesh, std::optional<Cut> const& cut, Steps const& step) {
  const std::vector<Face> faces = facesOf(mesh, cut, step);
  Painted painted(mesh);
  for (std::size_t i = 0, j; i < faces.size(); i = j) {
    std::uint32_t staying = 0;
    for (j = i; j < faces.size() && faces[j].vertices == faces[i].vertices; ++j) staying += faces[j].stays;
    if (staying == 1) painted.add(faces[i].vertices, j - i > 1);
  }
  return painted.take();
}

}  // namespace Meseta47::host
