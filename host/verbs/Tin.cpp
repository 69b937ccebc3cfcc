// urdimbre tin: clouds in, a triangulated terrain model out.
#include <fmt/format.h>
#include <memory>

#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/NumberCheck.h"
#include "host/OutputCheck.h"
#include "host/Summary.h"
#include "host/mesh/ModelOutput.h"
#include "host/vector/OutlineLayer.h"
#include "host/verbs/Verbs.h"
#include "model/geometry/CRango.h"
#include "model/terrain/CModeloDigital.h"
#include "planar/CMedidasDeRun.h"
#include "planar/CTriangulacion2D.h"
#include "platform/Proceso.h"

namespace Meseta47::host {

namespace {

constexpr double kLargest = 2147483647.0;  // what a range takes for no limit

struct TinOptions {
  CloudOptions cloud;
  std::string output, outline;
  bool overwrite = false;
  double maxSide = 0;
  std::string slope, heightDifference, intensityDifference;
  std::string update;
  double tolerance = 0;
};

std::optional<Limits> limitsOf(std::string const& option, std::string const& text) {
  if (text.empty()) return std::nullopt;
  return parseLimits(option, text, 0, kLargest);
}

/// A range on differences along the sides of triangles, from limits in units of the input.
std::optional<CRango> rangeOf(std::optional<Limits> const& limits, double scale) {
  if (!limits) return std::nullopt;
  CRango range(kLargest, kLargest, -2147483648.0, kLargest);
  range.SetValorMin(asLeast(limits->min * scale));
  range.SetValorMax(asMost(limits->max * scale));
  return range;
}

/// What of the points, and of the triangles over them, is let through.
struct TinFilters {
  CDataTriangulacion data;
  std::optional<Limits> heights, intensities;  ///< differences along sides, in units of the input

  explicit TinFilters(TinOptions const& options)
      : data(filtersOf(options.cloud)),
        heights(limitsOf("--height-difference", options.heightDifference)),
        intensities(limitsOf("--intensity-difference", options.intensityDifference)) {
    if (options.slope.empty()) return;
    constexpr double kNoLeast = -1;  // below 0, where no slope is
    const Limits slope = parseLimits("--slope", options.slope, 0, 90);
    data.pendienteMin = options.slope.starts_with(':') ? kNoLeast : slope.min;
    data.pendienteMax = slope.max;
  }
};

/// What a run takes. It sorts the entities of its first drawing, and lines that came behind the cloud would keep every
/// cell that they touch unfinished to the end: so they are that drawing, and the cloud is a further one, which the run
/// deletes as soon as the model has its points.
struct Drawings {
  CDibujo<int> first;
  std::vector<CDibujo<int>*> others;
  std::optional<CDibujo<int>> update;

  Drawings(std::vector<LoadedCloud>& clouds, bool hilbert, HostApp& app) {
    if (hilbert) app.phase("Ordering");
    first = std::move(clouds[0].lines);
    first.tipoNube = 1;  // filters look at the class of each point, as in the cloud
    clouds[0].lines.Clear();
    // Added points go in one after another, on one thread.
    const Halves halves = clouds.size() > 1 ? Halves::asTheyCome : Halves::inTurns;
    others = {new CDibujo<int>(drawingOf(clouds[0], hilbert, app, Ties::byPosition, halves))};
    if (clouds.size() > 1) update = drawingOf(clouds[1], hilbert, app);
  }
  ~Drawings() {
    for (CDibujo<int> const* const other : others) delete other;
  }
  Drawings(Drawings const&) = delete;
  Drawings& operator=(Drawings const&) = delete;

