#pragma once

#include <cstddef>

namespace Meseta47::host {

/// Classes of what is no object: noise below the ground, and in the air.
inline constexpr unsigned char kLowNoise = 7, kHighNoise = 18;

/// The name of a class of points of ASPRS LAS 1.4; "other" for those it leaves to users.
[[nodiscard]] char const* className(std::size_t code);

}  // namespace Meseta47::host
