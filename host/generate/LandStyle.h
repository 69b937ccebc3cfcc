#pragma once

#include <optional>
#include <string_view>

namespace Meseta47::host {

/// What a made-up land is like. The usual one has some of everything.
struct LandStyle {
  double relief = 1;        ///< factor on the height of the hills
  double wood = 0;          ///< above 0 more of it is wood: from 0.8 on everything off the roads
  double roadSpacing = 1;   ///< factor
  double settled = 0;       ///< least chance of a house on a lot by a road
  double riverSpacing = 1;  ///< factor
  double riverWidth = 1;    ///< factor
};

/// The style of a name that --land takes: mixed, forest, town, river or steep; none for any other.
[[nodiscard]] constexpr std::optional<LandStyle> landStyle(std::string_view name) {
  if (name == "mixed") return LandStyle{};
  if (name == "forest") return LandStyle{.wood = 1};
  if (name == "town") return LandStyle{.relief = 0.4, .wood = -0.5, .roadSpacing = 0.25, .settled = 0.95};
  if (name == "river") return LandStyle{.riverSpacing = 0.2, .riverWidth = 3};
  if (name == "steep") return LandStyle{.relief = 4, .wood = 0.2};
  return std::nullopt;
}

}  // namespace Meseta47::host
