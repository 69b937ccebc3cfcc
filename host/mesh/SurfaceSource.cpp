#include "host/mesh/SurfaceSource.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <memory>
#include <string_view>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/mesh/NativeModel.h"
#include "host/mesh/PlyReader.h"
#include "planar/CMedidasDeRun.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

namespace {

std::string beginningOf(std::string const& path) {
  std::array<std::uint8_t, 12> bytes{};
  FileSource source(path);
  const std::size_t count = source.read(0, bytes);
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// A file that tells how far it was read, and stops when the work is cancelled.
class WatchedFile : public FileSource {
 public:
  WatchedFile(std::string const& path, HostApp& app) : FileSource(path), app_(app) {}
  std::size_t read(std::uint64_t from, std::span<std::uint8_t> to) override {
    app_.step(from, size());
    return FileSource::read(from, to);
  }

 private:
  HostApp& app_;
};

Surface readPlyWatched(std::string const& path, HostApp& app) {
  WatchedFile file(path, app);
  return readPly(file);
}

/// With the vertices' classes, where any of them has one.
Surface surfaceOf(CTIN const& tin) {
  Surface surface;
  const double unit = tin.semilla.Precision();
  double const(&origin)[3] = tin.semilla.origen;
  surface.vertices.reserve(tin.puntos.size());
  surface.classes.reserve(tin.puntos.size());
  for (CPuntoTIN const& p : tin.puntos) {
    surface.vertices.push_back({p.x / unit + origin[0], p.y / unit + origin[1], p.z / unit + origin[2]});
    surface.classes.push_back(p.clasificacion);
  }
  const auto count = static_cast<std::uint32_t>(tin.Cantidad());
  surface.triangles.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) surface.triangles.push_back(tin.Vertices(i));
  return surface;
}

}  // namespace

ModelKind modelKindOf(std::string const& path) {
  std::string beginning;
  try {
    beginning = beginningOf(path);
  } catch (FileError const&) {
    // Whoever reads it says what is wrong.
  }
  // What a file says of itself counts before its name.
  if (beginning.starts_with("ply\n") || beginning.starts_with("ply\r")) return ModelKind::ply;
  if (isNativeModel(beginning, path)) return ModelKind::native;
  return extensionOf(path) == ".ply" ? ModelKind::ply : ModelKind::none;
}

Surface readModel(std::string const& path, HostApp& app) {
  app.phase("Reading");
  Surface surface =
      modelKindOf(path) == ModelKind::native ? surfaceOf(readNativeModel(path).Tin()) : readPlyWatched(path, app);
  if (surface.triangles.empty()) throw FileError(path, "the model has no triangles: there is no surface to show");
  return surface;
}

MappedSurface triangulateCloud(CloudOptions const& options, HostApp& app) {
  const CDataTriangulacion filters = filtersOf(options);
  LoadedCloud cloud = loadCloud(options.inputs, loadOptionsOf(options), app);
  const CDataSemilla seed = cloud.seed;
  const std::uint64_t spill = CMedidasDeRun::BytesDelFichero(cloud.points.size() + cloud.lines.nPuntos);
  if (options.hilbert()) app.phase("Ordering");
  CDibujo<int> drawing = drawingOf(cloud, options.hilbert(), app);
  requireTempSpace(spill);
  CTIN tin(0, 0, seed);
  CTriangulacion2D triangulation(0, seed, filters, 1);
  triangulation.SinMarco(options.fillsHull());
  const int code = triangulation.Run({.dibujo = drawing, .vaciar = true}, tin);
  requireRoom(triangulation.Resumen(), seed.precision, options.what());
  requireRun(code, options.what(), spill);
  if (tin.Cantidad() == 0) {
    throw Failure(fmt::format("{}: all points lie on one line in plan, or nearly so; there is no surface over them",
                              options.what()));
  }
  return {surfaceOf(tin), cloud.system};
}

void dropLongTriangles(Surface& surface, double maxSide) {
  constexpr double kRounding = 1e-7;  // of real coordinates in doubles: their origin is already in them
  const auto isLong = [&surface, most = maxSide + kRounding](Surface::Triangle const& t) {
    for (std::size_t i = 0; i < 3; ++i) {
      auto const &a = surface.vertices[t[i]], &b = surface.vertices[t[(i + 1) % 3]];
      if (std::hypot(b[0] - a[0], b[1] - a[1]) > most) return true;
    }
    return false;
  };
  std::erase_if(surface.triangles, isLong);
}

}  // namespace Meseta47::host
