#pragma once

#include <string>
#include <vector>

namespace Meseta47::host {

/// The files that inputs stand for, in their order: a folder for the .las and .laz files in it, a pattern with *, ? or
/// [...] in quotes for the files that it matches, each sorted by name; anything else for itself. A pattern never
/// matches a name that begins with a dot. Throws FileError for a folder or a pattern without a file.
[[nodiscard]] std::vector<std::string> expandInputs(std::vector<std::string> const& inputs);

}  // namespace Meseta47::host
