// urdimbre contour: clouds in, contour lines out, with no model between them.
#include <fmt/format.h>
#include <limits>

#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/NumberCheck.h"
#include "host/OutputCheck.h"
#include "host/Summary.h"
#include "host/TemporaryFile.h"
#include "host/vector/ContourLayer.h"
#include "host/verbs/Verbs.h"
#include "planar/CNivelDeCurvas.h"
#include "planar/CTriangulacion2D.h"
#include "run/Recorrido.h"

namespace Meseta47::host {

namespace {

// Contours are cut on a grid finer than the cloud's by a thousandth: on its own, both sides of a sliver are cut at the
// same place, and lines through it break.
constexpr int kMoreDecimals = 3;

struct ContourOptions {
  CloudOptions cloud;
  std::string output;
  bool overwrite = false;
  double interval = 0, base = 0, maxSide = 0;
  std::string flat = "shore";
  ContourChoice choice;
};

/// Lowest and greatest height of the points that take part, in scaled units.
struct Heights {
  int low = std::numeric_limits<int>::max(), high = std::numeric_limits<int>::min();
};

Heights heightsOf(CDibujo<int> const& drawing, CDataTriangulacion const& filters) {
  const CFiltroPuntos filter(filters, drawing.semilla.Precision(), drawing);
  Heights heights;
  RecorrePuntos(drawing, filter, nullptr, [&heights](CLinea<int> const& entity, unsigned, unsigned k) {
    const int z = entity.PunteroAPunto(static_cast<int>(k))->z;
    heights.low = std::min(heights.low, z);
    heights.high = std::max(heights.high, z);
  });
  return heights;
}

void shiftHeights(CDibujo<int>& drawing, int by) {
  if (by == 0) return;
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) drawing[e].Mover(0, 0, by);
}

/// The filters for heights that have been shifted. The window is put half a unit beyond the heights that it lets in, so
/// that no rounding moves its limits.
CDataTriangulacion shifted(CDataTriangulacion filters, int by, double units) {
  constexpr double kSlack = 1e-6;  // of a unit
  filters.zMin = (std::ceil(filters.zMin * units - kSlack) + by - 0.5) / units;
  filters.zMax = (std::floor(filters.zMax * units + kSlack) + by + 0.5) / units;
  return filters;
}

/// The longest side as the library wants it: none would let no triangle through there, and what its product with the
/// scale falls short of a whole unit would be cut off.
double safeMaxSide(double maxSide, double units) {
  constexpr double kLongest = 2147483647;
  const double whole = maxSide == 0 ? kLongest : std::min(std::floor(maxSide * units + 1e-6), kLongest);
  return (whole + 0.25) / units;
}

/// Says why nothing can be drawn, before the work where that is known.
void requireLevels(ContourLevels const& levels, Heights const& heights, double units, std::string const& what) {
  if (heights.low > heights.high) requireDone(kPocosPuntos, what);
  if (heights.low < std::numeric_limits<int>::min() + levels.shift()) {
    throw Failure(fmt::format("{}: the height {} leaves no room in 32 bits for --base: give a lower --precision", what,
                              heights.low / units));
  }
  levels.requireFew(heights.low, heights.high, "the heights");
  if (levels.between(heights.low, heights.high) != 0) return;
  throw Failure(
      fmt::format("{}: no level lies between the heights {} and {}: give a smaller --interval or another "
                  "--base",
                  what, heights.low / units, heights.high / units));
}

void requireContours(ContourCounts const& found, std::string const& what) {
  if (found.contours != 0) return;
  throw Failure(found.tooShort == 0
                    ? fmt::format("{}: no triangle is crossed by a level: give a smaller --interval or a longer "
                                  "--max-side",
                                  what)
                    : fmt::format("{}: all {} contours are shorter than --min-length: give less", what,
                                  withThousands(found.tooShort)));
}

void tell(Summary& summary, CResumenPlano const& run, ContourCounts const& found, std::string const& output) {
  summary.headline(fmt::format("{}: {} contours on {} levels from {} to {}, {} closed, {} of index", output,
                               withThousands(found.contours), withThousands(found.levels), found.lowest, found.highest,
                               withThousands(found.closed), withThousands(found.index)));
  summary.line("length", fmt::format("{:.1f} in all, {} vertices, {} contours left out as too short", found.length,
                                     withThousands(found.vertices), withThousands(found.tooShort)));
  summary.points({{"points_accepted", run.aceptados, "accepted"}, {"duplicates", run.duplicados, "duplicate"}});
  summary.fact("contours", found.contours);
  summary.fact("closed", found.closed);
  summary.fact("index", found.index);
  summary.fact("levels", found.levels);
  summary.fact("lowest", found.lowest);
  summary.fact("highest", found.highest);
  summary.fact("vertices", found.vertices);
  summary.fact("length", found.length);
  summary.fact("too_short", found.tooShort);
  summary.resident("triangles", run.picoVivos, run.enlazados);
}

/// Contours of a drawing, as they are found, at their own heights. The drawing is emptied on the way.
void writeContours(CDibujo<int>& drawing, ContourOptions const& options, ContourLevels const& levels,
                   VectorOutput& output, Summary& summary, HostApp& app) {
  const CDataSemilla seed = drawing.semilla;
  const double units = seed.Precision();
  const CDataTriangulacion filters = shifted(filtersOf(options.cloud), 0, units);
  const Heights heights = heightsOf(drawing, filters);
  requireLevels(levels, heights, units, options.cloud.what());
  const auto all = static_cast<std::uint64_t>(levels.between(heights.low, heights.high));
  shiftHeights(drawing, -levels.shift());
  ContourWriter writer(drawing.semilla, levels, options.choice, output);
  std::uint64_t received = 0;
  const auto write = [&](CNivelDeCurvas const& level) {
    if (received++ == 0) app.phase("Writing");
    for (std::size_t i = 0; i < level.Cantidad(); ++i) {
      app.step(received, all);
      CLinea<int> line = level.Linea(i);
      line.Mover(0, 0, levels.shift());
      writer.add(line);
    }
  };
  const auto writeLevel = [&](CNivelDeCurvas const& level) { summary.seconds.timed("write", [&] { write(level); }); };
  CTriangulacion2D triangulation(0, drawing.semilla, shifted(filters, -levels.shift(), units), 1);
  triangulation.SinMarco(options.cloud.fillsHull());
  TemporaryFile pieces(L"curvas");
  const int code =
      triangulation.Curvado(drawing, writeLevel, safeMaxSide(options.maxSide, units), levels.safeInterval(), nullptr,
                            true, pieces.file(), options.flat == "sides" ? CLlanos::LADOS : CLlanos::ORILLA);
  pieces.check();
  requireRoom(triangulation.Resumen(), seed.precision, options.cloud.what());
  requireRun(code, options.cloud.what(), 0);
  requireContours(writer.counts(), options.cloud.what());
  tell(summary, triangulation.Resumen(), writer.counts(), options.output);
}

void runContour(ContourOptions const& options, CommonOptions const& common, HostApp& app) {
  Summary summary;
  VectorOutput::requireFormat(options.output);
  requireOutputs({options.output}, options.cloud.inputs);
  if (!options.overwrite) VectorOutput::requireNoOtherLayers(options.output, contourLayer(0).name);
  LoadOptions load = loadOptionsOf(options.cloud);
  load.moreDecimals = kMoreDecimals;
  LoadedCloud cloud = summary.seconds.timed("read", [&] { return loadCloud(options.cloud.inputs, load, app); });
  summary.read(cloud);
  const ContourLevels levels(options.interval, options.base, cloud.seed.precision);
  VectorOutput output(options.output, cloud.system, contourLayer(cloud.seed.precision));

  const bool hilbert = options.cloud.hilbert();
  if (hilbert) app.phase("Ordering");
  CDibujo<int> drawing = summary.seconds.timed("order", [&] { return drawingOf(cloud, hilbert, app); });
  summary.seconds.timed("contour", [&] { writeContours(drawing, options, levels, output, summary, app); });
  summary.seconds.timed("write", [&] { output.commit(); });
  summary.print(common, app);
}

void addContourOptions(CLI::App& verb, ContourOptions& o) {
  addCloudOptions(verb, o.cloud);
  addBorderOption(verb, o.cloud);
  verb.add_option("-o,--output", o.output, "The contours: .gpkg, .geojson, .fgb, .shp or .dxf")->required();
  verb.add_flag("--overwrite", o.overwrite, "Replace a GeoPackage that holds other layers");
  verb.add_option("--interval", o.interval, "Height between contours, in units of the input")
      ->required()
      ->check(aboveZero());
  verb.add_option("--base", o.base, "Height that contours are counted from, in units of the input")
      ->capture_default_str()
      ->check(anyNumber());
  verb.add_option("--max-side", o.maxSide,
                  "Longest side of a triangle in plan, in units of the input; contours end where longer ones would be "
                  "needed; 0 is any")
      ->capture_default_str()
      ->check(fromZeroUp());
  verb.add_option("--flat", o.flat,
                  "Where the ground lies flat on a level: shore (one line between it and what is higher; a vertex on "
                  "a level counts as below it) or sides (all sides of its triangles)")
      ->capture_default_str()
      ->check(CLI::IsMember({"shore", "sides"}));
  verb.add_option("--index", o.choice.indexEvery, "Every so many levels there is an index contour; 0 is none")
      ->capture_default_str()
      ->check(wholeFromZeroUp());
  verb.add_option("--min-length", o.choice.minLength, "Leave shorter contours out; in plan, in units of the input")
      ->capture_default_str()
      ->check(fromZeroUp());
}

}  // namespace

void addContour(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<ContourOptions>(program, "contour", "Draw contour lines of the surface over clouds and survey lines", common,
                          chosen, addContourOptions, runContour);
}

}  // namespace Meseta47::host
