#include "host/classify/RiseList.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <map>

#include "host/FileError.h"

namespace Meseta47::host {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostKinds = 20;

/// Rises that look alike: the limits of each channel, or of the intensity alone, and of the heights.
template <std::size_t Channels>
struct Kind {
  std::uint64_t times = 0;
  std::array<int, Channels> least{}, most{};
  float lowest = 0, highest = 0;

  void add(std::array<int, Channels> const& look, float height) {
    if (times++ == 0) {
      least = most = look;
      lowest = highest = height;
      return;
    }
    for (std::size_t c = 0; c < Channels; ++c) {
      least[c] = std::min(least[c], look[c]);
      most[c] = std::max(most[c], look[c]);
    }
    lowest = std::min(lowest, height);
    highest = std::max(highest, height);
  }
};

template <std::size_t Channels>
std::vector<Kind<Channels>> mostFrequent(std::map<std::array<int, Channels>, Kind<Channels>> const& byLook) {
  std::vector<Kind<Channels>> kinds;
  for (auto const& [look, kind] : byLook) kinds.push_back(kind);
  std::stable_sort(kinds.begin(), kinds.end(), [](auto const& a, auto const& b) { return a.times > b.times; });
  if (kinds.size() > kMostKinds) kinds.resize(kMostKinds);
  return kinds;
}

/// `conditionOf` tells the look of a kind as a condition begins.
template <std::size_t Channels, class ConditionOf>
void tell(std::vector<Kind<Channels>> const& kinds, std::size_t told, std::size_t looks, double height,
          ConditionOf conditionOf, SearchOutcome& outcome) {
  Json all = Json::array();
  outcome.list.push_back(fmt::format("{} rises of more than {:g}, a point once for each of its triangles{}",
                                     withThousands(told), height, told == 0 ? "" : "; by their looks:"));
  for (auto const& kind : kinds) {
    const std::string when = fmt::format("{}:{:g}", conditionOf(kind), height);
    all.push_back({{"times", kind.times}, {"when", when}, {"lowest", kind.lowest}, {"highest", kind.highest}});
    outcome.list.push_back(fmt::format("{:>12}  {:.2f} to {:.2f} high  --when {}:CLASS", withThousands(kind.times),
                                       kind.lowest, kind.highest, when));
  }
  if (looks > kinds.size()) outcome.list.push_back(fmt::format("and {} less frequent looks", looks - kinds.size()));
  outcome.details["rises_told"] = told;
  outcome.details["rises"] = std::move(all);
}

}  // namespace

void tellColours(std::vector<CCondicionHRGB> const& rises, double height, SearchOutcome& outcome) {
  constexpr int kWidth = 32;
  std::map<std::array<int, 3>, Kind<3>> byLook;
  for (CCondicionHRGB const& rise : rises) {
    byLook[{rise.r / kWidth, rise.g / kWidth, rise.b / kWidth}].add({rise.r, rise.g, rise.b}, rise.altura);
  }
  const auto condition = [](Kind<3> const& kind) {
    std::array<int, 3> middle{};
    int reach = 0;
    for (std::size_t c = 0; c < 3; ++c) {
      middle[c] = (kind.least[c] + kind.most[c]) / 2;
      reach = std::max(reach, kind.most[c] - middle[c]);
    }
    return fmt::format("{},{},{}:{}", middle[0], middle[1], middle[2], reach + 1);  // nearer than the tolerance
  };
  tell(mostFrequent(byLook), rises.size(), byLook.size(), height, condition, outcome);
}

void tellIntensities(std::vector<CCondicionHIntensidad> const& rises, double height, SearchOutcome& outcome) {
  constexpr int kParts = 12;
  const auto [least, most] =
      std::minmax_element(rises.begin(), rises.end(), [](auto const& a, auto const& b) { return a.minimo < b.minimo; });
  std::map<std::array<int, 1>, Kind<1>> byLook;
  for (CCondicionHIntensidad const& rise : rises) {
    const int width = (most->minimo - least->minimo) / kParts + 1;
    byLook[{(rise.minimo - least->minimo) / width}].add({rise.minimo}, rise.altura);
  }
  const auto condition = [](Kind<1> const& kind) { return fmt::format("{}:{}", kind.least[0], kind.most[0]); };
  tell(mostFrequent(byLook), rises.size(), byLook.size(), height, condition, outcome);
}

}  // namespace Meseta47::host
