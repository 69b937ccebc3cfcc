#include "host/CommonSystem.h"

#include <fmt/format.h>

#include "host/FileError.h"

namespace Meseta47::host {

namespace {

/// Of a file that has both forms, a bit of the header tells which one counts.
bool isWktInForce(LasReader const& las) { return (las.header().globalEncoding & 0x10U) != 0; }

}  // namespace

ReferenceSystem systemOf(LasReader const* las) {
  if (las == nullptr) return {};
  const auto keys = las->geoKeys();
  const std::string wkt = las->wkt();
  const ReferenceSystem byKeys = keys && (wkt.empty() || !isWktInForce(*las))
                                     ? ReferenceSystem::fromGeoKeys(*keys, las->name())
                                     : ReferenceSystem();
  return byKeys.isKnown() || wkt.empty() ? byKeys : ReferenceSystem::fromWkt(wkt, las->name());
}

void CommonSystem::meet(ReferenceSystem const& found, std::string const& file) {
  if (!found.isKnown()) return;
  const auto common = ReferenceSystem::common(system_, found);
  if (isGiven_) {
    if (!common) {
      warn(
          fmt::format("{}: its reference system is {}; --a-srs takes its numbers for {}, without "
                      "transforming them",
                      file, found.label(), system_.label()));
    }
    return;
  }
  if (!common) {
    throw FileError(file, fmt::format("its reference system is {}, but that of {} is {}: transform one of them, or "
                                      "name the right one with --a-srs",
                                      found.label(), from_, system_.label()));
  }
  if (!system_.isKnown()) from_ = file;
  system_ = *common;
}

}  // namespace Meseta47::host
