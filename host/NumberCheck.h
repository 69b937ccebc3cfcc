#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace Meseta47::host {

/// What an option's number must be. The parser's own checks let pass what is no number at all, and tell of the limits
/// of a double in three hundred digits.
template <class Admits>
CLI::Validator numberCheck(std::string const& wanted, Admits admits) {
  return {[wanted, admits](std::string const& text) {
            double value = 0;
            const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
            const bool good = error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
            return good && admits(value) ? std::string() : "\"" + text + "\" is no number" + wanted;
          },
          "NUMBER"};
}

inline CLI::Validator anyNumber() {
  return numberCheck("", [](double) { return true; });
}
inline CLI::Validator fromZeroUp() {
  return numberCheck(" from 0 up", [](double value) { return value >= 0; });
}
inline CLI::Validator wholeFromZeroUp() {
  constexpr double kMost = std::numeric_limits<int>::max();
  return numberCheck(" among the whole ones from 0 to 2147483647",
                     [](double value) { return value >= 0 && value <= kMost && value == std::floor(value); });
}
inline CLI::Validator aboveZero() {
  return numberCheck(" above 0", [](double value) { return value > 0; });
}

}  // namespace Meseta47::host
