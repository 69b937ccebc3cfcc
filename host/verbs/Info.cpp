// urdimbre info: what is in the files.
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "host/AsprsClasses.h"
#include "host/CloudInfo.h"
#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/Inputs.h"
#include "host/JsonOutput.h"
#include "host/mesh/SpilledMesh.h"
#include "host/mesh/Tin3d.h"
#include "host/verbs/Verbs.h"

namespace Meseta47::host {

namespace {

using Json = nlohmann::ordered_json;

struct InfoOptions {
  std::vector<std::string> files, columns;
  bool partial = false;
};

/// The unit of an axis as a word behind a number; empty when nobody tells.
std::string unitOf(ReferenceSystem const& system, std::size_t axis) {
  if (!system.isKnown()) return {};
  if (axis < 2) return system.unit().name;
  const auto unit = system.heightUnit();
  return unit ? unit->name : std::string();
}

Json toJson(CloudCounts const& counts) {
  Json classes = Json::object(), returns = Json::object();
  for (std::size_t i = 0; i < counts.byClass.size(); ++i) {
    if (counts.byClass[i] != 0) classes[std::to_string(i)] = counts.byClass[i];
  }
  for (std::size_t i = 0; i < counts.byReturn.size(); ++i) {
    if (counts.byReturn[i] != 0) returns[std::to_string(i)] = counts.byReturn[i];
  }
  Json json{{"system", counts.system.label()},
            {"points", counts.points},
            {"duplicates", counts.planDuplicates},
            {"classes", classes},
            {"returns", returns}};
  if (!counts.intensity.isEmpty()) {
    json["intensity"] = {
        {"min", counts.intensity.least}, {"max", counts.intensity.most}, {"varies", counts.intensity.varies()}};
  }
  if (counts.hasColour()) {
    auto const& [r, g, b] = counts.colour;
    json["colour"] = {
        {"min", {r.least, g.least, b.least}}, {"max", {r.most, g.most, b.most}}, {"varies", counts.colourVaries()}};
  }
  if (counts.extent.isEmpty()) return json;
  json["extent"] = {{"min", counts.extent.min}, {"max", counts.extent.max}};
  if (counts.system.isKnown()) {
    json["extent"]["unit"] = unitOf(counts.system, 0);
    json["extent"]["height_unit"] = unitOf(counts.system, 2);
  }
  return json;
}

void addFacts(Json& json, LasFacts const& las) {
  LasHeader const& h = las.header;
  json["format"] = las.compression ? "LAZ" : "LAS";
  json["version"] = fmt::format("{}.{}", h.versionMajor, h.versionMinor);
  json["point_format"] = h.pointFormat;
  json["record_length"] = h.recordLength;
  json["scale"] = h.scale;
  json["offset"] = h.offset;
  json["system_id"] = h.systemId;
  json["software"] = h.software;
  json["records"] = las.records;
  if (las.missing != 0) json["missing_points"] = las.missing;
  if (!las.octree) return;
  json["octree"] = {{"nodes", las.octree->nodes},
                    {"levels", las.octree->levels},
                    {"spacing", las.octree->spacing},
                    {"finest_spacing", las.octree->finestSpacing}};
}

void addFacts(Json& json, TextFacts const& text) {
  json["format"] = "text";
  json["columns"] = text.columns;
  json["columns_from"] = text.from;
}

void addFacts(Json& json, ModelFacts const& model) {
  json["format"] = "native model";
  json["triangles"] = model.triangles;
  json["rings"] = model.rings;
}

void addFacts(Json& json, VectorFacts const& vector) {
  json["format"] = "vector";
  json["lines"] = vector.lines;
  json["point_sets"] = vector.sets;
  json["without_z"] = vector.withoutZ;
  json["at_zero"] = vector.atZero;
  json["codes"] = vector.codes;
}

Json toJson(CloudFileInfo const& file) {
  Json json{{"file", file.name}};
  if (file.las) addFacts(json, *file.las);
  if (file.text) addFacts(json, *file.text);
  if (file.model) addFacts(json, *file.model);
  if (file.vector) addFacts(json, *file.vector);
  json["precision"] = file.precision;
  json.update(toJson(static_cast<CloudCounts const&>(file)));
  if (!file.systemProblem.empty()) json["system_problem"] = file.systemProblem;
  return json;
}

/// What searches by intensity and by colour have to go by.
void printLooks(CloudCounts const& counts) {
  if (!counts.intensity.isEmpty()) {
    fmt::print("  intensity   {}{}\n", counts.intensity.least,
               counts.intensity.varies() ? fmt::format(" to {}", counts.intensity.most) : " throughout");
  }
  if (!counts.hasColour()) return;
  auto const& [r, g, b] = counts.colour;
  fmt::print("  colour      {},{},{}{}\n", r.least, g.least, b.least,
             counts.colourVaries() ? fmt::format(" to {},{},{} (8 bits)", r.most, g.most, b.most) : " throughout");
}

void print(CloudCounts const& counts) {
  fmt::print("  points      {}\n", withThousands(counts.points));
  fmt::print("  duplicates  {} in plan\n", withThousands(counts.planDuplicates));
  if (!counts.extent.isEmpty()) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::string unit = unitOf(counts.system, axis);
      fmt::print("  {}           {:.{}f} to {:.{}f}{}{}\n", "xyz"[axis], counts.extent.min[axis],
                 axis < 2 && counts.system.isGeographic() ? 7 : 3, counts.extent.max[axis],
                 axis < 2 && counts.system.isGeographic() ? 7 : 3, unit.empty() ? "" : " ", unit);
    }
  }
  printLooks(counts);
  for (std::size_t c = 0; c < counts.byClass.size(); ++c) {
    if (counts.byClass[c] != 0) fmt::print("  class {:<5} {} {}\n", c, withThousands(counts.byClass[c]), className(c));
  }
  for (std::size_t r = 0; r < counts.byReturn.size(); ++r) {
    if (counts.byReturn[r] != 0) fmt::print("  return {:<4} {}\n", r, withThousands(counts.byReturn[r]));
  }
}

