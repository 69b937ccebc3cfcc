#pragma once

#include <functional>

namespace Meseta47::host {

/// Called with how much of how much is done, again and again; ends the work by throwing.
using Steps = std::function<void(unsigned long long done, unsigned long long all)>;

}  // namespace Meseta47::host
