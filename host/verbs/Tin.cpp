// urdimbre tin: clouds in, a triangulated terrain model out.
#include <filesystem>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/JsonOutput.h"
#include "host/NumberCheck.h"
#include "host/OutputCheck.h"
#include "host/Stopwatch.h"
#include "host/vector/OutlineLayer.h"
#include "host/verbs/Verbs.h"
#include "model/geometry/CRango.h"
#include "model/terrain/CModeloDigital.h"
#include "planar/CMedidasDeRun.h"
#include "planar/CTriangulacion2D.h"
#include "platform/Proceso.h"
#include "run/CFiltroPuntos.h"

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

struct Seconds {
  double read = 0, order = 0, fill = 0, link = 0, generate = 0, write = 0, total = 0;
};

struct TinSummary {
  std::uint64_t pointsRead = 0;
  LineCounts lines;
  ReferenceSystem system;
  CResumenPlano run;
  std::uint64_t vertices = 0, triangles = 0;
  std::optional<std::uint64_t> added;  ///< points of an update that are in the model
  std::size_t rings = 0, polygons = 0;
  Seconds seconds;
};

int formatOf(std::string const& output) {
  const std::string extension = extensionOf(output);
  if (extension == ".ply") return FORMATO_PLY;
  if (extension == ".obj") return FORMATO_OBJ;
  if (extension == ".2dm") return FORMATO_2DM;
  if (extension == ".xml") return FORMATO_LANDXML;
  if (extension == ".urd") return FORMATO_NATIVO;
  throw UsageError(
      fmt::format("{}: no format has the extension \"{}\": use .ply, .obj, .2dm, .xml (LandXML) or .urd (native)",
                  output, extension));
}

std::optional<Limits> limitsOf(std::string const& option, std::string const& text) {
  if (text.empty()) return std::nullopt;
  return parseLimits(option, text, 0, kLargest);
}

/// A range on differences along the sides of triangles, from limits in units of the input.
std::optional<CRango> rangeOf(std::optional<Limits> const& limits, double scale) {
  if (!limits) return std::nullopt;
  CRango range(kLargest, kLargest, -2147483648.0, kLargest);
  range.SetValorMin(limits->min * scale);
  range.SetValorMax(limits->max * scale);
  return range;
}

CDataTriangulacion filtersOf(TinOptions const& options) {
  CDataTriangulacion data = filtersOf(options.cloud);
  if (!options.slope.empty()) {
    constexpr double kNoLeast = -1;  // below 0, where no slope is
    const Limits slope = parseLimits("--slope", options.slope, 0, 90);
    data.pendienteMin = options.slope.starts_with(':') ? kNoLeast : slope.min;
    data.pendienteMax = slope.max;
  }
  return data;
}

/// Says why there is no surface; the run itself went well.
void requireTriangles(TinSummary const& summary, std::string const& what, bool hull) {
  if (summary.triangles != 0) return;
  const std::uint64_t distinct = summary.run.aceptados - summary.run.duplicados;
  if (distinct < 3) {
    throw Failure(fmt::format("{}: only {} distinct plan positions among {} points; a surface needs 3", what, distinct,
                              summary.run.aceptados));
  }
  const std::uint64_t rejected =
      summary.run.porPendiente + summary.run.porAltura + summary.run.porIntensidad + summary.run.porLongitud;
  if (rejected == 0)
    throw Failure(
        hull ? fmt::format("{}: all points lie on one line in plan; there is no surface over them", what)
             : fmt::format("{}: all points lie on one line in plan, or nearly so; without --border frame, points that "
                           "are not on a line have a surface",
                           what));
  throw Failure(
      fmt::format("{}: the filters reject all {} triangles (slope {}, height difference {}, intensity difference "
                  "{}, longest side {}): widen them",
                  what, rejected, summary.run.porPendiente, summary.run.porAltura, summary.run.porIntensidad,
                  summary.run.porLongitud));
}

