// urdimbre generate: a made-up airborne scan whose classes are the truth.
#include <fmt/format.h>
#include <iterator>
#include <nlohmann/json.hpp>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/JsonOutput.h"
#include "host/generate/Scan.h"
#include "host/las/LasNames.h"
#include "host/las/LasWriter.h"
#include "host/verbs/Verbs.h"

namespace Meseta47::host {

namespace {

struct GenerateOptions {
  std::string output;
  ScanOptions scan{1000000, 1, 8, {}};
  std::string land = "mixed";
};

/// The system that the coordinates are said to be in, as the record that LAS 1.4 asks for.
LasVlrRecord referenceSystem() {
  static_assert(Scan::kEpsg == 25830);
  constexpr char kWkt[] =  // with the zero at its end, as the record has it
      R"(PROJCS["ETRS89 / UTM zone 30N",GEOGCS["ETRS89",DATUM["European_Terrestrial_Reference_System_1989",)"
      R"(SPHEROID["GRS 1980",6378137,298.257222101]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433],)"
      R"(AUTHORITY["EPSG","4258"]],PROJECTION["Transverse_Mercator"],PARAMETER["latitude_of_origin",0],)"
      R"(PARAMETER["central_meridian",-3],PARAMETER["scale_factor",0.9996],PARAMETER["false_easting",500000],)"
      R"(PARAMETER["false_northing",0],UNIT["metre",1],AXIS["Easting",EAST],AXIS["Northing",NORTH],)"
      R"(AUTHORITY["EPSG","25830"]])";
  return {"LASF_Projection", 2112, "WKT", {std::begin(kWkt), std::end(kWkt)}};
}

LasWriterOptions fileOptions(Scan const& scan) {
  LasWriterOptions options;
  options.versionMinor = 4;
  options.pointFormat = 7;
  options.scale = scan.scale();
  options.offset = scan.offset();
  options.globalEncoding = 1 | 1 << 4;  // adjusted GPS time; reference system as WKT
  options.creationDay = 1;              // fixed: the same seed gives the same bytes on any day
  options.creationYear = 2026;
  options.systemId = "urdimbre generate";
  options.vlrs = {referenceSystem()};
  return options;
}

ScanOptions scanOptionsOf(GenerateOptions const& options) {
  ScanOptions scan = options.scan;
  scan.land = *landStyle(options.land);
  return scan;
}

void runGenerate(GenerateOptions const& options, CommonOptions const& common, HostApp& app) {
  if (!isNamedLas(options.output)) {
    throw UsageError(fmt::format("{}: a scan is a LAS file: use .las or .laz", options.output));
  }
  Scan scan(scanOptionsOf(options));
  LasWriterOptions file = fileOptions(scan);
  file.compressed = isNamedLaz(options.output);
  LasWriter writer(options.output, std::move(file));
  app.phase("Generating");
  std::vector<LasPoint> batch;
  while (scan.next(batch)) {
    for (LasPoint const& p : batch) writer.add(p);
    app.step(writer.points(), options.scan.points);
  }
  writer.finish();
  app.clearProgress();
  if (common.json) {
    printJson(nlohmann::ordered_json{{"points", writer.points()}, {"seed", options.scan.seed}, {"side", scan.side()}});
  } else if (!common.quiet) {
    fmt::print("{}: {} points, a block of {:.0f} m by {:.0f} m in {} strips\n", options.output,
               withThousands(writer.points()), scan.side(), scan.side(), scan.strips());
  }
}

void addGenerateOptions(CLI::App& verb, GenerateOptions& o) {
  verb.add_option(
          "OUT", o.output,
          "The scan: LAS 1.4 (.las) or the same compressed (.laz), point format 7, ASPRS classes that are the truth")
      ->required();
  verb.add_option("--points", o.scan.points, "How many points")
      ->capture_default_str()
      ->check(CLI::Range(0ULL, 100000000000ULL));
  verb.add_option("--seed", o.scan.seed, "Which land: the same seed gives the same bytes")
      ->capture_default_str()
      ->check(CLI::NonNegativeNumber.description(""));
  verb.add_option("--density", o.scan.density, "Points a square metre")
      ->capture_default_str()
      ->check(CLI::Range(0.01, 1000.0));
  verb.add_option("--land", o.land, "mixed, or mostly one thing: forest, town, river (many, and wide), steep")
      ->capture_default_str()
      ->check(CLI::IsMember({"mixed", "forest", "town", "river", "steep"}));
}

}  // namespace

void addGenerate(CLI::App& program, CommonOptions const& common, Work& chosen) {
  addVerb<GenerateOptions>(program, "generate", "Make up an airborne scan, to try things on", common, chosen,
                           addGenerateOptions, runGenerate);
}

}  // namespace Meseta47::host
