#include "host/mesh/SpilledMesh.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "host/Failure.h"
#include "host/TemporaryFile.h"
#include "host/mesh/SpaceGeometry.h"
#include "model/geometry/CEsfera.h"
#include "platform/CFile.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kBlock = 4096;  // records read and handed out at a time

[[noreturn]] void failReading(CFile const& file) {
  throw Failure(fmt::format("temporary folder {}: {}: name another with --temp-dir", temporaryFolder().Utf8(),
                            file.Error(L"what the run wrote there").Utf8()));
}

}  // namespace

SpilledMesh::SpilledMesh(CFile& file, CDibujo<int>& drawing, std::uint32_t numbers, HostApp& app) : file_(file) {
  mesh_.seed = drawing.semilla;
  takePoints(drawing, numbers);
  readOnce(app);
  fill_.fill([this](std::int32_t number) { return pointOf(number); });
  requireFullHull();
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
    forEachRecord([&](Record const& record) {
      if (std::all_of(record.begin(), record.end(), [](std::int32_t n) { return n > 0; })) add(record);
    });
    for (Record const& record : fill_.tetrahedra()) add(record);
    if (!block.empty()) handOut();
  };
}

double SpilledMesh::volume() const {
  const double units = mesh_.seed.Precision();
  return fill_.hullVolume().Valor() / 6 / (units * units * units);
}

template <class F>
void SpilledMesh::forEachRecord(F const& f) const {
  file_.Seek(0, CFile::begin);
  std::vector<Record> block(kBlock);
  for (;;) {
    const unsigned bytes = file_.Read(block.data(), static_cast<unsigned>(kBlock * sizeof(Record)));
    if (file_.HayError() || bytes % sizeof(Record) != 0) failReading(file_);
    if (bytes == 0) return;
    for (std::size_t i = 0; i < bytes / sizeof(Record); ++i) f(block[i]);
  }
}

/// In the places of their numbers, for now.
void SpilledMesh::takePoints(CDibujo<int>& drawing, std::uint32_t numbers) {
  mesh_.vertices.resize(std::size_t{numbers} + 1);
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    for (CCoor3D<int> const& p : drawing[e].Puntos()) {
      if (p.num <= 0) continue;
      mesh_.vertices.at(static_cast<std::size_t>(p.num)) = {p.x, p.y, p.z, p.intensidad, p.clasificacion};
    }
  }
  drawing.Clear();
}

CCoor3D<int> SpilledMesh::pointOf(std::int32_t number) const {
  ScaledPoint const& p = mesh_.vertices[static_cast<std::size_t>(number)];
  return {p.x, p.y, p.z, number};
}

void SpilledMesh::readOnce(HostApp& app) {
  used_.resize(mesh_.vertices.size());
  const std::uint64_t all = file_.GetLength() / sizeof(Record);
  std::uint64_t done = 0;
  forEachRecord([&](Record const& record) {
    bool framed = false;
    for (const std::int32_t n : record) {
      framed = framed || n < 0;
      if (n > 0) used_[static_cast<std::size_t>(n)] = true;
    }
    if (framed) {
      fill_.addFramed(record);
    } else {
      const auto at = [&](std::size_t i) { return pointOf(record[i]); };
      const Entero128 volume = sixVolumes(at(0), at(1), at(2), at(3));
      keptVolume_ = volume.Signo() < 0 ? keptVolume_ - volume : keptVolume_ + volume;
      ++kept_;
    }
    if (++done % kBlock == 0) app.step(done, all);
  });
}

/// Tetrahedra that fill the hull to the last unit, all of them upright, are its mesh.
void SpilledMesh::requireFullHull() const {
  const Entero128 missing = fill_.hullVolume() - keptVolume_ - fill_.filledVolume();
  if (missing.Signo() == 0) return;
  throw Failure(
      fmt::format("the tetrahedra miss the convex hull by {:.3g} % of its volume: this is a fault of the "
                  "program; please report it with the input",
                  100 * missing.Valor() / fill_.hullVolume().Valor()));
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
