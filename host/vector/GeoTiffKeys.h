#pragma once

#include <string>

#include "host/las/LasVlr.h"

namespace Meseta47::host {

/// The reference system that GeoTIFF keys describe, EPSG code or one of the file's own, as well known text. Empty when
/// they name no system. Throws FileError for keys that contradict themselves.
[[nodiscard]] std::string wktOfGeoKeys(GeoKeys const& keys, std::string const& file);

}  // namespace Meseta47::host
