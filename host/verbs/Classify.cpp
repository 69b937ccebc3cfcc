// urdimbre classify: the same cloud with new classes for what a search finds.
#include "host/classify/Classify.h"

#include <fmt/format.h>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/FileError.h"
#include "host/JsonOutput.h"
#include "host/classify/AerialSearch.h"
#include "host/classify/GroundSearch.h"
#include "host/classify/HighSearch.h"
#include "host/classify/IsolatedSearch.h"
#include "host/classify/PeaksSearch.h"
#include "host/verbs/Verbs.h"
#include "platform/Proceso.h"

namespace Meseta47::host {

namespace {

using Json = nlohmann::ordered_json;

Json toJson(ClassifyReport const& r, Json parameters) {
  Json changes = Json::array();
  for (auto const& [step, points] : r.changes.counts()) {
    changes.push_back({{"from", step.from}, {"to", step.to}, {"points", points}});
  }
  Json seconds{{"read", r.seconds.read}, {"order", r.seconds.order}};
  for (auto const& [phase, took] : r.outcome.seconds) seconds[phase] = took;
  seconds["write"] = r.seconds.write;
  seconds["total"] = r.seconds.total;
  Json json{{"parameters", std::move(parameters)},   {"points_read", r.pointsRead},
            {"points_accepted", r.outcome.accepted}, {"found", r.outcome.found},
            {"reclassified", r.changes.total()},     {"changes", std::move(changes)}};
  json.update(r.outcome.details);
  json["notes"] = r.outcome.notes;
  json["seconds"] = std::move(seconds);
  json["peak_memory_bytes"] = MemoriaResidenteMaxima();
  return json;
}

void printSummary(ClassifyReport const& r, ClassifyOptions const& options) {
  fmt::print("{}: {} of {} points {}\n", options.dryRun ? options.cloud.what() : options.output,
             withThousands(r.changes.total()), withThousands(r.pointsRead),
             options.dryRun ? "would change their class; nothing was written" : "changed their class");
  for (auto const& [step, points] : r.changes.counts()) {
    fmt::print("class      {:>3} to {:<3} {}\n", step.from, step.to, withThousands(points));
  }
  fmt::print("points     {} read, {} accepted, {} found\n", withThousands(r.pointsRead),
             withThousands(r.outcome.accepted), withThousands(r.outcome.found));
  for (std::string const& note : r.outcome.notes) fmt::print("note       {}\n", note);
  std::string phases = fmt::format("read {:.2f}, order {:.2f}", r.seconds.read, r.seconds.order);
  for (auto const& [phase, took] : r.outcome.seconds) phases += fmt::format(", {} {:.2f}", phase, took);
  fmt::print("seconds    {}, write {:.2f}, total {:.2f}\n", phases, r.seconds.write, r.seconds.total);
  fmt::print("memory     {:.0f} MB at most\n", static_cast<double>(MemoriaResidenteMaxima()) / 1e6);
}

/// A search with the options of its verb.
struct Chosen {
  ClassifyOptions options;
  std::unique_ptr<CloudSearch> search;
};

void runClassify(Chosen const& chosen, CommonOptions const& common, HostApp& app) {
  const ClassifyReport report = classify(chosen.options, *chosen.search, app);
  app.clearProgress();
  app.showMessages();
  if (common.json) {
    printJson(toJson(report, chosen.search->parameters()));
  } else if (!common.quiet) {
    printSummary(report, chosen.options);
  }
}

template <class Search>
void addSearch(CLI::App& classify, CommonOptions const& common, Work& work) {
  auto chosen = std::make_shared<Chosen>();
  chosen->search = std::make_unique<Search>();
  CLI::App* verb = classify.add_subcommand(chosen->search->name(), chosen->search->purpose());
  addClassifyOptions(*verb, chosen->options);
  if (chosen->search->needsUnits()) {
    verb->add_option("--a-srs", chosen->options.cloud.system,
                     "Reference system of the input, such as EPSG:25830, for its units (default: what the file says; "
                     "metres where it says nothing)");
  }
  chosen->search->addOptions(*verb);
  verb->callback(
      [chosen, &common, &work] { work = [chosen, &common](HostApp& app) { runClassify(*chosen, common, app); }; });
}

}  // namespace

void addClassify(CLI::App& program, CommonOptions const& common, Work& chosen) {
  CLI::App* verb = program.add_subcommand("classify", "Find points of a kind in a LAS file and give them a class");
  verb->require_subcommand(1);
  addSearch<HighSearch>(*verb, common, chosen);
  addSearch<GroundSearch>(*verb, common, chosen);
  addSearch<IsolatedSearch>(*verb, common, chosen);
  addSearch<AerialSearch>(*verb, common, chosen);
  addSearch<PeaksSearch>(*verb, common, chosen);
}

}  // namespace Meseta47::host
