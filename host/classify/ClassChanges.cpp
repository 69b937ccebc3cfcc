#include "host/classify/ClassChanges.h"

#include <mutex>
#include <utility>

#include "model/threads/Reparto.h"

namespace Meseta47::host {

std::uint64_t ClassChanges::total() const {
  std::uint64_t sum = 0;
  for (auto const& [step, count] : counts_) sum += count;
  return sum;
}

void ClassChanges::add(ClassChanges const& others) {
  for (auto const& [step, count] : others.counts_) counts_[step] += count;
}

ClassChanges takeBack(std::vector<CCoor3D<int>> const& points, std::span<std::uint32_t const> places,
                      std::span<std::uint8_t> classes) {
  constexpr std::size_t kPart = 1 << 15;  // points that a thread takes at a time
  ClassChanges changes;
  std::mutex lock;
  Reparte(points.size(), kPart, [&](std::size_t from, std::size_t to) {
    ClassChanges own;
    ClassChanges::Step step{};
    std::uint64_t alike = 0;  // steps like the last one: most changes come in rows of the same
    for (std::size_t i = from; i < to; ++i) {
      const std::uint8_t now = points[i].clasificacion;
      const std::uint8_t before = std::exchange(classes[places.empty() ? i : places[i]], now);
      if (before == now) continue;
      if (alike > 0 && step != ClassChanges::Step{before, now}) own.add(step, std::exchange(alike, 0));
      step = {before, now};
      ++alike;
    }
    if (alike > 0) own.add(step, alike);
    const std::lock_guard guard(lock);
    changes.add(own);
  });
  return changes;
}

}  // namespace Meseta47::host
