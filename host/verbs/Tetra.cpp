// urdimbre tetra: clouds in, a mesh of tetrahedra out.
#include <algorithm>
#include <fmt/format.h>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/OutputCheck.h"
#include "host/OutputFile.h"
#include "host/Parsing.h"
#include "host/SpaceDrawing.h"
#include "host/Summary.h"
#include "host/mesh/PointRemoval.h"
#include "host/mesh/SpaceWriters.h"
#include "host/mesh/SpilledMesh.h"
#include "host/mesh/Tin3d.h"
#include "host/verbs/Verbs.h"
#include "platform/CFile.h"
#include "platform/Proceso.h"
#include "tetrahedral/CMedidasDeRun3D.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {

namespace {

struct TetraOptions {
  CloudOptions cloud;
  std::string output;
  std::string remove, removeClass;
  int version = 2;
  CLI::App const* verb = nullptr;

  [[nodiscard]] bool removes() const { return !remove.empty() || !removeClass.empty(); }
};

/// What an output calls for: refused before any work.
void requireOutput(TetraOptions const& options) {
  if (isNamedTin3d(options.output)) return;
  static_cast<void>(spaceWriterFor(options.output));
  if (options.verb->get_option("--version")->count() != 0) {
    throw UsageError(fmt::format("{}: --version is for TIN3D files (.tin3d)", options.output));
  }
}

void tell(Summary& summary, SpilledMesh const& spilled, std::string const& output) {
  SpaceMesh const& mesh = spilled.mesh();
  const std::uint64_t vertices = mesh.vertices.size(), hullFaces = mesh.hull.size();
  summary.headline(
      fmt::format("{}: {} tetrahedra over {} points", output, withThousands(mesh.tetrahedra), withThousands(vertices)));
  summary.line("hull", fmt::format("{} faces around a volume of {:.6g}, {} of the tetrahedra filled in under them",
                                   withThousands(hullFaces), spilled.volume(), withThousands(spilled.filled())));
  summary.fact("vertices", vertices);
  summary.fact("tetrahedra", mesh.tetrahedra);
  summary.fact("filled_at_hull", spilled.filled());
  summary.fact("hull_faces", hullFaces);
  summary.fact("volume", spilled.volume());
}

void tell(Summary& summary, CResumenEspacial const& run) {
  summary.points({{"points_accepted", run.aceptados, "accepted"},
                  {"duplicates", run.duplicados, "duplicate"},
                  {"coplanar", run.coplanarios, "coplanar"},
                  {"refused", run.perdidos.size(), "refused"}});
  summary.resident("tetrahedra", run.picoVivos, run.enlazados);
}

void writeMesh(SpaceMesh const& mesh, std::string const& output, HostApp& app) {
  OutputFile file(output);
  spaceWriterFor(output)(mesh, file, [&app](std::uint64_t done, std::uint64_t all) { app.step(done, all); });
  file.commit();
}

/// Takes out what was asked for. Returns how many vertices that were.
std::uint64_t removeAsked(CTriangulacion3D& mesh, TetraOptions const& options, Summary& summary, HostApp& app) {
  app.phase("Removing");
  std::vector<unsigned> out;
  if (!options.remove.empty()) out = verticesAt(mesh, options.remove, app);
  if (!options.removeClass.empty()) {
    const std::vector<unsigned> more = verticesOf(mesh, parseClasses("--remove-class", options.removeClass));
    out.insert(out.end(), more.begin(), more.end());
  }
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
  if (out.empty()) {
    throw Failure(fmt::format("{}: no vertex is of --remove-class {}", options.cloud.what(), options.removeClass));
  }
  removeVertices(mesh, out, options.cloud.what());
  summary.fact("removed", out.size());
  summary.line("removed", fmt::format("{} vertices", withThousands(out.size())));
  return out.size();
}

/// Writes a mesh that is kept. Returns how many vertices it has.
std::uint64_t writeKept(CTriangulacion3D& kept, TetraOptions const& options, Summary& summary, HostApp& app) {
  app.phase("Completing the hull");
  const SpilledMesh spilled =
      summary.seconds.timed("hull", [&] { return SpilledMesh(kept, options.cloud.what(), app); });
  if (spilled.mesh().tetrahedra == 0) {
    throw Failure(fmt::format("{}: the points that are left span no tetrahedron", options.cloud.what()));
  }
  tell(summary, spilled, options.output);
  app.phase("Writing");
  summary.seconds.timed("write", [&] {
    if (isNamedTin3d(options.output)) {
      writeTin3d(kept, options.output, options.version);
    } else {
      writeMesh(spilled.mesh(), options.output, app);
    }
  });
  return spilled.mesh().vertices.size();
}

void timesOf(Summary& summary, CResumenEspacial const& run) {
  summary.seconds.spent("fill", run.segundosRellena);
  summary.seconds.spent("link", run.segundosEnlaza);
}

/// For what needs all tetrahedra at once: the native file, and points to be taken out.
void meshInMemory(CTriangulacion3D& triangulation, CDibujo<int>& drawing, TetraOptions const& options, Summary& summary,
                  HostApp& app) {
  requireRun(triangulation.Run(drawing, true), options.cloud.what(), 0);
  const CResumenEspacial run = triangulation.Resumen();
  timesOf(summary, run);
  if (options.removes()) {
    summary.seconds.timed("remove", [&] { return removeAsked(triangulation, options, summary, app); });
  }
  writeKept(triangulation, options, summary, app);
  tell(summary, run);
}

void meshInFlow(CTriangulacion3D& triangulation, CDibujo<int>& drawing, TetraOptions const& options, Summary& summary,
                HostApp& app) {
  const std::uint64_t spill = CMedidasDeRun3D::BytesDelFichero(drawing.nPuntos);
  requireTempSpace(spill);
  requireRun(triangulation.RunTetraedros(drawing), options.cloud.what(), spill);
  timesOf(summary, triangulation.Resumen());
  app.phase("Completing the hull");
  const SpilledMesh spilled = summary.seconds.timed("hull", [&] {
    return SpilledMesh(*triangulation.TetraedrosEscritos(), drawing, triangulation.CantidadPuntos(), app);
  });
  tell(summary, spilled, options.output);
  tell(summary, triangulation.Resumen());
  app.phase("Writing");
  summary.seconds.timed("write", [&] { writeMesh(spilled.mesh(), options.output, app); });
}

void meshClouds(TetraOptions const& options, Summary& summary, HostApp& app) {
  const bool native = isNamedTin3d(options.output);
  LoadOptions load = loadOptionsOf(options.cloud);
  load.colours = native && options.version != 1;
  LoadedCloud cloud = summary.seconds.timed("read", [&] { return loadCloud(options.cloud.inputs, load, app); });
  summary.read(cloud);
  app.phase("Ordering");
  // Emptied on the way.
  CDibujo<int> drawing = summary.seconds.timed("order", [&] { return spaceDrawingOf(cloud, options.cloud, app); });
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  triangulation.SetFinura(kFinenessOfScans);
  if (native || options.removes()) {
    meshInMemory(triangulation, drawing, options, summary, app);
  } else {
    meshInFlow(triangulation, drawing, options, summary, app);
  }
}

/// A mesh that was made before, into another form.
void convertMesh(TetraOptions const& options, Summary& summary, HostApp& app) {
  requireNoCloudOptions(*options.verb, options.cloud, "mesh", {"--precision"});
  const Tin3d tin3d =
      summary.seconds.timed("read", [&] { return readTin3d(options.cloud.inputs[0], options.cloud.precision, app); });
  std::uint64_t removed = 0;
  if (options.removes()) {
    removed = summary.seconds.timed("remove", [&] { return removeAsked(*tin3d.mesh, options, summary, app); });
  }
  const std::uint64_t vertices = writeKept(*tin3d.mesh, options, summary, app);
  const std::uint64_t points = tin3d.mesh->CantidadPuntos();
  summary.readPoints(points);
  summary.points({{"without_tetrahedra", points - vertices - removed, "without tetrahedra"}});
}

void runTetra(TetraOptions const& options, CommonOptions const& common, HostApp& app) {
  Summary summary;
  GuardaMemoriaLibre();
  requireOutput(options);
  requireOutputs({options.output}, options.cloud.inputs);
  if (!options.remove.empty()) requireOutputs({options.output}, {options.remove});
  if (!options.removeClass.empty()) static_cast<void>(parseClasses("--remove-class", options.removeClass));
  if (isMeshAlone(options.cloud.inputs)) {
    convertMesh(options, summary, app);
  } else {
    meshClouds(options, summary, app);
  }
  summary.print(common, app);
}

void addTetraOptions(CLI::App& verb, TetraOptions& o) {
  o.verb = &verb;
  addCloudOptions(verb, o.cloud);
  verb.get_option("IN")->description(
      "LAS, LAZ, text and vector files, together one cloud; or one mesh (.tin3d), to be converted");
  verb.add_option("-o,--output", o.output,
                  "The mesh: .vtu (ParaView), .mesh (Medit), .msh (Gmsh 2.2); .tin3d, to be read again; or .ply, its "
                  "convex hull alone")
      ->required();
  verb.add_option("--version", o.version,
                  "Version of a TIN3D file: 1 holds bare points, without decimals and origin; 2 all of them")
      ->check(CLI::Range(1, 2))
      ->capture_default_str();
  verb.add_option("--remove", o.remove,
                  "Take out the vertices at the places of this cloud's points (text, LAS ...), and fill the mesh anew");
  verb.add_option("--remove-class", o.removeClass, "Take out the vertices of these classes, such as 7,18");
}

}  // namespace

void addTetra(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<TetraOptions>(program, "tetra", "Make a mesh of tetrahedra of clouds: their Delaunay mesh in space", common,
                        chosen, addTetraOptions, runTetra);
}

}  // namespace Meseta47::host