void printSystem(ReferenceSystem const& system, std::string const& problem) {
  fmt::print("  system      {}\n", problem.empty() ? system.label() : "not settled: " + problem);
}

std::string describe(LazScheme const& scheme) {
  constexpr std::string_view kHow[] = {"as one stream", "in chunks", "in chunks of layers"};
  const auto how = kHow[static_cast<unsigned>(scheme.kind)];
  const std::string size = scheme.isVariable()  ? ", of varying size"
                           : scheme.isChunked() ? fmt::format(", {} points each", withThousands(scheme.chunkPoints))
                                                : "";
  return fmt::format("{}{}, version {}", how, size, scheme.itemVersion);
}

void print(LasFacts const& las) {
  LasHeader const& h = las.header;
  fmt::print("  format      {} {}.{}, point format {}, {} bytes a point, {} variable length records\n",
             las.compression ? "LAZ" : "LAS", h.versionMajor, h.versionMinor, h.pointFormat, h.recordLength,
             las.records);
  if (las.compression) fmt::print("  compressed  {}\n", describe(*las.compression));
  if (las.octree) {
    fmt::print("  octree      COPC, {} nodes in {} levels, points {:g} apart in the first and {:g} in the last\n",
               withThousands(las.octree->nodes), las.octree->levels, las.octree->spacing, las.octree->finestSpacing);
  }
  fmt::print("  scale       {} {} {}\n", h.scale[0], h.scale[1], h.scale[2]);
  fmt::print("  offset      {} {} {}\n", h.offset[0], h.offset[1], h.offset[2]);
  if (las.missing != 0) {
    fmt::print("  cut short   {} of the points that it promises are missing\n", withThousands(las.missing));
  }
  if (!h.systemId.empty() || !h.software.empty()) fmt::print("  made by     {} {}\n", h.systemId, h.software);
}

void print(TextFacts const& text) {
  fmt::print("  format      text\n");
  std::string columns;
  for (std::size_t i = 0; i < text.columns.size(); ++i) {
    columns +=
        fmt::format("{}{} {}", i == 0 ? "" : ", ", i + 1, text.columns[i] == "-" ? "(passed over)" : text.columns[i]);
  }
  fmt::print("  columns     {}: {}; others with --columns\n", text.from, columns);
}

void print(ModelFacts const& model) {
  fmt::print("  format      native model, {} triangles, {}\n", withThousands(model.triangles),
             model.rings == 1 ? "1 ring of outline" : fmt::format("{} rings of outline", withThousands(model.rings)));
}

void print(VectorFacts const& vector) {
  fmt::print("  format      vector, {} lines and {} sets of points\n", withThousands(vector.lines),
             withThousands(vector.sets));
  if (vector.withoutZ != 0) fmt::print("  without z   {} geometries\n", withThousands(vector.withoutZ));
  if (vector.atZero != 0) fmt::print("  at height 0 {} lines and sets of points\n", withThousands(vector.atZero));
  for (auto const& [code, count] : vector.codes) fmt::print("  code        {}: {}\n", code, withThousands(count));
}

void print(CloudFileInfo const& file) {
  fmt::print("{}\n", file.name);
  if (file.las) print(*file.las);
  if (file.text) print(*file.text);
  if (file.model) print(*file.model);
  if (file.vector) print(*file.vector);
  printSystem(file.system, file.systemProblem);
  fmt::print("  precision   {} decimals\n", file.precision);
  print(static_cast<CloudCounts const&>(file));
}

/// A mesh in space: what its tetrahedra fill.
struct MeshFacts {
  std::string name;
  int version = 0, precision = 0;
  std::uint64_t points = 0, vertices = 0, tetrahedra = 0, framed = 0, hullFaces = 0;
  double volume = 0, area = 0;
  std::array<double, 3> least{}, greatest{};
};

double areaOf(SpaceMesh const& mesh) {
  double sum = 0;
  for (HullFace const& f : mesh.hull) {
    const auto a = mesh.place(mesh.vertices[f[0]]), b = mesh.place(mesh.vertices[f[1]]),
               c = mesh.place(mesh.vertices[f[2]]);
    const double u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]}, v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    sum += std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]) / 2;
  }
  return sum;
}

