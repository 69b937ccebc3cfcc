#pragma once

#include <array>
#include <string>
#include <vector>

namespace Meseta47::host {

/// The extension of a file's name with its dot, in small letters: .ply of a.PLY.
[[nodiscard]] std::string extensionOf(std::string const& path);

/// A closed interval given as MIN:MAX, where either may be left out.
struct Limits {
  double min, max;
};
/// Throws UsageError, naming the option, for what is no interval, ends before it begins or goes beyond what is
/// possible.
Limits parseLimits(std::string const& option, std::string const& text, double lowest, double highest);

/// A limit that a person gives, moved outwards by less than anything that is measured, so that what lies on it lies
/// within it: 0.29 m at 100 units a metre are 28.999999999999996 units, and a height of 29 would be beyond.
[[nodiscard]] double asMost(double limit);
[[nodiscard]] double asLeast(double limit);

/// Classes given as 2,9,17-20; each from 0 to 255. Throws UsageError.
std::array<bool, 256> parseClasses(std::string const& option, std::string const& text);

/// A box in plan given as XMIN,YMIN,XMAX,YMAX, in the units of the input.
struct Bounds {
  double minX, minY, maxX, maxY;
  [[nodiscard]] bool contains(double x, double y) const { return x >= minX && x <= maxX && y >= minY && y <= maxY; }
};
Bounds parseBounds(std::string const& text);

}  // namespace Meseta47::host
