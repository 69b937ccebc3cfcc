#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/LoadedCloud.h"
#include "host/classify/ParameterTable.h"
#include "model/drawing/CDibujo.h"
#include "model/terrain/CDataTriangulacion.h"
#include "planar/CResumenPlano.h"

namespace Meseta47::host {

/// What a search counted, and how long it took.
struct SearchOutcome {
  std::uint64_t accepted = 0;                                         ///< points that took part
  std::uint64_t found = 0;                                            ///< those that had the class before included
  nlohmann::ordered_json details = nlohmann::ordered_json::object();  ///< what it alone has to tell
  std::vector<std::pair<std::string, std::string>> lines;             ///< of that, what the summary tells: name, value
  std::vector<std::string> list;                                      ///< what a search that only tells has to tell
  std::vector<std::string> notes;                                     ///< what a person should know of the cloud
  std::vector<std::pair<std::string, double>> seconds;                ///< by phase, in their order
  std::optional<CResumenPlano> mesh;                                  ///< of a search on one mesh of the whole cloud
};

/// A search over the points of a cloud that gives a class to those it finds: what one `urdimbre classify NAME` has that
/// the others lack. The frame around it (host/classify/Classify.h) is the same for all. Most have a table of parameters
/// and leave to it what concerns them.
///
/// The frame calls in this order: addOptions, then once the command line is read settle, the checks, run, keep.
class CloudSearch {
 public:
  CloudSearch() = default;
  CloudSearch(CloudSearch const&) = delete;
  CloudSearch& operator=(CloudSearch const&) = delete;
  virtual ~CloudSearch() = default;

  /// The word behind `classify`, and a line for --help.
  [[nodiscard]] virtual char const* name() const = 0;
  /// Another spelling of the word; null: none.
  [[nodiscard]] virtual char const* alias() const { return nullptr; }
  [[nodiscard]] virtual char const* purpose() const = 0;

  /// Adds the options that are its own, the target class among them.
  virtual void addOptions(CLI::App& verb) { table_.addTo(verb); }
  /// Settles the parameters: what the command line gave, else what the profile holds, else the defaults. Throws
  /// UsageError for those that contradict one another.
  virtual void settle(ProfilePlace const* profile) { table_.settle(profile); }
  /// Writes the parameters to the profile; false when they can't be read back from it.
  [[nodiscard]] virtual bool keep(ProfilePlace const& profile) const { return table_.keep(profile); }

  /// Throws UsageError for a parameter that the search can't take on such units.
  virtual void requireSense(CloudUnits const& units) { table_.requireSense(units); }
  /// The highest class that it may give.
  [[nodiscard]] virtual unsigned char highestTarget() const { return table_.highestTarget(); }
  /// The parameters as a summary tells them.
  [[nodiscard]] virtual nlohmann::ordered_json parameters() const { return table_.json(); }

  /// Whether lengths in the search are metres, so that it must know the unit of the cloud, which `requireSense` takes.
  [[nodiscard]] virtual bool needsUnits() const { return false; }
  /// Whether it draws an outline around what it finds, so that it matters where surfaces end.
  [[nodiscard]] virtual bool drawsOutline() const { return false; }
  /// Whether it looks at the colours of points, which are not kept otherwise.
  [[nodiscard]] virtual bool needsColour() const { return false; }
  /// Throws Failure for a cloud that lacks what the search looks at.
  virtual void requireSeen(LoadedCloud const& /*cloud*/, std::string const& /*input*/) const {}
  /// Whether it only tells something of the cloud, and gives no point a class.
  [[nodiscard]] virtual bool onlyTells() const { return false; }
  /// Whether it links points, and needs those that follow each other to be near each other. One that looks each up by
  /// itself only wants them not to jump about.
  [[nodiscard]] virtual bool links() const { return true; }
  /// What it writes to the folder for temporary files at most, for so many points.
  [[nodiscard]] virtual std::uint64_t temporaryBytes(std::uint64_t points) const = 0;

  /// Searches the points of the drawing that the filters let through and gives those found their class. A code of the
  /// library. Everything that the search holds is released with it. `fillsHull`: whether the outline that it draws may
  /// reach the convex hull (CTriangulacion2D::SinMarco).
  virtual int run(CDibujo<int>& drawing, CDataTriangulacion const& filters, bool fillsHull, SearchOutcome& outcome) = 0;

 protected:
  ParameterTable table_;
};

}  // namespace Meseta47::host
