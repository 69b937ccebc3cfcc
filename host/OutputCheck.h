#pragma once

#include <string>
#include <vector>

namespace Meseta47::host {

/// Refuses, before any work, outputs that no new file can take the place of or no file can be made beside, and those
/// that a run also reads or writes a second time: whatever name, link or hard link leads there, and the files that
/// belong to a shapefile or a database too. Empty names are none. Throws a FileError that tells both names.
void requireOutputs(std::vector<std::string> const& outputs, std::vector<std::string> const& inputs);

}  // namespace Meseta47::host
