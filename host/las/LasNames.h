#pragma once

#include <string>

namespace Meseta47::host {

/// True for names that end in .laz, in whatever case: files written under them are compressed.
[[nodiscard]] bool isNamedLaz(std::string const& path);

/// The same for .las or .laz.
[[nodiscard]] bool isNamedLas(std::string const& path);

}  // namespace Meseta47::host
