// urdimbre check: proves a model.
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/JsonOutput.h"
#include "host/mesh/ModelCheck.h"
#include "host/mesh/SpaceCheck.h"
#include "host/mesh/SurfaceSource.h"
#include "host/mesh/Tin3d.h"
#include "host/verbs/Verbs.h"

namespace Meseta47::host {

namespace {

struct CheckOptions {
  std::string file;
  bool whole = false;
};

nlohmann::ordered_json toJson(std::string const& file, ModelReport const& r, int precision) {
  auto faults = nlohmann::ordered_json::array();
  for (ModelFault const& fault : r.faults) {
    faults.push_back({{"kind", fault.name()}, {"count", fault.count}, {"first", fault.first}});
  }
  return {
      {"file", file},       {"sound", r.faults.empty()}, {"precision", precision}, {"vertices", r.vertices},
      {"unused", r.unused}, {"triangles", r.triangles},  {"sides", r.sides},       {"boundary_sides", r.boundarySides},
      {"pieces", r.pieces}, {"rings", r.rings},          {"faults", faults}};
}

void printSummary(std::string const& file, ModelReport const& r, int precision) {
  fmt::print("{}: {}\n", file, r.faults.empty() ? "sound" : "not sound");
  fmt::print("precision  {} decimals\n", precision);
  fmt::print("vertices   {}, {} unused\n", withThousands(r.vertices), withThousands(r.unused));
  fmt::print("triangles  {} in {} {}\n", withThousands(r.triangles), withThousands(r.pieces),
             r.pieces == 1 ? "piece" : "pieces");
  fmt::print("sides      {}, {} of them on the boundary, in {} {}\n", withThousands(r.sides),
             withThousands(r.boundarySides), withThousands(r.rings), r.rings == 1 ? "ring" : "rings");
}

/// A line for each kind.
template <class Fault>
std::string textOf(std::string const& file, std::vector<Fault> const& faults) {
  std::string text;
  for (Fault const& fault : faults) text += fmt::format("{}: {}\n", file, fault.text());
  return text;
}

nlohmann::ordered_json toJson(std::string const& file, SpaceReport const& r, int precision) {
  auto faults = nlohmann::ordered_json::array();
  for (SpaceFault const& fault : r.faults) {
    faults.push_back({{"kind", fault.name()}, {"count", fault.count}, {"first", fault.first}});
  }
  return {{"file", file},           {"sound", r.faults.empty()},         {"precision", precision},
          {"vertices", r.vertices}, {"tetrahedra", r.tetrahedra},        {"faces", r.faces},
          {"edges", r.edges},       {"boundary_faces", r.boundaryFaces}, {"pieces", r.pieces},
          {"volume", r.volume},     {"share_of_hull", r.hullShare},      {"faults", faults}};
}

void printSummary(std::string const& file, SpaceReport const& r, int precision) {
  fmt::print("{}: {}\n", file, r.faults.empty() ? "sound" : "not sound");
  fmt::print("precision  {} decimals\n", precision);
  fmt::print("tetrahedra {} over {} vertices, in {} {}\n", withThousands(r.tetrahedra), withThousands(r.vertices),
             withThousands(r.pieces), r.pieces == 1 ? "piece" : "pieces");
  fmt::print("faces      {}, {} of them on the boundary\n", withThousands(r.faces), withThousands(r.boundaryFaces));
  fmt::print("volume     {:.6g}, {:.9g} of the convex hull's\n", r.volume, r.hullShare);
}

template <class Report>
void tell(std::string const& file, Report const& report, int precision, CommonOptions const& common) {
  if (common.json) {
    printJson(toJson(file, report, precision));
  } else if (!common.quiet) {
    printSummary(file, report, precision);
  }
  if (!report.faults.empty()) throw Failure(textOf(file, report.faults));
}

Steps stepsOf(HostApp& app) {
  return [&app](auto done, auto all) { app.step(done, all); };
}

void runSpaceCheck(CheckOptions const& options, CommonOptions const& common, HostApp& app) {
  app.phase("Reading");
  const ExactSpaceMesh mesh = readSpaceMesh(options.file);
  app.phase("Checking");
  const SpaceReport report = checkSpaceMesh(mesh, options.whole, stepsOf(app));
  app.clearProgress();
  tell(options.file, report, mesh.precision, common);
}

/// With its frame, which a mesh of this kind always fills.
void runFramedCheck(CheckOptions const& options, CommonOptions const& common, HostApp& app) {
  const ExactSpaceMesh mesh = framedMesh(*readTin3d(options.file, std::nullopt, app).mesh);
  if (mesh.tetrahedra.empty()) throw FileError(options.file, "it holds no tetrahedra: there is nothing to prove");
  app.phase("Checking");
  const SpaceReport report = checkSpaceMesh(mesh, true, stepsOf(app));
  app.clearProgress();
  tell(options.file, report, mesh.precision, common);
}

void runCheck(CheckOptions const& options, CommonOptions const& common, HostApp& app) {
  if (isTin3d(options.file)) return runFramedCheck(options, common, app);
  if (isSpaceMesh(options.file)) return runSpaceCheck(options, common, app);
  if (modelKindOf(options.file) == ModelKind::none) {
    throw Failure(
        fmt::format("{}: it is neither a PLY nor the native model nor a mesh in space (.tin3d, .vtu, .mesh, "
                    ".msh): only those can be proved",
                    options.file));
  }
  const ExactModel model = readExactModel(options.file, app);
  app.phase("Checking");
  const ModelReport report = checkModel(model, options.whole, stepsOf(app));
  app.clearProgress();
  tell(options.file, report, model.precision, common);
}

void addCheckOptions(CLI::App& verb, CheckOptions& o) {
  verb.add_option(
          "FILE", o.file,
          "The model: PLY, or .urd as urdimbre tin writes it; or a mesh in space: .vtu, .mesh or .msh, or .tin3d, "
          "which is proved with the frame that it was grown in")
      ->required();
  verb.add_flag(
      "--whole", o.whole,
      "The model was made without filters: it must be one piece without a hole, use every vertex and fill their "
      "convex hull");
}

}  // namespace

void addCheck(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<CheckOptions>(program, "check", "Prove a model: orientation, sides, Delaunay, Euler, outline", common, chosen,
                        addCheckOptions, runCheck);
}

}  // namespace Meseta47::host
