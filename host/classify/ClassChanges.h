#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47::host {

/// How many points went from which class to which other.
class ClassChanges {
 public:
  struct Step {
    std::uint8_t from, to;
    auto operator<=>(Step const&) const = default;
  };

  void add(Step step, std::uint64_t count) { counts_[step] += count; }
  void add(ClassChanges const& others);

  [[nodiscard]] std::uint64_t total() const;
  /// In ascending order of the classes.
  [[nodiscard]] std::map<Step, std::uint64_t> const& counts() const { return counts_; }

 private:
  std::map<Step, std::uint64_t> counts_;
};

/// Carries the classes of points back to the places they came from: `classes[places[i]]` becomes that of `points[i]`,
/// or `classes[i]` where there are no places. Returns what has changed.
ClassChanges takeBack(std::vector<CCoor3D<int>> const& points, std::span<std::uint32_t const> places,
                      std::span<std::uint8_t> classes);

}  // namespace Meseta47::host
