#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace Meseta47::host {

/// The whole units that a file's coordinates stand for: those of the fewest decimals, up to nine, with which each of
/// them is the nearest number of its kind, double or float, to a decimal number.
class SharedPrecision {
 public:
  using Place = std::array<double, 3>;

  /// Looks at the first `axes` coordinates of each place. Throws FileError, naming `file`, when there are no such
  /// units.
  SharedPrecision(std::vector<Place> const& places, std::size_t axes, std::string file);

  [[nodiscard]] int decimals() const { return decimals_; }

  /// Calls set(i, whole units) for one axis of each place, counted from the middle of the extent, and returns that
  /// middle. Throws FileError when the extent has more units than 32 bits count.
  template <class Set>
  double fillAxis(std::vector<Place> const& places, std::size_t axis, Set set) const {
    const double middle = middleOf(places, axis);
    for (std::size_t i = 0; i < places.size(); ++i) set(i, static_cast<int>(whole(places[i][axis]) - middle));
    return middle / units_;
  }

 private:
  void raiseFor(double value);
  [[nodiscard]] bool isWhole(double value) const;
  [[nodiscard]] double whole(double value) const;
  [[nodiscard]] double middleOf(std::vector<Place> const& places, std::size_t axis) const;

  std::string file_;
  bool floats_ = false;
  int decimals_ = 0;
  double units_ = 1;
};

}  // namespace Meseta47::host
