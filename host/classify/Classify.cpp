#include "host/classify/Classify.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>

#include "host/CloudReader.h"
#include "host/Failure.h"
#include "host/OutputCheck.h"
#include "host/Paths.h"
#include "host/las/LasCopy.h"

namespace Meseta47::host {

namespace {

std::string const& inputOf(ClassifyOptions const& options) { return options.cloud.inputs.at(0); }

void requireOutput(ClassifyOptions const& options, CloudSearch const& search) {
  if (search.onlyTells() && !options.output.empty()) {
    throw UsageError(fmt::format("{}: nothing is classified, and so nothing written: leave out -o", options.output));
  }
  if (options.output.empty()) {
    if (options.dryRun || search.onlyTells()) return;
    throw UsageError("nowhere to write: give -o OUT.las or OUT.laz, or --dry-run to see what would change");
  }
  const std::string extension = extensionOf(options.output);
  if (extension == ".las" || extension == ".laz") return;
  throw UsageError(
      fmt::format("{}: the output is a copy of the LAS file with new classes: use .las or .laz", options.output));
}

/// Refuses before any work what the copy would refuse after it.
void requireCopyable(std::string const& input, CloudSearch const& search) {
  const CloudReader reader(input);
  if (!reader.isLas()) {
    throw Failure(fmt::format("{}: is {}, and only the classes of a LAS file can be changed: convert it to LAS", input,
                              reader.isModel() ? "a model" : "text"));
  }
  requireClassFits(input, reader.las()->header().pointFormat, search.highestTarget());
}

/// The place of a profile: the searches keep theirs in sections of their own, side by side by their names.
ProfilePlace placeOf(std::string const& profile, CloudSearch const& search) {
  const bool plain = std::all_of(profile.begin(), profile.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
  });
  if (!plain) {
    throw UsageError(fmt::format("--profile {}: give a name of letters A to Z, digits, - and _", profile));
  }
  return {CString("classify ") + CString(search.name()), CString::DesdeUtf8(profile) + L"."};
}

LoadedCloud load(ClassifyOptions const& options, CloudSearch const& search, HostApp& app) {
  LoadOptions how = loadOptionsOf(options.cloud);
  if (search.needsUnits()) {
    how.map.emplace();
    if (!options.cloud.system.empty()) how.map->system = ReferenceSystem::fromUser(options.cloud.system);
  }
  how.wayBack = true;
  how.colours = search.needsColour();
  return loadCloud(options.cloud.inputs, how, app);
}

/// By what a file is known again: another one in its place, or one written over, has other marks.
struct FileMarks {
  unsigned long long bytes;
  long long written;

  explicit FileMarks(std::string const& file) : FileMarks(lookAt(file)) {}
  explicit FileMarks(CDatosFichero const& here) : bytes(here.bytes), written(here.escrito) {}
  bool operator==(FileMarks const&) const = default;
};

/// The classes found belong to the points that were read, and the copy is made of the file as it is now.
void requireUnchanged(std::string const& input, FileMarks const& before) {
  if (FileMarks(input) == before) return;
  throw Failure(
      fmt::format("{}: was changed while it was searched, by another program or run: nothing was written; run "
                  "again",
                  input));
}

/// The units of a cloud. Throws Failure for a system of angles, in which no length makes sense.
CloudUnits unitsOf(LoadedCloud const& cloud, std::string const& input) {
  CloudUnits units;
  units.aMetre = cloud.seed.Precision();
  units.known = cloud.system.isKnown();
  if (!units.known) return units;
  if (cloud.system.isGeographic()) {
    throw Failure(fmt::format("{}: lies in {}, in degrees, and the search measures lengths: project it first", input,
                              cloud.system.label()));
  }
  units.metres = cloud.system.unit().metres;
  const std::optional<PlanUnit> height = cloud.system.heightUnit();
  units.heightMetres = height ? height->metres : units.metres;
  return units;
}

/// Runs the search and gives the classes of the drawing's points.
void runSearch(CDibujo<int>& drawing, CDataTriangulacion const& filters, CloudOptions const& cloud, CloudSearch& search,
               SearchOutcome& outcome) {
  const std::uint64_t spill = search.temporaryBytes(drawing.nPuntos);
  requireTempSpace(spill);
  const int code = search.run(drawing, filters, cloud.fillsHull(), outcome);
  if (outcome.mesh) requireRoom(*outcome.mesh, drawing.semilla.precision, cloud.what());
  requireRun(code, cloud.what(), spill);
}

void writeCopy(ClassifyOptions const& options, std::vector<std::uint8_t> const& classes, HostApp& app) {
  app.phase("Writing");
  copyWithClasses(inputOf(options), options.output, classes, [&app](std::uint64_t done, std::uint64_t points) {
    app.step(done, points);
    return true;
  });
}

void keepProfile(ClassifyOptions const& options, CloudSearch const& search, ProfilePlace const& place,
                 HostApp const& app) {
  if (search.keep(place)) return;
  throw Failure(
      fmt::format("--profile {}: {} was written, but the parameters could not be kept in \"{}\": is its "
                  "folder there and yours?",
                  options.profile, options.output, app.FicheroPerfil().Utf8()));
}

}  // namespace

