#pragma once

#include <string>
#include <vector>

namespace Meseta47::host {

/// A number that a person takes for round: 1, 2 or 5 times a power of ten.
struct RoundNumber {
  int mantissa = 1;
  int exponent = 0;

  [[nodiscard]] double value() const { return times(1); }
  /// So many times the number: the double next to the decimal that a person reads.
  [[nodiscard]] double times(double count) const;
  /// That multiple in as many decimals as the number has.
  [[nodiscard]] std::string text(double count) const;
};

/// The greatest round number up to `value`, which is above 0 and finite.
[[nodiscard]] RoundNumber roundDown(double value);

/// The smallest round step that divides an interval of that length into at most `most` pieces.
[[nodiscard]] RoundNumber roundStep(double length, int most);

struct Tick {
  double value = 0;
  std::string text;
};

/// The multiples of a round step from `low` to `high`, both included; with low < high at most `most` + 1, ascending.
[[nodiscard]] std::vector<Tick> ticksBetween(double low, double high, int most);

}  // namespace Meseta47::host
