// A build without GDAL understands no reference system. Files that tell one are read all the same: the loader leaves it
// out and says so.
#include <fmt/format.h>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/vector/ReferenceSystem.h"

namespace Meseta47::host {

bool ReferenceSystem::areUnderstood() { return false; }

ReferenceSystem ReferenceSystem::fromUser(std::string const& text) {
  throw UsageError(
      fmt::format("--a-srs {}: GDAL knows the reference systems, and this urdimbre was built without it: "
                  "leave the option out, or take a build with GDAL",
                  text));
}

ReferenceSystem ReferenceSystem::fromWkt(std::string const&, std::string const& file) {
  throw FileError(file,
                  "its reference system is left out, and lengths count as metres: GDAL understands it, and this "
                  "urdimbre was built without it");
}

ReferenceSystem ReferenceSystem::fromGeoKeys(GeoKeys const& keys, std::string const& file) {
  constexpr std::uint16_t kProjected = 3072, kGeographic = 2048;
  return keys.shortValue(kProjected) || keys.shortValue(kGeographic) ? fromWkt({}, file) : ReferenceSystem();
}

std::string ReferenceSystem::label() const { return name(); }
std::string ReferenceSystem::name() const { return "unknown"; }
int ReferenceSystem::epsg() const { return 0; }
PlanUnit ReferenceSystem::unit() const { return {"metre", 1}; }
std::optional<PlanUnit> ReferenceSystem::heightUnit() const { return std::nullopt; }
bool ReferenceSystem::isGeographic() const { return false; }
bool ReferenceSystem::hasHeights() const { return false; }
ReferenceSystem ReferenceSystem::inPlan() const { return *this; }
std::optional<ReferenceSystem> ReferenceSystem::common(ReferenceSystem const&, ReferenceSystem const&) {
  return ReferenceSystem();
}

}  // namespace Meseta47::host