void addClassifyOptions(CLI::App& verb, ClassifyOptions& o) {
  verb.add_option("IN", o.cloud.inputs, "The cloud: a LAS or LAZ file of any version and point format")
      ->required()
      ->expected(1);
  verb.add_option("-o,--output", o.output,
                  "The same file with the new classes, compressed when it is called .laz; it may be IN, which is then "
                  "replaced once the copy is whole");
  addPointOptions(verb, o.cloud);
  verb.get_option("--class")->description(
      "Classes whose points take part and may be changed, such as 1,2 or 2-5; the search does not see the others "
      "(default: all)");
  verb.get_option("--exclude-class")
      ->description("Classes whose points neither take part nor change, whatever --class says (default: none)");
  verb.get_option("--bounds")
      ->description("XMIN,YMIN,XMAX,YMAX: only the points in this box, limits included, take part and may be changed");
  verb.get_option("--precision")
      ->description(
          "Decimals of a coordinate in the search (default: what the file's scale needs); the output keeps "
          "all there are");
  verb.add_flag("--dry-run", o.dryRun, "Search and tell what would change; write nothing");
  verb.add_option("--profile", o.profile,
                  "Take parameters that are not given from this named set, and keep there what was used");
}

ClassifyReport classify(ClassifyOptions const& options, CloudSearch& search, HostApp& app) {
  ClassifyReport report;
  const CDataTriangulacion filters = filtersOf(options.cloud);
  const ProfilePlace place = placeOf(options.profile, search);
  const bool hasProfile = !options.profile.empty();
  search.settle(hasProfile ? &place : nullptr);
  requireOutput(options, search);
  requireCopyable(inputOf(options), search);
  requireOutputs({options.output}, {});  // which may be the input

  const FileMarks before(inputOf(options));
  LoadedCloud cloud = report.seconds.timed("read", [&] { return load(options, search, app); });
  report.pointsRead = cloud.pointsRead;
  search.requireSense(unitsOf(cloud, inputOf(options)));
  search.requireSeen(cloud, inputOf(options));
  {
    const bool wanted = search.links() || options.cloud.orderGiven || jumpsAbout(cloud.points);
    const bool hilbert = options.cloud.hilbert() && wanted;
    if (hilbert) app.phase("Ordering");
    CDibujo<int> drawing = report.seconds.timed("order", [&] { return drawingOf(cloud, hilbert, app); });
    runSearch(drawing, filters, options.cloud, search, report.outcome);
    for (auto const& [phase, took] : report.outcome.seconds) report.seconds.spent(phase, took);
    report.changes = takeBack(drawing[0].Puntos(), cloud.places, cloud.classes);
  }
  if (!options.dryRun && !search.onlyTells()) {
    requireUnchanged(inputOf(options), before);
    report.seconds.timed("write", [&] { writeCopy(options, cloud.classes, app); });
    if (hasProfile) keepProfile(options, search, place, app);
  }
  return report;
}

}  // namespace Meseta47::host
