#include "host/mesh/SpilledMesh.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "host/Failure.h"
#include "host/TemporaryFile.h"
#include "host/mesh/SpaceGeometry.h"
#include "model/geometry/CEsfera.h"
#include "platform/CFile.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kBlock = 4096;  // records read and handed out at a time

[[noreturn]] void failReading(CFile const& file) {
  throw Failure(fmt::format("temporary folder {}: {}: name another with --temp-dir", temporaryFolder().Utf8(),
                            file.Error(L"what the run wrote there").Utf8()));
}

/// Whether a tetrahedron has no corner of the frame.
bool isInside(std::array<std::int32_t, 4> const& record) {
  return std::all_of(record.begin(), record.end(), [](std::int32_t n) { return n > 0; });
}

void walk(CFile& file, std::function<void(std::array<std::int32_t, 4> const&)> const& take) {
  file.Seek(0, CFile::begin);
  std::vector<std::array<std::int32_t, 4>> block(kBlock);
  constexpr std::size_t kRecord = sizeof block[0];
  for (;;) {
    const unsigned bytes = file.Read(block.data(), static_cast<unsigned>(kBlock * kRecord));
    if (file.HayError() || bytes % kRecord != 0) failReading(file);
    if (bytes == 0) return;
    for (std::size_t i = 0; i < bytes / kRecord; ++i) take(block[i]);
  }
}

}  // namespace

SpilledMesh::SpilledMesh(CFile& file, CDibujo<int>& drawing, std::uint32_t numbers, HostApp& app)
    : forEachRecord_([&file](Take const& take) { walk(file, take); }),
      amiss_("this is a fault of the program; please report it with the input"),
      inTurn_(true) {
  mesh_.seed = drawing.semilla;
  takePoints(drawing, numbers);
  build(file.GetLength() / sizeof(Record), app);
}

SpilledMesh::SpilledMesh(CTriangulacion3D& kept, std::string const& name, HostApp& app)
    : forEachRecord_([&kept](Take const& take) { kept.RecorreMalla(take); }),
      amiss_(fmt::format("{} is damaged, or a run left a hole in it; make it again from its points", name)) {
  mesh_.seed = kept.Semilla();
  mesh_.vertices.resize(std::size_t{kept.CantidadPuntos()} + 1);
  for (std::uint32_t i = 0; i < kept.CantidadPuntos(); ++i) take(*kept.Punto(i));
  build(kept.CantidadTetraedros(), app);
}

void SpilledMesh::build(std::uint64_t records, HostApp& app) {
  readOnce(records, app);
  fillHull();
  numberVertices();
  mesh_.tetrahedra = kept_ + filled();
  mesh_.forEachBlock = [this](SpaceMesh::Blocks const& take) {
    std::vector<Tetrahedron> block;
    const auto handOut = [&] {
      take(block);
      block.clear();
    };
    const auto add = [&](Record const& record) {
      block.push_back(upright(record));
      if (block.size() == kBlock) handOut();
    };
    std::uint64_t at = 0;
    forEachRecord_([&](Record const& record) {
      if (isInside(record) && !taken_[at]) add(record);
      ++at;
    });
    for (Record const& record : fill_.tetrahedra()) add(record);
    if (!block.empty()) handOut();
  };
}

double SpilledMesh::volume() const {
  const double units = mesh_.seed.Precision();
  return fill_.hullVolume().Valor() / 6 / (units * units * units);
}

/// In the places of their numbers, for now.
void SpilledMesh::takePoints(CDibujo<int>& drawing, std::uint32_t numbers) {
  mesh_.vertices.resize(std::size_t{numbers} + 1);
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    for (CCoor3D<int> const& p : drawing[e].Puntos()) take(p);
  }
  drawing.Clear();
}

void SpilledMesh::take(CCoor3D<int> const& p) {
  if (p.num <= 0) return;
  mesh_.vertices.at(static_cast<std::size_t>(p.num)) = {p.x, p.y, p.z, p.intensidad, p.clasificacion};
}

