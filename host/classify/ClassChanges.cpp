#include "host/classify/ClassChanges.h"

#include <utility>

namespace Meseta47::host {

std::uint64_t ClassChanges::total() const {
  std::uint64_t sum = 0;
  for (auto const& [step, count] : counts_) sum += count;
  return sum;
}

ClassChanges takeBack(std::vector<CCoor3D<int>> const& points, std::span<std::uint32_t const> places,
                      std::span<std::uint8_t> classes) {
  ClassChanges changes;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::uint8_t now = points[i].clasificacion;
    const std::uint8_t before = std::exchange(classes[places[i]], now);
    if (before != now) changes.add(before, now);
  }
  return changes;
}

}  // namespace Meseta47::host
