// urdimbre contour: clouds in, contour lines out, with no model between them.
#include <array>
#include <fmt/format.h>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/JsonOutput.h"
#include "host/NumberCheck.h"
#include "host/OutputCheck.h"
#include "host/Stopwatch.h"
#include "host/vector/ContourLayer.h"
#include "host/verbs/Verbs.h"
#include "planar/CNivelDeCurvas.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CFile.h"
#include "platform/Proceso.h"
#include "platform/Temporales.h"
#include "run/CFiltroPuntos.h"

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

struct Seconds {
  double read = 0, order = 0, contour = 0, write = 0, total = 0;
};

struct ContourSummary {
  std::uint64_t pointsRead = 0;
  LineCounts lines;
  ReferenceSystem system;
  CResumenPlano run;
  ContourCounts found;
  Seconds seconds;
};

/// Lowest and greatest height of the points that take part, in scaled units.
struct Heights {
  int low = std::numeric_limits<int>::max(), high = std::numeric_limits<int>::min();
};

Heights heightsOf(CDibujo<int> const& drawing, CDataTriangulacion const& filters) {
  const CFiltroPuntos filter(filters, drawing.semilla.Precision(), drawing);
  Heights heights;
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    if (!filter.AdmiteEntidad(drawing[e])) continue;
    for (CCoor3D<int> const& p : drawing[e].Puntos()) {
      if (!filter.AdmitePunto(p)) continue;
      heights.low = std::min(heights.low, p.z);
      heights.high = std::max(heights.high, p.z);
    }
  }
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

nlohmann::ordered_json toJson(ContourSummary const& s) {
  return {{"points_read", s.pointsRead},
          {"points_accepted", s.run.aceptados},
          {"duplicates", s.run.duplicados},
          {"lines", s.lines.lines},
          {"line_points", s.lines.points},
          {"skipped_without_z", s.lines.withoutZ},
          {"system", s.system.label()},
          {"contours", s.found.contours},
          {"closed", s.found.closed},
          {"index", s.found.index},
          {"levels", s.found.levels},
          {"lowest", s.found.lowest},
          {"highest", s.found.highest},
          {"vertices", s.found.vertices},
          {"length", s.found.length},
          {"too_short", s.found.tooShort},
          {"linked_triangles", s.run.enlazados},
          {"peak_live_triangles", s.run.picoVivos},
          {"seconds",
           {{"read", s.seconds.read},
            {"order", s.seconds.order},
            {"contour", s.seconds.contour},
            {"write", s.seconds.write},
            {"total", s.seconds.total}}},
          {"peak_memory_bytes", MemoriaResidenteMaxima()}};
}

void printSummary(ContourSummary const& s, std::string const& output) {
  const auto n = [](std::uint64_t value) { return withThousands(value); };
  fmt::print("{}: {} contours on {} levels from {} to {}, {} closed, {} of index\n", output, n(s.found.contours),
             n(s.found.levels), s.found.lowest, s.found.highest, n(s.found.closed), n(s.found.index));
  fmt::print("length     {:.1f} in all, {} vertices, {} contours left out as too short\n", s.found.length,
             n(s.found.vertices), n(s.found.tooShort));
  if (s.system.isKnown()) fmt::print("system     {}\n", s.system.label());
  if (s.lines.any()) fmt::print("lines      {}\n", s.lines.text());
  fmt::print("points     {} read, {} accepted, {} duplicate\n", n(s.pointsRead), n(s.run.aceptados),
             n(s.run.duplicados));
  fmt::print("seconds    read {:.2f}, order {:.2f}, contour {:.2f}, write {:.2f}, total {:.2f}\n", s.seconds.read,
             s.seconds.order, s.seconds.contour, s.seconds.write, s.seconds.total);
  fmt::print("memory     {:.0f} MB at most\n", static_cast<double>(MemoriaResidenteMaxima()) / 1e6);
}

/// A file in the folder for temporary files, of which nothing is left however the run ends.
class TemporaryFile {
 public:
  TemporaryFile() {
    std::array<wchar_t, MAX_PATH> folder{};
    const unsigned long length = GetTempPathW(MAX_PATH, folder.data());
    folder_ = length == 0 || length >= MAX_PATH ? L"." : folder.data();
    static_cast<void>(file_.AbreTemporal(folder_, L"curvas"));
    check();
  }

  [[nodiscard]] CFile* file() { return &file_; }
  /// Throws Failure when the disk refused something.
  void check() const {
    if (!file_.HayError()) return;
    throw Failure(fmt::format("temporary folder {}: {}: make room or name another with --temp-dir", folder_.Utf8(),
                              file_.Error(L"what the run needs there").Utf8()));
  }

 private:
  CString folder_;
  CFile file_;
};