/// Six times the volume, above 0.
Entero128 SpilledMesh::volumeOf(Record const& record) const {
  const auto at = [&](std::size_t i) { return pointOf(record[i]); };
  const Entero128 volume = sixVolumes(at(0), at(1), at(2), at(3));
  return volume.Signo() < 0 ? Entero128(0) - volume : volume;
}

CCoor3D<int> SpilledMesh::pointOf(std::int32_t number) const {
  ScaledPoint const& p = mesh_.vertices[static_cast<std::size_t>(number)];
  return {p.x, p.y, p.z, number};
}

void SpilledMesh::readOnce(std::uint64_t all, HostApp& app) {
  used_.resize(mesh_.vertices.size());
  taken_.resize(all);
  std::uint64_t done = 0;
  forEachRecord_([&](Record const& record) {
    bool framed = false;
    for (const std::int32_t n : record) {
      framed = framed || n < 0;
      if (n > 0) used_[static_cast<std::size_t>(n)] = true;
    }
    if (framed) {
      fill_.addFramed(record);
    } else {
      keptVolume_ = keptVolume_ + volumeOf(record);
      ++kept_;
    }
    if (++done % kBlock == 0) app.step(done, all);
  });
}

Entero128 SpilledMesh::missingVolume() const { return fill_.hullVolume() - keptVolume_ - fill_.filledVolume(); }

/// Tetrahedra that fill the hull to the last unit, all of them upright, are its mesh.
void SpilledMesh::fillHull() {
  const auto point = [this](std::int32_t number) { return pointOf(number); };
  for (;;) {
    if (inTurn_) {
      fill_.fill(point);
    } else {
      fill_.fillInAnyOrder(point);
    }
    if (missingVolume().Signo() == 0) return;
    if (!inTurn_ && takeBack(fill_.unmetWalls())) continue;
    throw Failure(fmt::format("the tetrahedra miss the convex hull by {:.3g} % of its volume: {}",
                              100 * missingVolume().Valor() / fill_.hullVolume().Valor(), amiss_));
  }
}

/// Leaves what stands behind these faces to the filling. False when nothing does.
bool SpilledMesh::takeBack(std::vector<std::array<std::int32_t, 3>> const& walls) {
  if (walls.empty()) return false;
  bool any = false;
  std::uint64_t at = 0;
  forEachRecord_([&](Record const& record) {
    const std::uint64_t place = at++;
    if (!isInside(record) || taken_[place]) return;
    auto const& [a, b, c, d] = record;
    const std::array<std::array<std::int32_t, 3>, 4> faces{{{a, b, c}, {a, b, d}, {a, c, d}, {b, c, d}}};
    if (std::none_of(faces.begin(), faces.end(),
                     [&](auto const& face) { return std::binary_search(walls.begin(), walls.end(), face); })) {
      return;
    }
    taken_[place] = any = true;
    keptVolume_ = keptVolume_ - volumeOf(record);
    --kept_;
    fill_.addKept(record);
  });
  return any;
}

/// Brings the vertices together that are in the mesh, in the order of their numbers.
void SpilledMesh::numberVertices() {
  vertexOf_.resize(used_.size());
  std::uint32_t next = 0;
  for (std::size_t n = 0; n < used_.size(); ++n) {
    if (!used_[n]) continue;
    mesh_.vertices[next] = mesh_.vertices[n];
    vertexOf_[n] = next++;
  }
  mesh_.vertices.resize(next);
  used_ = {};
  for (auto const& face : fill_.hull()) {
    const auto vertex = [&](std::size_t i) { return vertexOf_[static_cast<std::size_t>(face[i])]; };
    mesh_.hull.push_back({vertex(0), vertex(1), vertex(2)});
  }
}

Tetrahedron SpilledMesh::upright(Record const& record) const {
  Tetrahedron t{};
  std::transform(record.begin(), record.end(), t.begin(),
                 [this](std::int32_t n) { return vertexOf_[static_cast<std::size_t>(n)]; });
  const auto at = [&](std::size_t i) {
    ScaledPoint const& p = mesh_.vertices[t[i]];
    return CCoor3D<int>(p.x, p.y, p.z, 0);
  };
  if (SignoDeVolumen(at(0), at(1), at(2), at(3)) > 0) std::swap(t[2], t[3]);
  return t;
}

}  // namespace Meseta47::host
