#pragma once

#include <cstddef>

namespace Meseta47::host {

/// The name of a class of points of ASPRS LAS 1.4; "other" for those it leaves to users.
[[nodiscard]] char const* className(std::size_t code);

}  // namespace Meseta47::host
