#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace Meseta47::support {

__extension__ typedef __int128 Int128;
__extension__ typedef unsigned __int128 UInt128;

/// A signed 256-bit integer in two's complement, as wide as the in-circle determinant of 32-bit coordinates needs (133
/// bits). Sums wrap around; a caller keeps below 2^255.
struct Int256 {
  UInt128 low = 0;
  Int128 high = 0;

  friend bool operator==(Int256 const&, Int256 const&) = default;
};

/// The exact product of any two 128-bit integers.
[[nodiscard]] Int256 product(Int128 a, Int128 b);

[[nodiscard]] Int256 operator+(Int256 const& a, Int256 const& b);
[[nodiscard]] Int256 operator-(Int256 const& a);

/// -1, 0 or +1.
[[nodiscard]] int sign(Int128 value);
[[nodiscard]] int sign(Int256 const& value);

/// The nearest double, to a few units in the last place: for figures in messages, never for a decision.
[[nodiscard]] double approximate(Int256 const& value);

[[nodiscard]] std::string toDecimal(Int128 value);

}  // namespace Meseta47::support