nlohmann::ordered_json toJson(TinSummary const& s) {
  nlohmann::ordered_json json{{"points_read", s.pointsRead},
                              {"lines", s.lines.lines},
                              {"line_points", s.lines.points},
                              {"skipped_without_z", s.lines.withoutZ},
                              {"system", s.system.label()},
                              {"points_accepted", s.run.aceptados},
                              {"duplicates", s.run.duplicados},
                              {"refused", s.run.rechazados},
                              {"vertices", s.vertices},
                              {"triangles", s.triangles},
                              {"hull_triangles", s.run.completados},
                              {"rejected",
                               {{"slope", s.run.porPendiente},
                                {"height_difference", s.run.porAltura},
                                {"intensity_difference", s.run.porIntensidad},
                                {"max_side", s.run.porLongitud}}},
                              {"rings", s.rings},
                              {"linked_triangles", s.run.enlazados},
                              {"peak_live_triangles", s.run.picoVivos},
                              {"seconds",
                               {{"read", s.seconds.read},
                                {"order", s.seconds.order},
                                {"fill", s.seconds.fill},
                                {"link", s.seconds.link},
                                {"generate", s.seconds.generate},
                                {"write", s.seconds.write},
                                {"total", s.seconds.total}}},
                              {"peak_memory_bytes", MemoriaResidenteMaxima()}};
  if (s.added) json["added"] = *s.added;
  return json;
}

void printSummary(TinSummary const& s, std::string const& output) {
  const auto n = [](std::uint64_t value) { return withThousands(value); };
  fmt::print("{}: {} triangles over {} points, {} of outline\n", output, n(s.triangles), n(s.vertices),
             s.rings == 1 ? "1 ring" : fmt::format("{} rings", n(s.rings)));
  if (s.system.isKnown()) fmt::print("system     {}\n", s.system.label());
  if (s.lines.any()) fmt::print("lines      {}\n", s.lines.text());
  fmt::print("points     {} read, {} accepted, {} duplicate, {} refused\n", n(s.pointsRead), n(s.run.aceptados),
             n(s.run.duplicados), n(s.run.rechazados));
  if (s.added) fmt::print("update     {} of its points added\n", n(*s.added));
  fmt::print("rejected   {} by slope, {} by height difference, {} by intensity difference, {} by longest side\n",
             n(s.run.porPendiente), n(s.run.porAltura), n(s.run.porIntensidad), n(s.run.porLongitud));
  fmt::print(
      "resident   {} of {} triangles at most at once ({:.1f} %)\n", n(s.run.picoVivos), n(s.run.enlazados),
      100.0 * static_cast<double>(s.run.picoVivos) / static_cast<double>(std::max<std::uint64_t>(s.run.enlazados, 1)));
  fmt::print(
      "seconds    read {:.2f}, order {:.2f}, fill {:.2f}, link {:.2f}, generate {:.2f}, write {:.2f}, total {:.2f}\n",
      s.seconds.read, s.seconds.order, s.seconds.fill, s.seconds.link, s.seconds.generate, s.seconds.write,
      s.seconds.total);
  fmt::print("memory     {:.0f} MB at most\n", static_cast<double>(MemoriaResidenteMaxima()) / 1e6);
}

/// What a format that names its unit says for one of a system.
int unitOf(ReferenceSystem const& system, std::string const& output) {
  constexpr double kFoot = 0.3048, kSurveyFoot = 1200.0 / 3937;
  const PlanUnit unit = system.unit();
  const auto is = [&](double metres) { return std::abs(unit.metres / metres - 1) < 1e-7; };  // the feet differ by 2e-6
  if (is(1)) return UNIDAD_METRO;
  if (is(kFoot)) return UNIDAD_PIE;
  if (is(kSurveyFoot)) return UNIDAD_PIE_TOPOGRAFICO;
  throw Failure(
      fmt::format("{}: LandXML has no coordinates in the unit of {}, which is {}: transform the input, or "
                  "write another format",
                  output, system.label(), unit.name));
}

CDataExportarMDT exportOf(int format, ReferenceSystem const& system, std::string const& output) {
  CDataExportarMDT how(format);
  how.nombre = CString::DesdeUtf8(std::filesystem::path(output).stem().string());
  if (format == FORMATO_LANDXML && system.isKnown()) {
    how.unidad = unitOf(system, output);
    how.sistema = CString::DesdeUtf8(system.name());
    how.epsg = system.epsg();
  }
  return how;
}

