#include "host/mesh/PointRemoval.h"

#include <algorithm>
#include <fmt/format.h>

#include "host/CloudReader.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "model/geometry/Redondeo.h"
#include "platform/Proceso.h"

namespace Meseta47::host {

namespace {

/// The points that tetrahedra have: of those of one place one at most.
std::vector<unsigned> vertices(CTriangulacion3D const& mesh) {
  std::vector<bool> used(mesh.CantidadPuntos());
  mesh.RecorreMalla([&used](CTriangulacion3D::CCuatro const& four) {
    for (const std::int32_t n : four) {
      if (n > 0) used[static_cast<std::size_t>(n) - 1] = true;
    }
  });
  std::vector<unsigned> indices;
  for (std::size_t i = 0; i < used.size(); ++i) {
    if (used[i]) indices.push_back(static_cast<unsigned>(i));
  }
  return indices;
}

CCoor3D<int> scaled(CloudPoint const& p, CDataSemilla const& seed) {
  const double units = seed.Precision();
  return {Redondea((p.x - seed.origen[0]) * units), Redondea((p.y - seed.origen[1]) * units),
          Redondea((p.z - seed.origen[2]) * units), 0};
}

}  // namespace

std::vector<unsigned> verticesAt(CTriangulacion3D& mesh, std::string const& cloud, HostApp& app) {
  std::vector<unsigned> places = vertices(mesh);
  const auto before = [&mesh](unsigned i, CCoor3D<int> const& p) { return (*mesh.Punto(i) < p) != 0; };
  std::sort(places.begin(), places.end(), [&](unsigned a, unsigned b) { return before(a, *mesh.Punto(b)); });
  std::vector<unsigned> found;
  std::vector<CloudPoint> batch;
  CloudReader reader(cloud);
  for (std::uint64_t read = 0; reader.readBatch(batch) != 0; read += batch.size()) {
    app.step(read, 0);
    for (std::size_t i = 0; i < batch.size(); ++i) {
      const CCoor3D<int> p = scaled(batch[i], mesh.Semilla());
      const auto place = std::lower_bound(places.begin(), places.end(), p, before);
      if (place == places.end() || !(*mesh.Punto(*place) == p)) {
        throw Failure(fmt::format("{}: point {}, {} {} {}, is no vertex of the mesh: give points that it has", cloud,
                                  withThousands(read + i + 1), batch[i].x, batch[i].y, batch[i].z));
      }
      found.push_back(*place);
    }
  }
  if (found.empty()) throw FileError(cloud, "it has no points: there is nothing to take out");
  return found;
}

std::vector<unsigned> verticesOf(CTriangulacion3D& mesh, std::array<bool, 256> const& classes) {
  std::vector<unsigned> found = vertices(mesh);
  std::erase_if(found, [&](unsigned i) { return !classes[mesh.Punto(i)->clasificacion]; });
  return found;
}

void removeVertices(CTriangulacion3D& mesh, std::vector<unsigned>& indices, std::string const& name) {
  const bool done = mesh.BorraPunto(indices);
  if (Interrumpido()) throw Cancelled();
  if (done && mesh.Resumen().huecos == 0) return;
  throw Failure(fmt::format(
      "{}: the place of {} points could not be filled anew: it is no Delaunay mesh (urdimbre check tells), or memory, "
      "threads or the temporary folder gave out",
      name, withThousands(indices.size())));
}

}  // namespace Meseta47::host
