#include "host/render/RoundNumbers.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace Meseta47::host {

double RoundNumber::times(double count) const {
  // Dividing by a power of ten rounds once; multiplying by its inverse would round twice.
  const double units = count * mantissa;
  return exponent >= 0 ? units * std::pow(10.0, exponent) : units / std::pow(10.0, -exponent);
}

std::string RoundNumber::text(double count) const {
  return fmt::format("{:.{}f}", times(count) + 0.0, std::max(0, -exponent));
}

RoundNumber roundDown(double value) {
  int exponent = static_cast<int>(std::floor(std::log10(value)));
  // The logarithm may err at a power of ten: the neighbours are tried too.
  for (++exponent;; --exponent) {
    for (const int mantissa : {5, 2, 1}) {
      const RoundNumber number{mantissa, exponent};
      if (number.value() <= value) return number;
    }
  }
}

RoundNumber roundStep(double length, int most) {
  RoundNumber step = roundDown(length / most);
  while (step.value() * most < length) {
    step =
        step.mantissa == 5 ? RoundNumber{1, step.exponent + 1} : RoundNumber{step.mantissa == 1 ? 2 : 5, step.exponent};
  }
  return step;
}

std::vector<Tick> ticksBetween(double low, double high, int most) {
  std::vector<Tick> ticks;
  if (!(low < high)) return ticks;
  const RoundNumber step = roundStep(high - low, most);
  for (double count = std::ceil(low / step.value()) - 1; step.times(count) <= high; ++count) {
    if (step.times(count) >= low) ticks.push_back({step.times(count), step.text(count == 0 ? 0 : count)});
  }
  return ticks;
}

}  // namespace Meseta47::host