void writeModel(CModeloDigital& model, std::string const& output, CDataExportarMDT const& how) {
  const int format = how.formato;
  const CString path = CString::DesdeUtf8(output);
  const int code = format == FORMATO_NATIVO ? model.Write(path, 4) : model.Exportar(path, how);
  if (code == kFicheroInaccesible) {
    throw Failure(
        fmt::format("{}: write into a folder that exists and is yours, with room for the file", model.Error().Utf8()));
  }
  requireDone(code, output);
}

std::uint64_t inMesh(CDibujo<int> const& drawing) {
  std::uint64_t count = 0;
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    auto const& points = drawing[e].Puntos();
    count +=
        static_cast<std::uint64_t>(std::count_if(points.begin(), points.end(), [](auto& p) { return p.num != 0; }));
  }
  return count;
}

/// An update of which nothing passes the filters would add nothing in silence.
void warnOfFiltered(std::string const& file, CDibujo<int> const& added, CDataTriangulacion const& filters,
                    HostApp& app) {
  const CFiltroPuntos filter(filters, added.semilla.Precision(), added);
  for (unsigned e = 0; e < added.Cantidad(); ++e) {
    auto const& points = added[e].Puntos();
    if (!filter.AdmiteEntidad(added[e])) continue;
    if (std::any_of(points.begin(), points.end(), [&](auto& p) { return filter.AdmitePunto(p); })) return;
  }
  app.warn(
      fmt::format("{}: none of its {} points passes the filters; points of text without a column class have "
                  "class 0",
                  file, withThousands(added.nPuntos)));
}

/// What a run takes. It sorts the entities of its first drawing, and lines that came behind the cloud would keep every
/// cell that they touch unfinished to the end: so they are that drawing, and the cloud is a further one, which the run
/// deletes as soon as the model has its points.
struct RunInput {
  CDibujo<int> first;
  std::vector<CDibujo<int>*> others;

  RunInput(LoadedCloud& cloud, bool hilbert, HostApp& app) {
    first = std::move(cloud.lines);
    first.tipoNube = 1;  // filters look at the class of each point, as in the cloud
    cloud.lines.Clear();
    // First points of cells are not looked for in the last place: so nothing stands there.
    others = {new CDibujo<int>(drawingOf(cloud, hilbert, app)), nullptr};
  }
  ~RunInput() {
    for (CDibujo<int> const* const other : others) delete other;
  }
  RunInput(RunInput const&) = delete;
  RunInput& operator=(RunInput const&) = delete;
};

void requireOutputsOf(TinOptions const& options) {
  std::vector<std::string> inputs = options.cloud.inputs;
  if (!options.update.empty()) inputs.push_back(options.update);
  requireOutputs({options.output, options.outline}, inputs);
  if (options.outline.empty() || options.overwrite) return;
  VectorOutput::requireNoOtherLayers(options.outline, outlineLayer(0).name);
}

