#include "host/CloudOptions.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>
#include <utility>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/Inputs.h"

namespace Meseta47::host {

std::string CloudOptions::what() const {
  return inputs.size() == 1 ? inputs[0] : fmt::format("{} files", inputs.size());
}

void addCloudOptions(CLI::App& verb, CloudOptions& o) {
  verb.add_option(
          "IN", o.inputs,
          "LAS and LAZ files, text files with x y z [intensity] [class], native models (.urd), of which the points are "
          "taken, and vector files with lines, polygons and points that have heights (.gpkg, .shp, .dxf, "
          ".geojson ...); a folder stands for the clouds in it, a pattern such as \"tiles/*.laz\" for the files "
          "that match; together they are one cloud")
      ->required();
  verb.parse_complete_callback([&o] { o.inputs = expandInputs(o.inputs); });
  o.takesVectors = true;
  verb.add_option("--code-field", o.codeField,
                  "Field of a vector file that holds the code of a line or point (default: its layer is its code)");
  verb.add_option("--code", o.codes, "A,B: of vector files, take only entities of these codes (default: all)")
      ->delimiter(',')
      ->allow_extra_args(false);
  verb.add_option("--without-z", o.withoutZ,
                  "What becomes of lines and points without heights in vector files: refuse or skip")
      ->capture_default_str()
      ->check(CLI::IsMember({"refuse", "skip"}));
  verb.add_option("--a-srs", o.system,
                  "Reference system of the input, such as EPSG:25830 (default: what the files say, which must be one)");
  addColumnsOption(verb, o.columns);
  verb.add_option("--z", o.z, "MIN:MAX height of a point, in units of the input (default: any)");
  verb.add_option("--resolution", o.resolution,
                  "Read cloud-optimised files (COPC) only down to points so far apart, in units of the input: a quick "
                  "look (default: all points)")
      ->check(CLI::PositiveNumber);
  verb.add_flag("--partial", o.partial,
                "Take what there is of LAS and LAZ files that are cut short, up to the last whole chunk");
  addPointOptions(verb, o);
}

void addColumnsOption(CLI::App& verb, std::vector<std::string>& columns) {
  verb.add_option("--columns", columns,
                  "What the columns of text files are, such as number,x,y,z or P,N,E,Z,D: x or e, y or n, z or h, "
                  "intensity, class, red, green, blue; any other name is passed over (default: what a first line of "
                  "names or the numbers say; urdimbre info tells)")
      ->delimiter(',')
      ->allow_extra_args(false);
}

void addPointOptions(CLI::App& verb, CloudOptions& o) {
  verb.add_option("--class", o.classes, "Classes to take, such as 2,9 or 2-5 (default: all)");
  verb.add_option("--exclude-class", o.excludedClasses, "Classes to leave out (default: none)");
  verb.add_option("--bounds", o.bounds, "XMIN,YMIN,XMAX,YMAX: take only the points in this box, limits included");
  verb.add_option("--precision", o.precision, "Decimals kept of a coordinate (default: what the files' scales need)")
      ->check(CLI::Range(kFewestDecimals, kMostDecimals));
  verb.add_option("--order", o.order, "Order in which points are linked: hilbert (fast) or file")
      ->capture_default_str()
      ->each([&o](std::string const&) { o.orderGiven = true; })
      ->check(CLI::IsMember({"hilbert", "file"}));
}

void addBorderOption(CLI::App& verb, CloudOptions& o) {
  verb.add_option("--border", o.border,
                  "Where surfaces and outlines end, before any filter: at the convex hull of the points (hull), or "
                  "without the triangles at the rim whose circles reach a corner of the square that lies a tenth of "
                  "the extent around them (frame)")
      ->capture_default_str()
      ->check(CLI::IsMember({"hull", "frame"}));
}

void requireNoCloudOptions(CLI::App const& verb, CloudOptions const& options, std::string const& kind,
                           std::initializer_list<std::string_view> allowed) {
  for (char const* name :
       {"--z", "--class", "--exclude-class", "--bounds", "--precision", "--order", "--border", "--columns",
        "--resolution", "--partial", "--code-field", "--code", "--without-z", "--a-srs"}) {
    if (std::find(allowed.begin(), allowed.end(), name) != allowed.end()) continue;
    CLI::Option const* option = verb.get_option_no_throw(name);
    if (option != nullptr && option->count() != 0) {
      throw UsageError(fmt::format("{}: {} is for clouds, and this is a {}", options.inputs[0], name, kind));
    }
  }
}

namespace {

/// Vertices of survey lines are wanted whatever classes of the cloud are: they get the first that is let in.
std::uint8_t admittedClass(CloudOptions const& options) {
  std::array<bool, 256> in{}, out{};
  if (!options.classes.empty()) in = parseClasses("--class", options.classes);
  if (!options.excludedClasses.empty()) out = parseClasses("--exclude-class", options.excludedClasses);
  for (unsigned c = 0; c < in.size(); ++c) {
    if ((options.classes.empty() || in[c]) && !out[c]) return static_cast<std::uint8_t>(c);
  }
  return 0;
}

MapOptions mapOptionsOf(CloudOptions const& options) {
  MapOptions map;
  map.vectors = {options.codeField, options.codes, options.withoutZ == "skip", !options.system.empty()};
  if (!options.system.empty()) map.system = ReferenceSystem::fromUser(options.system);
  map.vertexClass = admittedClass(options);
  return map;
}

}  // namespace

LoadOptions loadOptionsOf(CloudOptions const& options) {
  LoadOptions load;
  load.precision = options.precision;
  load.columns.names = options.columns;
  load.partial = options.partial;
  load.resolution = options.resolution;
  if (!options.bounds.empty()) load.bounds = parseBounds(options.bounds);
  if (options.takesVectors) load.map = mapOptionsOf(options);
  return load;
}

CDataTriangulacion filtersOf(CloudOptions const& options) {
  constexpr double kAnything = std::numeric_limits<double>::infinity();
  CDataTriangulacion data;
  if (!options.z.empty()) {
    const Limits z = parseLimits("--z", options.z, -kAnything, kAnything);
    data.zMin = asLeast(z.min);
    data.zMax = asMost(z.max);
  }
  if (!options.classes.empty()) data.incluidos = classTable(parseClasses("--class", options.classes));
  if (!options.excludedClasses.empty()) {
    data.excluidos = classTable(parseClasses("--exclude-class", options.excludedClasses));
  }
  return data;
}

CDigiTab classTable(std::array<bool, 256> const& classes) {
  CDigiTab table;
  for (unsigned c = 0; c < classes.size(); ++c) {
    if (classes[c]) {
      const CString code(std::to_string(c).c_str());
      table.Inserta(CElementoDigiTab(ENTIDAD_LINEA, code, 70, 70, 70, 0, 0, L"", 1), false);
    }
  }
  return table;
}

std::vector<tipoAero3> surveyData(std::vector<Rgb8> const& colours) {
  if (std::all_of(colours.begin(), colours.end(), [](Rgb8 const& c) { return c == Rgb8{}; })) return {};
  std::vector<tipoAero3> data(colours.size());
  for (std::size_t i = 0; i < colours.size(); ++i) {
    data[i].rojo = colours[i][0];
    data[i].verde = colours[i][1];
    data[i].azul = colours[i][2];
  }
  return data;
}

CDibujo<int> drawingOf(LoadedCloud& cloud, bool hilbert, HostApp& app, Ties ties, Halves halves) {
  CSetPuntos<int> set(L"CLOUD");
  std::vector<CCoor3D<int>> points = takePoints(cloud, hilbert, ties, halves);
  set.Asigna(std::move(points), surveyData(std::exchange(cloud.colours, {})));
  if (hilbert) app.step(1, 1);
  CDibujo<int> drawing(cloud.seed);
  drawing.tipoNube = 1;
  if (hilbert) cloud.lines.Sort(7, true, -1);  // along a Hilbert curve too
  drawing.Suma(std::move(cloud.lines), false, 0);
  drawing.Inserta(std::move(set));
  return drawing;
}

}  // namespace Meseta47::host
