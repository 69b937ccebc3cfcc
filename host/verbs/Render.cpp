// urdimbre render: a picture of a cloud or a model.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/NumberCheck.h"
#include "host/OutputCheck.h"
#include "host/OutputFile.h"
#include "host/Summary.h"
#include "host/mesh/CutMesh.h"
#include "host/mesh/SurfaceSource.h"
#include "host/render/Picture.h"
#include "host/render/SpaceView.h"
#include "host/verbs/Verbs.h"

namespace Meseta47::host {

namespace {

struct RenderOptions {
  CloudOptions cloud;
  std::string output, size = "1600", view, cut;
  double maxSide = 0, contours = 0;
  bool classes = false;
  CLI::App const* verb = nullptr;
};

void requirePng(std::string const& output) {
  const std::string extension = extensionOf(output);
  if (extension != ".png" && extension != ".PNG") {
    throw UsageError(fmt::format("{}: a picture has the extension .png, not \"{}\"", output, extension));
  }
}

/// A unit as maps write it; degrees and what else is no length stand beside no scale bar.
std::string abbreviation(std::optional<PlanUnit> const& unit) {
  constexpr double kMetresOfAFoot = 0.3048, kMuch = 1e-5;  // the two feet differ by 2e-6: no picture shows that
  if (!unit || unit->metres <= 0) return {};
  if (std::abs(unit->metres - 1) < kMuch) return "m";
  return std::abs(unit->metres / kMetresOfAFoot - 1) < kMuch ? "ft" : unit->name;
}

MappedSurface load(RenderOptions const& options, HostApp& app) {
  auto const& inputs = options.cloud.inputs;
  const auto model =
      std::find_if(inputs.begin(), inputs.end(), [](auto& path) { return modelKindOf(path) != ModelKind::none; });
  if (model == inputs.end()) return triangulateCloud(options.cloud, app);
  if (inputs.size() > 1) throw UsageError(fmt::format("{}: a model is shown alone: give one model, or clouds", *model));
  requireNoCloudOptions(*options.verb, options.cloud, "model", {"--bounds", "--a-srs"});
  Surface surface = readModel(*model, app);
  if (options.classes && surface.classes.empty()) {
    throw Failure(fmt::format("{}: a PLY holds no classes: give the cloud, or the model as .urd", *model));
  }
  MappedSurface mapped{std::move(surface), {}};
  if (!options.cloud.system.empty()) mapped.system = ReferenceSystem::fromUser(options.cloud.system);
  return mapped;
}

void tell(Summary& summary, PictureFacts const& f, std::size_t triangles, std::string const& output) {
  summary.headline(fmt::format("{}: {} by {} pixels, {:.4g} units a pixel, {} triangles", output, f.width, f.height,
                               f.unitsPerPixel, withThousands(triangles)));
  summary.line("heights", fmt::format("{:.2f} to {:.2f}", f.heights.low, f.heights.high));
  if (f.contourLines != 0) summary.line("contours", fmt::format("{} lines", withThousands(f.contourLines)));
  summary.fact("width", f.width);
  summary.fact("height", f.height);
  summary.fact("units_per_pixel", f.unitsPerPixel);
  summary.fact("bounds", {f.view.minX, f.view.minY, f.view.maxX, f.view.maxY});
  summary.fact("heights", {f.heights.low, f.heights.high});
  summary.fact("triangles", triangles);
  summary.fact("contour_lines", f.contourLines);
}

/// Whether what is to be shown is a mesh in space; it is shown alone.
bool isMeshInSpace(RenderOptions const& options) {
  auto const& inputs = options.cloud.inputs;
  const auto mesh = std::find_if(inputs.begin(), inputs.end(), isSpaceMesh);
  if (mesh != inputs.end() && inputs.size() > 1) {
    throw UsageError(fmt::format("{}: a mesh in space is shown alone: give one mesh", *mesh));
  }
  return mesh != inputs.end();
}

/// The outer faces of a mesh in space, cut open on the viewer's side.
Surface loadMesh(RenderOptions const& options, Direction const& from, HostApp& app) {
  requireNoCloudOptions(*options.verb, options.cloud, "mesh", {});
  for (char const* name : {"--classes", "--max-side"}) {
    if (options.verb->get_option(name)->count() != 0) {
      throw UsageError(
          fmt::format("{} is for clouds and models, and {} is a mesh in space", name, options.cloud.what()));
    }
  }
  std::optional<Cut> cut;
  if (!options.cut.empty()) {
    cut = parseCut(options.cut);
    cut->greaterGoes = towards(from)[cut->axis] > 0;
  }
  app.phase("Reading");
  const ExactSpaceMesh mesh = readSpaceMesh(options.cloud.inputs[0]);
  Surface surface = outerFaces(mesh, cut, [&app](auto done, auto all) { app.step(done, all); });
  if (surface.triangles.empty()) {
    throw Failure(fmt::format("{}: nothing is left of the mesh behind --cut {}", options.cloud.what(), options.cut));
  }
  return surface;
}

/// A map has what a view has not, and the other way round.
void requireViewAlone(RenderOptions const& options) {
  for (char const* name : {"--contours", "--bounds"}) {
    if (options.verb->get_option(name)->count() != 0) {
      throw UsageError(fmt::format("{} is for maps, and --view paints none", name));
    }
  }
}

void write(Canvas& picture, std::string const& output) {
  OutputFile file(output);
  picture.writePng(file);
  file.commit();
}

void runView(RenderOptions const& options, CommonOptions const& common, HostApp& app) {
  Summary summary;
  const Direction from = parseDirection(options.view);
  const PictureSize size = parseSize(options.size);
  requireViewAlone(options);
  requireOutputs({options.output}, options.cloud.inputs);
  const bool mesh = isMeshInSpace(options);
  if (!mesh && !options.cut.empty()) {
    throw UsageError(
        fmt::format("--cut opens meshes in space (.vtu, .mesh, .msh), and {} is none", options.cloud.what()));
  }
  Surface surface =
      summary.seconds.timed("load", [&] { return mesh ? loadMesh(options, from, app) : load(options, app).surface; });
  if (options.maxSide > 0) dropLongTriangles(surface, options.maxSide);
  if (surface.triangles.empty()) {
    throw Failure(
        fmt::format("{}: --max-side {:g} leaves no triangle: give more", options.cloud.what(), options.maxSide));
  }
  app.phase("Painting");
  double unitsPerPixel = 0;
  Canvas picture = summary.seconds.timed("paint", [&] {
    return paintFrom(
        surface, from, size, options.classes, [&app](auto done, auto all) { app.step(done, all); }, unitsPerPixel);
  });
  app.phase("Writing");
  summary.seconds.timed("write", [&] { write(picture, options.output); });
  summary.headline(fmt::format("{}: {} by {} pixels, {:.4g} units a pixel, {} triangles", options.output,
                               picture.width(), picture.height(), unitsPerPixel,
                               withThousands(surface.triangles.size())));
  summary.fact("width", picture.width());
  summary.fact("height", picture.height());
  summary.fact("units_per_pixel", unitsPerPixel);
  summary.fact("view", {from.azimuth, from.elevation});
  summary.fact("triangles", surface.triangles.size());
  summary.print(common, app);
}

void runRender(RenderOptions const& options, CommonOptions const& common, HostApp& app) {
  Summary summary;
  requirePng(options.output);
  if (!options.view.empty()) return runView(options, common, app);
  if (!options.cut.empty()) throw UsageError("--cut opens a mesh for a view: say with --view whence");
  if (isMeshInSpace(options)) {
    throw UsageError(fmt::format("{}: there is no map of a mesh in space: say with --view whence it is looked at",
                                 options.cloud.what()));
  }
  PictureOptions how{parseSize(options.size), std::nullopt, options.contours, options.classes, {}, {}};
  if (!options.cloud.bounds.empty()) how.bounds = parseBounds(options.cloud.bounds);
  requireOutputs({options.output}, options.cloud.inputs);

  MappedSurface mapped = summary.seconds.timed("load", [&] { return load(options, app); });
  Surface& surface = mapped.surface;
  ReferenceSystem const& system = mapped.system;
  if (system.isKnown()) how.unit = abbreviation(system.unit());
  how.heightUnit = abbreviation(system.heightUnit());
  if (options.maxSide > 0) dropLongTriangles(surface, options.maxSide);
  if (surface.triangles.empty()) {
    throw Failure(
        fmt::format("{}: --max-side {:g} leaves no triangle: give more", options.cloud.what(), options.maxSide));
  }
  app.phase("Painting");
  PictureFacts facts;
  Canvas picture = summary.seconds.timed("paint", [&] {
    return paintPicture(
        surface, how, [&app](auto done, auto all) { app.step(done, all); }, facts);
  });
  app.phase("Writing");
  summary.seconds.timed("write", [&] { write(picture, options.output); });
  tell(summary, facts, surface.triangles.size(), options.output);
  summary.print(common, app);
}

void addRenderOptions(CLI::App& verb, RenderOptions& o) {
  o.verb = &verb;
  addCloudOptions(verb, o.cloud);
  addBorderOption(verb, o.cloud);
  verb.get_option("IN")->description(
      "LAS, text and vector files, together one cloud; or one model: PLY, or .urd as urdimbre tin writes it; or, with "
      "--view, one mesh in space: .vtu, .mesh or .msh");
  verb.get_option("--bounds")->description("XMIN,YMIN,XMAX,YMAX: show only this box, in units of the input");
  verb.add_option("-o,--output", o.output, "The picture: .png")->required();
  verb.add_option("--size", o.size, "Pixels as WIDTHxHEIGHT, or one number for the longer side")->capture_default_str();
  verb.add_option("--contours", o.contours,
                  "Draw contours at this interval, in units of the input's heights, every fifth of them thicker")
      ->check(aboveZero());
  verb.add_flag("--classes", o.classes, "Colour the points by class, in place of tints of height");
  verb.add_option("--view", o.view,
                  "AZIMUTH,ELEVATION in degrees: paint no map but the surface in space as it is seen from there, lit, "
                  "such as 210,30 from the south-south-west and above");
  verb.add_option("--cut", o.cut,
                  "AXIS=VALUE, such as x=12.5: leave out the tetrahedra of a mesh in space whose centre lies on the "
                  "viewer's side of this plane, to show its inside");
  verb.add_option("--max-side", o.maxSide, "Longest side of a triangle in plan, in units of the input; 0 is any")
      ->capture_default_str()
      ->check(fromZeroUp());
}

}  // namespace

void addRender(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<RenderOptions>(program, "render", "Paint a picture of a cloud or a model: relief, tints, contours", common,
                         chosen, addRenderOptions, runRender);
}

}  // namespace Meseta47::host