void runTin(TinOptions const& options, CommonOptions const& common, HostApp& app) {
  const Stopwatch whole;
  GuardaMemoriaLibre();
  formatOf(options.output);
  if (!options.outline.empty()) VectorOutput::requireFormat(options.outline);
  const CDataTriangulacion filters = filtersOf(options);
  const LoadOptions load = loadOptionsOf(options.cloud);
  const std::string what = options.cloud.what();
  const auto heightLimits = limitsOf("--height-difference", options.heightDifference);
  const auto intensityLimits = limitsOf("--intensity-difference", options.intensityDifference);

  TinSummary summary;
  requireOutputsOf(options);
  std::vector<std::vector<std::string>> groups{options.cloud.inputs};
  if (!options.update.empty()) groups.push_back({options.update});
  std::vector<LoadedCloud> clouds = timed(summary.seconds.read, [&] { return loadClouds(groups, load, app); });
  const CDataSemilla seed = clouds[0].seed;
  summary.system = clouds[0].system;
  const CDataExportarMDT how = exportOf(formatOf(options.output), summary.system, options.output);
  std::optional<VectorOutput> outline;
  if (!options.outline.empty()) outline.emplace(options.outline, summary.system, outlineLayer(seed.precision));
  std::uint64_t points = 0;
  for (LoadedCloud const& cloud : clouds) {
    summary.pointsRead += cloud.pointsRead;
    summary.lines.add(cloud);
    points += cloud.points.size() + cloud.lines.nPuntos;
  }
  clouds.resize(2);
  const bool hilbert = options.cloud.hilbert();
  if (hilbert) app.phase("Ordering");
  RunInput input = timed(summary.seconds.order, [&] { return RunInput(clouds[0], hilbert, app); });
  CDibujo<int> extra = timed(summary.seconds.order, [&] { return drawingOf(clouds[1], hilbert, app); });
  requireTempSpace(CMedidasDeRun::BytesDelFichero(points));

  const auto heights = rangeOf(heightLimits, seed.Precision());
  const auto intensities = rangeOf(intensityLimits, 1);
  auto tin = std::make_unique<CTIN>(0, 0, seed);
  tin->conVecinos = how.formato == FORMATO_NATIVO;  // the other formats have no place for them
  CTriangulacion2D triangulation(0, seed, filters, 1);
  triangulation.SinMarco(options.cloud.fillsHull());
  const int code =
      options.update.empty()
          ? triangulation.Run(input.first, *tin, options.maxSide, &input.others, true, nullptr,
                              heights ? &*heights : nullptr, intensities ? &*intensities : nullptr)
          : triangulation.RunAmplia(input.first, *tin, options.maxSide, extra, options.tolerance, &input.others, true,
                                    heights ? &*heights : nullptr, intensities ? &*intensities : nullptr);
  requireRoom(triangulation.Resumen(), seed.precision, what);
  requireRun(code, what, CMedidasDeRun::BytesDelFichero(points));
  input.first.Clear();

  summary.run = triangulation.Resumen();
  if (!options.update.empty()) {
    summary.added = inMesh(extra);
    if (summary.added == 0U) warnOfFiltered(options.update, extra, filters, app);
  }
  extra.Clear();
  summary.triangles = tin->Cantidad();
  summary.rings = tin->Limite().size();
  summary.seconds.fill = summary.run.segundosRellena;
  summary.seconds.link = summary.run.segundosEnlaza;
  summary.seconds.generate = summary.run.segundosGenera;
  requireTriangles(summary, what, options.cloud.fillsHull());
  summary.vertices = tin->puntos.size();
  CModeloDigital model(tin.release());
  timed(summary.seconds.write, [&] {
    if (outline) summary.polygons = addOutline(model.Tin(), *outline);
    if (outline) outline->finish();
    writeModel(model, options.output, how);
    if (outline) outline->commit();
  });
  summary.seconds.total = whole.seconds();

  app.clearProgress();
  if (common.json) {
    printJson(toJson(summary));
  } else if (!common.quiet) {
    printSummary(summary, options.output);
  }
}

}  // namespace

void addTin(CLI::App& program, CommonOptions const& common, Work& chosen) {
  auto options = std::make_shared<TinOptions>();
  CLI::App* verb = program.add_subcommand("tin", "Make a triangulated terrain model of clouds");
  TinOptions& o = *options;
  addCloudOptions(*verb, o.cloud);
  verb->add_option("-o,--output", o.output, "The model: .ply, .obj, .2dm, .xml (LandXML 1.2) or .urd (native)")
      ->required();
  verb->add_option("--outline", o.outline,
                   "Write the outline too, as polygons with holes: .gpkg, .geojson, .fgb, .shp or .dxf");
  verb->add_flag("--overwrite", o.overwrite, "With --outline: replace a GeoPackage that holds other layers");
  verb->add_option("--max-side", o.maxSide, "Longest side of a triangle in plan, in units of the input; 0 is any")
      ->capture_default_str()
      ->check(fromZeroUp());
  verb->add_option("--slope", o.slope, "MIN:MAX slope of a triangle, degrees from 0 to 90 (default: any)");
  verb->add_option("--height-difference", o.heightDifference,
                   "MIN:MAX difference of height along each side, in units of the input (default: any)");
  verb->add_option("--intensity-difference", o.intensityDifference,
                   "MIN:MAX difference of intensity along each side (default: any)");
  auto* tolerance =
      verb->add_option("--tolerance", o.tolerance,
                       "With --update: the most that an added point may lie above the surface, in units of "
                       "the input; 0 is any")
          ->capture_default_str()
          ->check(fromZeroUp());
  auto* update = verb->add_option("--update", o.update, "Add the points of this file in the end, under --tolerance");
  tolerance->needs(update);
  verb->callback(
      [options, &common, &chosen] { chosen = [options, &common](HostApp& app) { runTin(*options, common, app); }; });
}

}  // namespace Meseta47::host
