#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/HostApp.h"
#include "host/LoadedCloud.h"
#include "host/PhaseTimes.h"

namespace Meseta47::host {

/// What a verb has to tell once its work is done: as lines for a person, or as JSON for a program. What both want to
/// know is told once. Lines and keys stand in the order in which they are told; times and memory come last.
class Summary {
 public:
  using Json = nlohmann::ordered_json;

  PhaseTimes seconds;

  // --- what went in ---
  /// Points, survey lines and reference system of a cloud that was loaded; of several together, one call each.
  void read(LoadedCloud const& cloud);
  /// For what can have no lines: its points alone.
  void readPoints(std::uint64_t points);

  // --- for one of the two readers ---
  /// A value under its key, for programs.
  void fact(std::string const& key, Json value) { facts_[key] = std::move(value); }
  /// The line above all others, for people, if there is one.
  void headline(std::string text) { headline_ = std::move(text); }
  /// A line with a word before it, for people.
  void line(std::string const& label, std::string const& text);
  /// A line as it stands, for people.
  void line(std::string text) { lines_.push_back(std::move(text)); }

  // --- for both ---
  struct Count {
    char const* key;
    std::uint64_t value;
    char const* words;  ///< behind the number: "12 by slope"
  };
  /// A line of counts, in JSON an object under the label.
  void counts(std::string const& label, std::initializer_list<Count> counts);
  /// What became of the points that were read: a line of counts, in JSON each under its own key.
  void points(std::initializer_list<Count> counts);
  /// How much of a mesh was in memory at once; `what` are its elements.
  void resident(std::string const& what, std::uint64_t peak, std::uint64_t linked);

  /// Prints it as the options of the command line want it. For the end of a verb.
  void print(CommonOptions const& common, HostApp& app);

 private:
  std::uint64_t pointsRead_ = 0, surveyLines_ = 0, linePoints_ = 0, withoutZ_ = 0;
  std::string system_;  ///< as a line of its own; empty for none
  Json facts_ = Json::object();
  std::string headline_;
  std::vector<std::string> lines_;
};

}  // namespace Meseta47::host
