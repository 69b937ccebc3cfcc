// urdimbre surface: clouds in, their surface in space out.
#include <algorithm>
#include <fmt/format.h>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/NumberCheck.h"
#include "host/OutputCheck.h"
#include "host/SpaceDrawing.h"
#include "host/Summary.h"
#include "host/mesh/SpaceSurface.h"
#include "host/mesh/Tin3d.h"
#include "host/verbs/Verbs.h"
#include "platform/Proceso.h"
#include "tetrahedral/CMedidasDeRun3D.h"

namespace Meseta47::host {

namespace {

struct SurfaceOptions {
  CloudOptions cloud;
  std::string output;
  double maxSide = 0;
  CLI::App const* verb = nullptr;
};

void tell(Summary& summary, SurfaceCounts const& c, bool coloured, std::string const& output) {
  const auto n = [](std::uint64_t value) { return withThousands(value); };
  summary.headline(fmt::format("{}: {} faces over {} vertices{}, an area of {:.6g}", output, n(c.faces), n(c.vertices),
                               coloured ? ", in colour" : "", c.area));
  summary.line("pieces",
               fmt::format("{}, with {} {} of {} sides; at {} sides three faces and more meet", n(c.components),
                           n(c.borders), c.borders == 1 ? "border" : "borders", n(c.borderSides), n(c.branchSides)));
  summary.fact("faces", c.faces);
  summary.fact("vertices", c.vertices);
  summary.fact("components", c.components);
  summary.fact("borders", c.borders);
  summary.fact("border_sides", c.borderSides);
  summary.fact("branch_sides", c.branchSides);
  summary.fact("area", c.area);
  summary.fact("coloured", coloured);
}

/// Of a mesh that was made before.
SpaceSurface surfaceOfMesh(SurfaceOptions const& options, Summary& summary, HostApp& app) {
  requireNoCloudOptions(*options.verb, options.cloud, "mesh", {"--precision"});
  const Tin3d read =
      summary.seconds.timed("read", [&] { return readTin3d(options.cloud.inputs[0], options.cloud.precision, app); });
  summary.readPoints(read.mesh->CantidadPuntos());
  app.phase("Choosing faces");
  return summary.seconds.timed("surface", [&] {
    return surfaceInSpace(*read.mesh, options.maxSide, [&app](auto done, auto all) { app.step(done, all); });
  });
}

SpaceSurface surfaceOfClouds(SurfaceOptions const& options, Summary& summary, HostApp& app) {
  LoadOptions load = loadOptionsOf(options.cloud);
  load.colours = true;
  LoadedCloud cloud = summary.seconds.timed("read", [&] { return loadCloud(options.cloud.inputs, load, app); });
  summary.read(cloud);
  app.phase("Ordering");
  CDibujo<int> drawing = summary.seconds.timed("order", [&] { return spaceDrawingOf(cloud, options.cloud, app); });
  CTIN tin(0, 0, drawing.semilla);
  tin.conVecinos = false;
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  triangulation.SetFinura(kFinenessOfScans);
  // Less than a unit is less than any side; to the library, next to nothing would be no limit at all.
  const double maxSide = std::max(options.maxSide, 0.5 / drawing.semilla.Precision());
  const std::uint64_t spill = CMedidasDeRun3D::BytesDelFichero(drawing.nPuntos);
  requireTempSpace(spill);
  summary.seconds.timed("link", [&] {
    requireRun(triangulation.Run(drawing, tin, maxSide, true, nullptr, false), options.cloud.what(), spill);
  });
  CResumenEspacial const& run = triangulation.Resumen();
  summary.points({{"points_accepted", run.aceptados, "accepted"}, {"duplicates", run.duplicados, "duplicate"}});
  summary.resident("tetrahedra", run.picoVivos, run.enlazados);
  return summary.seconds.timed("surface", [&] { return surfaceInSpace(tin); });
}

void runSurface(SurfaceOptions const& options, CommonOptions const& common, HostApp& app) {
  Summary summary;
  GuardaMemoriaLibre();
  requireSurfaceFormat(options.output);
  requireOutputs({options.output}, options.cloud.inputs);
  const SpaceSurface surface =
      isMeshAlone(options.cloud.inputs) ? surfaceOfMesh(options, summary, app) : surfaceOfClouds(options, summary, app);
  if (surface.faces.empty()) {
    throw Failure(fmt::format(
        "{}: with --max-side {:g} nothing is surface: every side is longer, give more; or every side is shorter and "
        "all is inside, give less",
        options.cloud.what(), options.maxSide));
  }
  const SurfaceCounts counts = summary.seconds.timed("surface", [&] { return countsOf(surface); });
  tell(summary, counts, !surface.colours.empty(), options.output);
  app.phase("Writing");
  summary.seconds.timed("write", [&] { writeSurface(surface, options.output); });
  summary.print(common, app);
}

void addSurfaceOptions(CLI::App& verb, SurfaceOptions& o) {
  o.verb = &verb;
  addCloudOptions(verb, o.cloud);
  verb.get_option("IN")->description("LAS, LAZ, text and vector files, together one cloud; or one mesh (.tin3d)");
  verb.add_option("-o,--output", o.output,
                  "The surface: .ply, .obj, .stl or .gltf; colours of the points go into all but .stl")
      ->required();
  verb.add_option("--max-side", o.maxSide,
                  "Longest side of a face, in units of the input: three to five times the distance between points")
      ->required()
      ->check(aboveZero());
}

}  // namespace

void addSurface(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<SurfaceOptions>(program, "surface",
                          "Make the surface in space of clouds: quarry faces, stockpiles, caves, rooms", common, chosen,
                          addSurfaceOptions, runSurface);
}

}  // namespace Meseta47::host
