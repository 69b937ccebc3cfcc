#include "host/mesh/SharedPrecision.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fmt/format.h>
#include <limits>
#include <utility>

#include "host/FileError.h"

namespace Meseta47::host {

namespace {

constexpr int kMostTried = 9;
constexpr double kLargestWhole = 0x1p53;  // up to here a double holds every whole number

bool isFloat(double value) { return static_cast<double>(static_cast<float>(value)) == value; }

}  // namespace

SharedPrecision::SharedPrecision(std::vector<Place> const& places, std::size_t axes, std::string file)
    : file_(std::move(file)) {
  const auto end = static_cast<std::ptrdiff_t>(axes);
  floats_ = std::all_of(places.begin(), places.end(),
                        [end](Place const& p) { return std::all_of(p.begin(), p.begin() + end, isFloat); });
  for (Place const& p : places) std::for_each(p.begin(), p.begin() + end, [this](double v) { raiseFor(v); });
}

double SharedPrecision::whole(double value) const { return std::nearbyint(value * units_); }

void SharedPrecision::raiseFor(double value) {
  while (!isWhole(value)) {
    if (decimals_ == kMostTried || std::abs(value) * units_ * 10 > kLargestWhole) {
      throw FileError(file_, fmt::format("the coordinate {:.17g} has no decimals that all others share: the model "
                                         "cannot be proved exactly; write it as .urd, or in doubles",
                                         value));
    }
    units_ *= 10;
    ++decimals_;
  }
}

/// A file holds the double (or float) that is nearest to a decimal number; an origin that was added may cost a bit.
bool SharedPrecision::isWhole(double value) const {
  const double nearest = whole(value) / units_;
  if (floats_) return static_cast<float>(nearest) == static_cast<float>(value);
  return std::abs(nearest - value) <= std::abs(value) * std::numeric_limits<double>::epsilon();
}

double SharedPrecision::middleOf(std::vector<Place> const& places, std::size_t axis) const {
  double low = std::numeric_limits<double>::infinity(), high = -low;
  for (Place const& p : places) {
    low = std::min(low, whole(p[axis]));
    high = std::max(high, whole(p[axis]));
  }
  if (std::max(-low, high) > kLargestWhole || high - low > std::numeric_limits<std::uint32_t>::max()) {
    throw FileError(file_, fmt::format("from {:.9g} to {:.9g} it has more units of {} decimals than 32 bits count: the "
                                       "model cannot be proved exactly; write it with a lower --precision",
                                       low / units_, high / units_, decimals_));
  }
  return low + std::floor((high - low) / 2) + 1;  // 32 bits count one more below 0 than above
}

}  // namespace Meseta47::host
