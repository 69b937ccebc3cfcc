// urdimbre classify: the same cloud with new classes for what a search finds.
#include "host/classify/Classify.h"

#include <fmt/format.h>
#include <memory>

#include "host/FileError.h"
#include "host/Summary.h"
#include "host/classify/AerialSearch.h"
#include "host/classify/AffinitySearch.h"
#include "host/classify/ConditionSearch.h"
#include "host/classify/GroundSearch.h"
#include "host/classify/HighSearch.h"
#include "host/classify/IsolatedSearch.h"
#include "host/classify/JumpSearch.h"
#include "host/classify/PeaksSearch.h"
#include "host/verbs/Verbs.h"

namespace Meseta47::host {

namespace {

void tellChanges(Summary& summary, ClassifyReport const& r, ClassifyOptions const& options) {
  summary.headline(
      fmt::format("{}: {} of {} points {}", options.dryRun ? options.cloud.what() : options.output,
                  withThousands(r.changes.total()), withThousands(r.pointsRead),
                  options.dryRun ? "would change their class; nothing was written" : "changed their class"));
  for (auto const& [step, points] : r.changes.counts()) {
    summary.line("class", fmt::format("{:>3} to {:<3} {}", step.from, step.to, withThousands(points)));
  }
}

void tell(Summary& summary, ClassifyReport const& r, ClassifyOptions const& options, CloudSearch const& search) {
  if (!search.onlyTells()) tellChanges(summary, r, options);
  for (std::string const& line : r.outcome.list) summary.line(line);
  Summary::Json changes = Summary::Json::array();
  for (auto const& [step, points] : r.changes.counts()) {
    changes.push_back({{"from", step.from}, {"to", step.to}, {"points", points}});
  }
  summary.fact("parameters", search.parameters());
  summary.readPoints(r.pointsRead);
  summary.points({{"points_accepted", r.outcome.accepted, "accepted"}, {"found", r.outcome.found, "found"}});
  summary.fact("reclassified", r.changes.total());
  summary.fact("changes", std::move(changes));
  for (auto const& [key, value] : r.outcome.details.items()) summary.fact(key, value);
  for (auto const& [what, value] : r.outcome.lines) summary.line(what, value);
  for (std::string const& note : r.outcome.notes) summary.line("note", note);
  summary.fact("notes", r.outcome.notes);
}

/// A search with the options of its verb.
struct Chosen {
  ClassifyOptions options;
  std::unique_ptr<CloudSearch> search;
};

void runClassify(Chosen const& chosen, CommonOptions const& common, HostApp& app) {
  Summary summary;
  const ClassifyReport report = classify(chosen.options, *chosen.search, app);
  summary.seconds = report.seconds;
  tell(summary, report, chosen.options, *chosen.search);
  summary.print(common, app);
}

void addOptions(CLI::App& verb, Chosen& chosen) {
  addClassifyOptions(verb, chosen.options);
  if (chosen.search->drawsOutline()) addBorderOption(verb, chosen.options.cloud);
  if (chosen.search->needsUnits()) {
    verb.add_option("--a-srs", chosen.options.cloud.system,
                    "Reference system of the input, such as EPSG:25830, for its units (default: what the file says; "
                    "metres where it says nothing)");
  }
  chosen.search->addOptions(verb);
}

template <class Search>
void addSearch(CLI::App& classify, CommonOptions const& common, Work& work) {
  auto chosen = std::make_shared<Chosen>();
  chosen->search = std::make_unique<Search>();
  CLI::App* verb = classify.add_subcommand(chosen->search->name(), chosen->search->purpose());
  if (chosen->search->alias() != nullptr) verb->alias(chosen->search->alias());
  addOptionsWhenNamed(*verb, [verb, chosen] { addOptions(*verb, *chosen); });
  verb->callback(
      [chosen, &common, &work] { work = [chosen, &common](HostApp& app) { runClassify(*chosen, common, app); }; });
}

}  // namespace

void addClassify(CLI::App& program, CommonOptions const& common, Work& chosen) {
  CLI::App* verb = program.add_subcommand("classify", "Find points of a kind in a LAS file and give them a class");
  verb->require_subcommand(1);
  addSearch<HighSearch>(*verb, common, chosen);
  addSearch<GroundSearch>(*verb, common, chosen);
  addSearch<ColourSearch>(*verb, common, chosen);
  addSearch<IntensitySearch>(*verb, common, chosen);
  addSearch<JumpSearch>(*verb, common, chosen);
  addSearch<IsolatedSearch>(*verb, common, chosen);
  addSearch<AerialSearch>(*verb, common, chosen);
  addSearch<PeaksSearch>(*verb, common, chosen);
  addSearch<AffinitySearch>(*verb, common, chosen);
}

}  // namespace Meseta47::host
