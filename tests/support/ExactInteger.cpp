#include "support/ExactInteger.h"

#include <algorithm>
#include <cmath>

namespace Meseta47::support {

namespace {

UInt128 magnitude(Int128 value) {
  return value < 0 ? UInt128{0} - static_cast<UInt128>(value) : static_cast<UInt128>(value);
}

/// Long multiplication in base 2^64; the middle column gathers two half products and a carry, which fit 128 bits.
Int256 unsignedProduct(UInt128 a, UInt128 b) {
  constexpr UInt128 half = ~std::uint64_t{0};
  const UInt128 low = (a & half) * (b & half);
  const UInt128 crossA = (a >> 64) * (b & half);
  const UInt128 crossB = (a & half) * (b >> 64);
  const UInt128 middle = (low >> 64) + (crossA & half) + (crossB & half);
  const UInt128 high = (a >> 64) * (b >> 64) + (crossA >> 64) + (crossB >> 64) + (middle >> 64);
  return {(middle << 64) | (low & half), static_cast<Int128>(high)};
}

}  // namespace

Int256 product(Int128 a, Int128 b) {
  const Int256 value = unsignedProduct(magnitude(a), magnitude(b));
  return (a < 0) != (b < 0) ? -value : value;
}

Int256 operator+(Int256 const& a, Int256 const& b) {
  const UInt128 low = a.low + b.low;
  const UInt128 carry = low < a.low ? 1 : 0;
  return {low, static_cast<Int128>(static_cast<UInt128>(a.high) + static_cast<UInt128>(b.high) + carry)};
}

Int256 operator-(Int256 const& a) {
  const UInt128 low = UInt128{0} - a.low;
  const UInt128 carry = low == 0 ? 1 : 0;
  return {low, static_cast<Int128>(~static_cast<UInt128>(a.high) + carry)};
}

int sign(Int128 value) { return (value > 0) - (value < 0); }

int sign(Int256 const& value) {
  if (value.high < 0) return -1;
  return value.high > 0 || value.low > 0 ? 1 : 0;
}

double approximate(Int256 const& value) {
  if (value.high < 0) return -approximate(-value);
  return std::ldexp(static_cast<double>(value.high), 128) + static_cast<double>(value.low);
}

std::string toDecimal(Int128 value) {
  std::string digits;
  UInt128 rest = magnitude(value);
  do {
    digits.push_back(static_cast<char>('0' + static_cast<int>(rest % 10)));
    rest /= 10;
  } while (rest != 0);
  if (value < 0) digits.push_back('-');
  std::reverse(digits.begin(), digits.end());
  return digits;
}

}  // namespace Meseta47::support
