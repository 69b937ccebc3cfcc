// urdimbre tetra: clouds in, a mesh of tetrahedra out.
#include <fmt/format.h>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/OutputCheck.h"
#include "host/OutputFile.h"
#include "host/SpaceDrawing.h"
#include "host/Summary.h"
#include "host/mesh/SpaceWriters.h"
#include "host/mesh/SpilledMesh.h"
#include "host/verbs/Verbs.h"
#include "platform/CFile.h"
#include "platform/Proceso.h"
#include "tetrahedral/CMedidasDeRun3D.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {

namespace {

// One point of each cell goes in before the rest. Cells as the library makes them by default suit clouds that fill a
// cube; what scanners see are surfaces.
constexpr unsigned kFineness = 27;

struct TetraOptions {
  CloudOptions cloud;
  std::string output;
};

void writeMesh(SpaceMesh const& mesh, std::string const& output, HostApp& app) {
  OutputFile file(output);
  spaceWriterFor(output)(mesh, file, [&app](std::uint64_t done, std::uint64_t all) { app.step(done, all); });
  file.commit();
}

void tell(Summary& summary, CResumenEspacial const& run, SpilledMesh const& spilled, std::string const& output) {
  SpaceMesh const& mesh = spilled.mesh();
  const std::uint64_t vertices = mesh.vertices.size(), hullFaces = mesh.hull.size();
  summary.headline(
      fmt::format("{}: {} tetrahedra over {} points", output, withThousands(mesh.tetrahedra), withThousands(vertices)));
  summary.line("hull", fmt::format("{} faces around a volume of {:.6g}, {} of the tetrahedra filled in under them",
                                   withThousands(hullFaces), spilled.volume(), withThousands(spilled.filled())));
  summary.points({{"points_accepted", run.aceptados, "accepted"},
                  {"duplicates", run.duplicados, "duplicate"},
                  {"coplanar", run.coplanarios, "coplanar"},
                  {"refused", run.perdidos.size(), "refused"}});
  summary.fact("vertices", vertices);
  summary.fact("tetrahedra", mesh.tetrahedra);
  summary.fact("filled_at_hull", spilled.filled());
  summary.fact("hull_faces", hullFaces);
  summary.fact("volume", spilled.volume());
  summary.resident("tetrahedra", run.picoVivos, run.enlazados);
}

/// The drawing is emptied on the way.
void meshDrawing(CDibujo<int>& drawing, TetraOptions const& options, Summary& summary, HostApp& app) {
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  triangulation.SetFinura(kFineness);
  const std::uint64_t spill = CMedidasDeRun3D::BytesDelFichero(drawing.nPuntos);
  requireTempSpace(spill);
  requireRun(triangulation.RunTetraedros(drawing), options.cloud.what(), spill);
  CResumenEspacial const& run = triangulation.Resumen();
  summary.seconds.spent("fill", run.segundosRellena);
  summary.seconds.spent("link", run.segundosEnlaza);

  app.phase("Completing the hull");
  const SpilledMesh spilled = summary.seconds.timed("hull", [&] {
    return SpilledMesh(*triangulation.TetraedrosEscritos(), drawing, triangulation.CantidadPuntos(), app);
  });
  tell(summary, run, spilled, options.output);
  app.phase("Writing");
  summary.seconds.timed("write", [&] { writeMesh(spilled.mesh(), options.output, app); });
}

void runTetra(TetraOptions const& options, CommonOptions const& common, HostApp& app) {
  Summary summary;
  GuardaMemoriaLibre();
  static_cast<void>(spaceWriterFor(options.output));  // before any work
  const LoadOptions load = loadOptionsOf(options.cloud);
  requireOutputs({options.output}, options.cloud.inputs);

  LoadedCloud cloud = summary.seconds.timed("read", [&] { return loadCloud(options.cloud.inputs, load, app); });
  summary.read(cloud);
  app.phase("Ordering");
  CDibujo<int> drawing = summary.seconds.timed("order", [&] { return spaceDrawingOf(cloud, options.cloud, app); });
  meshDrawing(drawing, options, summary, app);
  summary.print(common, app);
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