MeshFacts meshFactsOf(std::string const& path, HostApp& app) {
  Tin3d tin3d = readTin3d(path, std::nullopt, app);
  CTriangulacion3D& mesh = *tin3d.mesh;
  MeshFacts facts{path, tin3d.version, mesh.Semilla().precision, mesh.CantidadPuntos()};
  const CMaximas<double> box = mesh.GetMaximasDouble();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto at = [axis](CCoor3D<double> const& p) { return axis == 0 ? p.x : (axis == 1 ? p.y : p.z); };
    facts.least[axis] = at(box.Minimo) + mesh.Semilla().origen[axis];
    facts.greatest[axis] = at(box.Maximo) + mesh.Semilla().origen[axis];
  }
  if (mesh.CantidadTetraedros() == 0) return facts;
  const SpilledMesh whole(mesh, path, app);
  facts.vertices = whole.mesh().vertices.size();
  facts.tetrahedra = whole.mesh().tetrahedra;
  facts.framed = mesh.CantidadTetraedros();
  facts.hullFaces = whole.mesh().hull.size();
  facts.volume = whole.volume();
  facts.area = areaOf(whole.mesh());
  return facts;
}

Json toJson(MeshFacts const& m) {
  return {{"file", m.name},
          {"format", "TIN3D"},
          {"version", m.version},
          {"precision", m.precision},
          {"points", m.points},
          {"vertices", m.vertices},
          {"tetrahedra", m.tetrahedra},
          {"tetrahedra_with_frame", m.framed},
          {"hull_faces", m.hullFaces},
          {"volume", m.volume},
          {"area", m.area},
          {"extent", {{"min", m.least}, {"max", m.greatest}}}};
}

void print(MeshFacts const& m) {
  fmt::print("{}\n  format      TIN3D, version {}\n  precision   {} decimals\n", m.name, m.version, m.precision);
  fmt::print("  points      {}, {} of them vertices\n", withThousands(m.points), withThousands(m.vertices));
  fmt::print("  tetrahedra  {}, in the file {} with those of the frame\n", withThousands(m.tetrahedra),
             withThousands(m.framed));
  fmt::print("  hull        volume {:.6g}, area {:.6g}, {} faces\n", m.volume, m.area, withThousands(m.hullFaces));
  for (std::size_t axis = 0; axis < 3; ++axis) {
    fmt::print("  {}           {:.3f} to {:.3f}\n", "xyz"[axis], m.least[axis], m.greatest[axis]);
  }
}

/// Meshes apart from clouds: they are not added up.
std::vector<MeshFacts> takeMeshes(std::vector<std::string>& files, HostApp& app) {
  std::vector<MeshFacts> meshes;
  for (std::string const& file : files) {
    if (isTin3d(file)) meshes.push_back(meshFactsOf(file, app));
  }
  std::erase_if(files, isTin3d);
  return meshes;
}

void runInfo(InfoOptions const& options, CommonOptions const& common, HostApp& app) {
  app.phase("Reading");
  std::uint64_t seen = 0;
  const auto step = [&](std::uint64_t points) {
    app.step(seen = points, 0);
    return true;
  };
  std::vector<std::string> files = expandInputs(options.files);
  const std::vector<MeshFacts> meshes = takeMeshes(files, app);
  const auto info = gatherInfo(files, step, {options.columns}, options.partial);
  if (!info) throw Cancelled();
  app.clearProgress();
  if (common.json) {
    Json json{{"files", Json::array()}};
    if (meshes.empty() || !info->files.empty()) json["all"] = toJson(info->all);
    for (MeshFacts const& mesh : meshes) json["files"].push_back(toJson(mesh));
    if (!info->systemProblem.empty()) json["all"]["system_problem"] = info->systemProblem;
    for (CloudFileInfo const& file : info->files) json["files"].push_back(toJson(file));
    printJson(json);
    return;
  }
  for (MeshFacts const& mesh : meshes) print(mesh);
  for (CloudFileInfo const& file : info->files) print(file);
  if (info->files.size() > 1) {
    fmt::print("all {} files\n", info->files.size());
    printSystem(info->all.system, info->systemProblem);
    print(info->all);
  }
}

void addInfoOptions(CLI::App& verb, InfoOptions& o) {
  verb.add_option("IN", o.files,
                  "LAS, LAZ or text files, native models (.urd), meshes in space (.tin3d), vector files; a folder "
                  "stands for the clouds in it, "
                  "a pattern such as \"tiles/*.laz\" for the files that match")
      ->required();
  verb.add_flag("--partial", o.partial,
                "Take what there is of LAS and LAZ files that are cut short, up to the last whole chunk");
  addColumnsOption(verb, o.columns);
}

}  // namespace

void addInfo(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<InfoOptions>(program, "info",
                       "Tell what is in the files: format, reference system, extent, classes, duplicates", common,
                       chosen, addInfoOptions, runInfo);
}

}  // namespace Meseta47::host