/// Contours of a drawing, as they are found, at their own heights. The drawing is emptied on the way.
void writeContours(CDibujo<int>& drawing, ContourOptions const& options, ContourLevels const& levels,
                   VectorOutput& output, ContourSummary& summary, HostApp& app) {
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
    const Stopwatch writing;
    if (received++ == 0) app.phase("Writing");
    for (std::size_t i = 0; i < level.Cantidad(); ++i) {
      app.step(received, all);
      CLinea<int> line = level.Linea(i);
      line.Mover(0, 0, levels.shift());
      writer.add(line);
    }
    summary.seconds.write += writing.seconds();
  };
  CTriangulacion2D triangulation(0, drawing.semilla, shifted(filters, -levels.shift(), units), 1);
  triangulation.SinMarco(options.cloud.fillsHull());
  TemporaryFile pieces;
  const int code =
      triangulation.Curvado(drawing, write, safeMaxSide(options.maxSide, units), levels.safeInterval(), nullptr, true,
                            pieces.file(), options.flat == "sides" ? CLlanos::LADOS : CLlanos::ORILLA);
  pieces.check();
  requireRoom(triangulation.Resumen(), seed.precision, options.cloud.what());
  requireRun(code, options.cloud.what(), 0);
  summary.run = triangulation.Resumen();
  summary.found = writer.counts();
  requireContours(summary.found, options.cloud.what());
}

void runContour(ContourOptions const& options, CommonOptions const& common, HostApp& app) {
  const Stopwatch whole;
  VectorOutput::requireFormat(options.output);
  requireOutputs({options.output}, options.cloud.inputs);
  if (!options.overwrite) VectorOutput::requireNoOtherLayers(options.output, contourLayer(0).name);
  LoadOptions load = loadOptionsOf(options.cloud);
  load.moreDecimals = kMoreDecimals;
  ContourSummary summary;
  LoadedCloud cloud =
      timed(summary.seconds.read, [&] { return std::move(loadClouds({options.cloud.inputs}, load, app).front()); });
  summary.pointsRead = cloud.pointsRead;
  summary.lines.add(cloud);
  summary.system = cloud.system;
  const ContourLevels levels(options.interval, options.base, cloud.seed.precision);
  VectorOutput output(options.output, cloud.system, contourLayer(cloud.seed.precision));

  const bool hilbert = options.cloud.hilbert();
  if (hilbert) app.phase("Ordering");
  CDibujo<int> drawing = timed(summary.seconds.order, [&] { return drawingOf(cloud, hilbert, app); });
  const Stopwatch contouring;
  writeContours(drawing, options, levels, output, summary, app);
  summary.seconds.contour = contouring.seconds() - summary.seconds.write;

  const Stopwatch writing;
  output.commit();
  summary.seconds.write += writing.seconds();
  summary.seconds.total = whole.seconds();
  app.clearProgress();
  if (common.json) {
    printJson(toJson(summary));
  } else if (!common.quiet) {
    printSummary(summary, options.output);
  }
}

}  // namespace

void addContour(CLI::App& program, CommonOptions const& common, Work& chosen) {
  auto options = std::make_shared<ContourOptions>();
  CLI::App* verb = program.add_subcommand("contour", "Draw contour lines of the surface over clouds and survey lines");
  ContourOptions& o = *options;
  addCloudOptions(*verb, o.cloud);
  verb->add_option("-o,--output", o.output, "The contours: .gpkg, .geojson, .fgb, .shp or .dxf")->required();
  verb->add_flag("--overwrite", o.overwrite, "Replace a GeoPackage that holds other layers");
  verb->add_option("--interval", o.interval, "Height between contours, in units of the input")
      ->required()
      ->check(aboveZero());
  verb->add_option("--base", o.base, "Height that contours are counted from, in units of the input")
      ->capture_default_str()
      ->check(anyNumber());
  verb->add_option("--max-side", o.maxSide,
                   "Longest side of a triangle in plan, in units of the input; contours end where longer ones would be "
                   "needed; 0 is any")
      ->capture_default_str()
      ->check(fromZeroUp());
  verb->add_option("--flat", o.flat,
                   "Where the ground lies flat on a level: shore (one line between it and what is higher; a vertex on "
                   "a level counts as below it) or sides (all sides of its triangles)")
      ->capture_default_str()
      ->check(CLI::IsMember({"shore", "sides"}));
  verb->add_option("--index", o.choice.indexEvery, "Every so many levels there is an index contour; 0 is none")
      ->capture_default_str()
      ->check(fromZeroUp());
  verb->add_option("--min-length", o.choice.minLength, "Leave shorter contours out; in plan, in units of the input")
      ->capture_default_str()
      ->check(fromZeroUp());
  verb->callback([options, &common, &chosen] {
    chosen = [options, &common](HostApp& app) { runContour(*options, common, app); };
  });
}

}  // namespace Meseta47::host