  [[nodiscard]] std::uint64_t points() const {
    return std::uint64_t{first.nPuntos} + others[0]->nPuntos + (update ? update->nPuntos : 0);
  }
};

struct TinResult {
  std::unique_ptr<CTIN> tin;  ///< null where the run has written the output itself
  CResumenPlano run;
};

/// The drawings are empty afterwards. Without a model the output, not committed yet, has what there was to write.
TinResult triangulate(Drawings& drawings, TinOptions const& options, TinFilters const& filters, ModelOutput& output) {
  const CDataSemilla seed = drawings.first.semilla;
  const std::string what = options.cloud.what();
  const std::uint64_t spill = CMedidasDeRun::BytesDelFichero(drawings.points());
  requireTempSpace(spill);
  const auto heights = rangeOf(filters.heights, seed.Precision());
  const auto intensities = rangeOf(filters.intensities, 1);
  TinResult made;
  CTriangulacion2D triangulation(0, seed, filters.data, 1);
  triangulation.SinMarco(options.cloud.fillsHull());
  if (options.cloud.hilbert()) triangulation.DosDesde(CReparto2D::kMinimo);
  const CEncargo job{.dibujo = drawings.first,
                     .otros = &drawings.others,
                     .extra = drawings.update ? &*drawings.update : nullptr,
                     .tolerancia = asMost(options.tolerance),
                     .ladoMaximo = asMost(options.maxSide),
                     .alturas = heights ? &*heights : nullptr,
                     .intensidades = intensities ? &*intensities : nullptr,
                     .vaciar = true};
  if (options.outline.empty() && output.takesRuns()) {
    const int code = triangulation.RunPLY(job, [&output] { return output.file(); });
    made.run = triangulation.Resumen();
    output.requireWritten();
    requireRoom(made.run, seed.precision, what);
    requireRun(code, what, spill);
  } else {
    made.tin = std::make_unique<CTIN>(0, 0, seed);
    made.tin->conVecinos = output.holdsNeighbours();
    const int code = triangulation.Run(job, *made.tin);
    made.run = triangulation.Resumen();
    requireRoom(made.run, seed.precision, what);
    requireRun(code, what, spill);
    made.run.vertices = made.tin->puntos.size();
    made.run.triangulos = made.tin->Cantidad();
    made.run.anillos = made.tin->Limite().size();
  }
  drawings.update.reset();
  return made;
}

/// Says why there is no surface; the run itself went well.
void requireTriangles(TinResult const& made, std::string const& what, bool hull) {
  CResumenPlano const& run = made.run;
  if (run.triangulos != 0) return;
  const std::uint64_t distinct = run.aceptados - run.duplicados;
  if (distinct < 3) {
    throw Failure(fmt::format("{}: only {} distinct plan positions among {} points; a surface needs 3", what, distinct,
                              run.aceptados));
  }
  const std::uint64_t rejected = run.porPendiente + run.porAltura + run.porIntensidad + run.porLongitud;
  if (rejected == 0) {
    throw Failure(
        hull ? fmt::format("{}: all points lie on one line in plan; there is no surface over them", what)
             : fmt::format("{}: all points lie on one line in plan, or nearly so; without --border frame, points that "
                           "are not on a line have a surface",
                           what));
  }
  throw Failure(
      fmt::format("{}: the filters reject all {} triangles (slope {}, height difference {}, intensity difference "
                  "{}, longest side {}): widen them",
                  what, rejected, run.porPendiente, run.porAltura, run.porIntensidad, run.porLongitud));
}

/// An update of which nothing passes the filters would add nothing in silence.
void warnOfFiltered(std::string const& file, CResumenPlano const& run, std::uint64_t points, HostApp& app) {
  if (run.ofrecidos != 0) return;
  app.warn(
      fmt::format("{}: none of its {} points passes the filters; points of text without a column class have "
                  "class 0",
                  file, withThousands(points)));
}

void requireOutputsOf(TinOptions const& options) {
  std::vector<std::string> inputs = options.cloud.inputs;
  if (!options.update.empty()) inputs.push_back(options.update);
  requireOutputs({options.output, options.outline}, inputs);
  if (options.outline.empty() || options.overwrite) return;
  VectorOutput::requireNoOtherLayers(options.outline, outlineLayer(0).name);
}

void tell(Summary& summary, TinResult const& made, TinOptions const& options) {
  CResumenPlano const& run = made.run;
  const std::uint64_t vertices = run.vertices, triangles = run.triangulos, rings = run.anillos;
  summary.headline(fmt::format("{}: {} triangles over {} points, {} of outline", options.output,
                               withThousands(triangles), withThousands(vertices),
                               rings == 1 ? "1 ring" : fmt::format("{} rings", withThousands(rings))));
  summary.points({{"points_accepted", run.aceptados, "accepted"},
                  {"duplicates", run.duplicados, "duplicate"},
                  {"refused", run.rechazados, "refused"}});
  summary.fact("vertices", vertices);
  summary.fact("triangles", triangles);
  summary.fact("hull_triangles", run.completados);
  if (!options.update.empty()) {
    summary.fact("added", run.anadidos);
    summary.line("update", fmt::format("{} of its points added", withThousands(run.anadidos)));
  }
  summary.counts("rejected", {{"slope", run.porPendiente, "by slope"},
                              {"height_difference", run.porAltura, "by height difference"},
                              {"intensity_difference", run.porIntensidad, "by intensity difference"},
                              {"max_side", run.porLongitud, "by longest side"}});
  summary.fact("rings", rings);
  summary.resident("triangles", run.picoVivos, run.enlazados);
  summary.seconds.spent("fill", run.segundosRellena);
  summary.seconds.spent("link", run.segundosEnlaza);
  summary.seconds.spent("generate", run.segundosGenera);
}

void runTin(TinOptions const& options, CommonOptions const& common, HostApp& app) {
  Summary summary;
  GuardaMemoriaLibre();
  ModelOutput output(options.output);
  if (!options.outline.empty()) VectorOutput::requireFormat(options.outline);
  const TinFilters filters(options);
  const LoadOptions load = loadOptionsOf(options.cloud);
  requireOutputsOf(options);

  std::vector<std::vector<std::string>> groups{options.cloud.inputs};
  if (!options.update.empty()) groups.push_back({options.update});
  std::vector<LoadedCloud> clouds = summary.seconds.timed("read", [&] { return loadClouds(groups, load, app); });
  for (LoadedCloud const& cloud : clouds) summary.read(cloud);
  const ReferenceSystem system = clouds[0].system;
  output.lieIn(system);
  std::optional<VectorOutput> outline;
  if (!options.outline.empty()) outline.emplace(options.outline, system, outlineLayer(clouds[0].seed.precision));

  const bool hilbert = options.cloud.hilbert();
  Drawings drawings = summary.seconds.timed("order", [&] { return Drawings(clouds, hilbert, app); });
  TinResult made = triangulate(drawings, options, filters, output);
  if (!options.update.empty()) warnOfFiltered(options.update, made.run, clouds[1].pointsRead, app);
  requireTriangles(made, options.cloud.what(), options.cloud.fillsHull());
  tell(summary, made, options);

  if (made.tin == nullptr) {
    output.commit();
    summary.seconds.spent("write", made.run.segundosEscribe);
  } else {
    CModeloDigital model(made.tin.release());
    summary.seconds.timed("write", [&] {
      if (outline) addOutline(model.Tin(), *outline);
      if (outline) outline->finish();
      output.write(model);
      if (outline) outline->commit();
    });
  }
  summary.print(common, app);
}

void addTinOptions(CLI::App& verb, TinOptions& o) {
  addCloudOptions(verb, o.cloud);
  addBorderOption(verb, o.cloud);
  verb.add_option("-o,--output", o.output, "The model: .ply, .obj, .2dm, .xml (LandXML 1.2) or .urd (native)")
      ->required();
  verb.add_option("--outline", o.outline,
                  "Write the outline too, as polygons with holes: .gpkg, .geojson, .fgb, .shp or .dxf");
  verb.add_flag("--overwrite", o.overwrite, "With --outline: replace a GeoPackage that holds other layers");
  verb.add_option("--max-side", o.maxSide, "Longest side of a triangle in plan, in units of the input; 0 is any")
      ->capture_default_str()
      ->check(fromZeroUp());
  verb.add_option("--slope", o.slope, "MIN:MAX slope of a triangle, degrees from 0 to 90 (default: any)");
  verb.add_option("--height-difference", o.heightDifference,
                  "MIN:MAX difference of height along each side, in units of the input (default: any)");
  verb.add_option("--intensity-difference", o.intensityDifference,
                  "MIN:MAX difference of intensity along each side (default: any)");
  auto* tolerance =
      verb.add_option("--tolerance", o.tolerance,
                      "With --update: the most that an added point may lie above the surface, in units of "
                      "the input; 0 is any")
          ->capture_default_str()
          ->check(fromZeroUp());
  auto* update = verb.add_option("--update", o.update, "Add the points of this file in the end, under --tolerance");
  tolerance->needs(update);
}

}  // namespace

void addTin(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<TinOptions>(program, "tin", "Make a triangulated terrain model of clouds", common, chosen, addTinOptions,
                      runTin);
}

}  // namespace Meseta47::host
