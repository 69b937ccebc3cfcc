#pragma once

#include <string>
#include <vector>

#include "host/las/LasReader.h"
#include "host/vector/ReferenceSystem.h"

namespace Meseta47::host {

/// The reference system that a LAS file tells, as well known text or as GeoTIFF keys; of both, the one that its header
/// says is in force. Unknown for null, which
/// is another cloud.
/// Throws FileError for one that cannot be understood.
[[nodiscard]] ReferenceSystem systemOf(LasReader const* las);

/// The one system of several files: it grows more precise with each that says more, and one that says nothing lies
/// where the others do. A given one stands for all, whatever the files say.
class CommonSystem {
 public:
  explicit CommonSystem(ReferenceSystem given) : isGiven_(given.isKnown()), system_(std::move(given)) {}

  [[nodiscard]] bool isGiven() const { return isGiven_; }
  [[nodiscard]] ReferenceSystem const& system() const { return system_; }

  /// Throws FileError, with both names, for a file that contradicts an earlier one. Against a given system nothing
  /// does, but is kept as a warning.
  void meet(ReferenceSystem const& found, std::string const& file);
  void warn(std::string warning) { warnings_.push_back(std::move(warning)); }
  /// What stands against the given system, or was left out, a line each.
  [[nodiscard]] std::vector<std::string> const& warnings() const { return warnings_; }

 private:
  bool isGiven_;
  ReferenceSystem system_;
  std::string from_;  // the first file that told one
  std::vector<std::string> warnings_;
};

}  // namespace Meseta47::host
