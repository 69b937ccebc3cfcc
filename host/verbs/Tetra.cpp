// urdimbre tetra: clouds in, a mesh of tetrahedra out.
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/JsonOutput.h"
#include "host/OutputCheck.h"
#include "host/OutputFile.h"
#include "host/SpaceDrawing.h"
#include "host/Stopwatch.h"
#include "host/mesh/SpaceWriters.h"
#include "host/mesh/SpilledMesh.h"
#include "host/verbs/Verbs.h"
#include "platform/CFile.h"
#include "platform/Proceso.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {

namespace {

// Cells as the library makes them by default suit clouds that fill a cube; what scanners see are surfaces.
constexpr unsigned kFineness = 27;

struct TetraOptions {
  CloudOptions cloud;
  std::string output;
};

struct Seconds {
  double read = 0, order = 0, fill = 0, link = 0, hull = 0, write = 0, total = 0;
};

struct TetraSummary {
  std::uint64_t pointsRead = 0;
  LineCounts lines;
  ReferenceSystem system;
  CResumenEspacial run;
  std::uint64_t vertices = 0, tetrahedra = 0, filled = 0, hullFaces = 0;
  double volume = 0;
  Seconds seconds;
};

nlohmann::ordered_json toJson(TetraSummary const& s) {
  return {{"points_read", s.pointsRead},
          {"lines", s.lines.lines},
          {"line_points", s.lines.points},
          {"skipped_without_z", s.lines.withoutZ},
          {"system", s.system.label()},
          {"points_accepted", s.run.aceptados},
          {"duplicates", s.run.duplicados},
          {"coplanar", s.run.coplanarios},
          {"refused", s.run.perdidos.size()},
          {"vertices", s.vertices},
          {"tetrahedra", s.tetrahedra},
          {"filled_at_hull", s.filled},
          {"hull_faces", s.hullFaces},
          {"volume", s.volume},
          {"linked_tetrahedra", s.run.enlazados},
          {"peak_live_tetrahedra", s.run.picoVivos},
          {"seconds",
           {{"read", s.seconds.read},
            {"order", s.seconds.order},
            {"fill", s.seconds.fill},
            {"link", s.seconds.link},
            {"hull", s.seconds.hull},
            {"write", s.seconds.write},
            {"total", s.seconds.total}}},
          {"peak_memory_bytes", MemoriaResidenteMaxima()}};
}

void printSummary(TetraSummary const& s, std::string const& output) {
  const auto n = [](std::uint64_t value) { return withThousands(value); };
  fmt::print("{}: {} tetrahedra over {} points\n", output, n(s.tetrahedra), n(s.vertices));
  fmt::print("hull       {} faces around a volume of {:.6g}, {} of the tetrahedra filled in under them\n",
             n(s.hullFaces), s.volume, n(s.filled));
  if (s.system.isKnown()) fmt::print("system     {}\n", s.system.label());
  if (s.lines.any()) fmt::print("lines      {}\n", s.lines.text());
  fmt::print("points     {} read, {} accepted, {} duplicate, {} coplanar, {} refused\n", n(s.pointsRead),
             n(s.run.aceptados), n(s.run.duplicados), n(s.run.coplanarios), n(s.run.perdidos.size()));
  fmt::print(
      "resident   {} of {} tetrahedra at most at once ({:.1f} %)\n", n(s.run.picoVivos), n(s.run.enlazados),
      100.0 * static_cast<double>(s.run.picoVivos) / static_cast<double>(std::max<std::uint64_t>(s.run.enlazados, 1)));
  fmt::print(
      "seconds    read {:.2f}, order {:.2f}, fill {:.2f}, link {:.2f}, hull {:.2f}, write {:.2f}, total {:.2f}\n",
      s.seconds.read, s.seconds.order, s.seconds.fill, s.seconds.link, s.seconds.hull, s.seconds.write,
      s.seconds.total);
  fmt::print("memory     {:.0f} MB at most\n", static_cast<double>(MemoriaResidenteMaxima()) / 1e6);
}

void writeMesh(SpaceMesh const& mesh, std::string const& output, HostApp& app) {
  OutputFile file(output);
  spaceWriterFor(output)(mesh, file, [&app](std::uint64_t done, std::uint64_t all) { app.step(done, all); });
  file.commit();
}

/// The drawing is emptied on the way.
void meshDrawing(CDibujo<int>& drawing, TetraOptions const& options, TetraSummary& summary, HostApp& app) {
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  triangulation.SetFinura(kFineness);
  const std::uint64_t spill = spaceSpillBytes(drawing.nPuntos);
  requireTempSpace(spill);
  requireRun(triangulation.RunTetraedros(drawing), options.cloud.what(), spill);
  summary.run = triangulation.Resumen();
  summary.seconds.fill = summary.run.segundosRellena;
  summary.seconds.link = summary.run.segundosEnlaza;

  app.phase("Completing the hull");
  const Stopwatch hull;
  const SpilledMesh spilled(*triangulation.TetraedrosEscritos(), drawing, triangulation.CantidadPuntos(), app);
  SpaceMesh const& mesh = spilled.mesh();
  summary.seconds.hull = hull.seconds();
  summary.vertices = mesh.vertices.size();
  summary.tetrahedra = mesh.tetrahedra;
  summary.filled = spilled.filled();
  summary.hullFaces = mesh.hull.size();
  summary.volume = spilled.volume();

  app.phase("Writing");
  timed(summary.seconds.write, [&] { writeMesh(mesh, options.output, app); });
}

void runTetra(TetraOptions const& options, CommonOptions const& common, HostApp& app) {
  const Stopwatch whole;
  GuardaMemoriaLibre();
  static_cast<void>(spaceWriterFor(options.output));  // before any work
  const LoadOptions load = loadOptionsOf(options.cloud);
  requireOutputs({options.output}, options.cloud.inputs);

  TetraSummary summary;
  LoadedCloud cloud =
      timed(summary.seconds.read, [&] { return std::move(loadClouds({options.cloud.inputs}, load, app).front()); });
  summary.pointsRead = cloud.pointsRead;
  summary.lines.add(cloud);
  summary.system = cloud.system;
  app.phase("Ordering");
  CDibujo<int> drawing = timed(summary.seconds.order, [&] { return spaceDrawingOf(cloud, options.cloud, app); });
  meshDrawing(drawing, options, summary, app);
  summary.seconds.total = whole.seconds();

  app.clearProgress();
  app.showMessages();
  if (common.json) {
    printJson(toJson(summary));
  } else if (!common.quiet) {
    printSummary(summary, options.output);
  }
}

}  // namespace

void addTetra(CLI::App& program, CommonOptions const& common, Work& chosen) {
  auto options = std::make_shared<TetraOptions>();
  CLI::App* verb = program.add_subcommand("tetra", "Make a mesh of tetrahedra of clouds: their Delaunay mesh in space");
  addCloudOptions(*verb, options->cloud);
  verb->add_option("-o,--output", options->output,
                   "The mesh: .vtu (ParaView), .mesh (Medit), .msh (Gmsh 2.2); or .ply, its convex hull alone")
      ->required();
  verb->callback(
      [options, &common, &chosen] { chosen = [options, &common](HostApp& app) { runTetra(*options, common, app); }; });
}

}  // namespace Meseta47::host
