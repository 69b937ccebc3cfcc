#include "host/vector/ReferenceSystem.h"

#include <cstdlib>
#include <fmt/format.h>
#include <ogr_spatialref.h>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/vector/Gdal.h"
#include "host/vector/GeoTiffKeys.h"

namespace Meseta47::host {

namespace {

/// Texts that GDAL hands out of it live no longer than the result.
OGRSpatialReference parsed(std::string const& wkt) {
  startGdal();
  const GdalReport report;
  OGRSpatialReference system;
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  if (!wkt.empty()) system.importFromWkt(wkt.c_str());
  report.check();
  return system;
}

std::string wktOf(OGRSpatialReference const& system) {
  constexpr char const* kForm[] = {"FORMAT=WKT2_2019", nullptr};
  char* text = nullptr;
  system.exportToWkt(&text, kForm);
  std::string wkt(text != nullptr ? text : "");
  CPLFree(text);
  return wkt;
}

int epsgOf(OGRSpatialReference const& system) {
  char const* const authority = system.GetAuthorityName(nullptr);
  char const* const code = system.GetAuthorityCode(nullptr);
  return authority != nullptr && code != nullptr && EQUAL(authority, "EPSG") ? std::atoi(code) : 0;
}

/// GDAL reads a code as far as it is a number, and passes over what follows: a second system, or a slip of the hand.
bool isPlainCode(std::string const& text) {
  constexpr std::size_t kPrefix = 5;
  if (!EQUALN(text.c_str(), "EPSG:", kPrefix)) return true;
  return text.size() > kPrefix && text.find_first_not_of("0123456789+", kPrefix) == std::string::npos;
}

bool same(OGRSpatialReference const& a, OGRSpatialReference const& b) {
  constexpr char const* kHow[] = {"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES", "CRITERION=EQUIVALENT_EXCEPT_AXIS_ORDER",
                                  nullptr};
  return a.IsSame(&b, kHow) != 0;
}

/// Files write the same system in many ways, under names of their own; the register tells that they mean one.
bool sameInPlan(ReferenceSystem const& a, ReferenceSystem const& b) {
  const ReferenceSystem planA = a.inPlan(), planB = b.inPlan();
  if (same(parsed(planA.wkt()), parsed(planB.wkt()))) return true;
  const int code = planA.epsg();
  return code != 0 && code == planB.epsg();
}

}  // namespace

bool ReferenceSystem::areUnderstood() { return true; }

ReferenceSystem ReferenceSystem::fromUser(std::string const& text) {
  startGdal();
  const GdalReport report;
  constexpr char const* kLimits[] = {"ALLOW_NETWORK_ACCESS=NO", nullptr};
  OGRSpatialReference system;
  const auto refuse = [&text](std::string const& why) {
    throw UsageError(
        fmt::format("--a-srs {}: {}: give a system such as EPSG:25830 or EPSG:25830+5782, or a file that "
                    "holds its well known text",
                    text, why));
  };
  if (text.empty() || !isPlainCode(text) || system.SetFromUserInput(text.c_str(), kLimits) != OGRERR_NONE) {
    refuse(report.failed() ? report.failure() : "names no reference system");
  }
  if (system.IsVertical() != 0 && system.IsCompound() == 0) refuse("is a system of heights alone");
  if (system.IsGeocentric() != 0) refuse("counts from the centre of the Earth, and has no plan");
  return ReferenceSystem(wktOf(system));
}

ReferenceSystem ReferenceSystem::fromWkt(std::string const& wkt, std::string const& file) {
  startGdal();
  const GdalReport report;
  OGRSpatialReference system;
  if (system.importFromWkt(wkt.c_str()) != OGRERR_NONE) {
    throw FileError(file, fmt::format("its reference system cannot be understood ({}): name it with --a-srs",
                                      report.failed() ? report.failure() : "the text is damaged"));
  }
  return ReferenceSystem(wktOf(system));
}

ReferenceSystem ReferenceSystem::fromGeoKeys(GeoKeys const& keys, std::string const& file) {
  const std::string wkt = wktOfGeoKeys(keys, file);
  return wkt.empty() ? ReferenceSystem() : fromWkt(wkt, file);
}

std::string ReferenceSystem::name() const {
  if (!isKnown()) return "unknown";
  const OGRSpatialReference system = parsed(wkt_);
  char const* const found = system.GetName();
  return found != nullptr ? found : "unnamed";
}

std::string ReferenceSystem::label() const {
  const int code = isKnown() ? epsgOf(parsed(wkt_)) : 0;
  return code == 0 ? name() : fmt::format("{} (EPSG:{})", name(), code);
}

int ReferenceSystem::epsg() const {
  if (!isKnown()) return 0;
  const GdalReport report;
  const OGRSpatialReference plan = parsed(inPlan().wkt_);
  if (const int code = epsgOf(plan); code != 0) return code;
  constexpr int kSameUnderAnotherName = 70;  // the confidence that GDAL has in such a match
  OGRSpatialReference* const match = plan.FindBestMatch(kSameUnderAnotherName, "EPSG", nullptr);
  report.check();
  if (match == nullptr) return 0;
  const int code = epsgOf(*match);
  match->Release();
  return code;
}

PlanUnit ReferenceSystem::unit() const {
  if (!isKnown()) return {"metre", 1};
  const OGRSpatialReference system = parsed(wkt_);
  char const* unitName = nullptr;
  if (isGeographic()) {
    system.GetAngularUnits(&unitName);
    return {unitName != nullptr ? unitName : "degree", 0};
  }
  const double metres = system.GetLinearUnits(&unitName);
  return {unitName != nullptr ? unitName : "unknown", metres};
}

std::optional<PlanUnit> ReferenceSystem::heightUnit() const {
  if (!isKnown()) return std::nullopt;
  if (!hasHeights()) return isGeographic() ? std::nullopt : std::optional(unit());
  const OGRSpatialReference system = parsed(wkt_);
  char const* unitName = nullptr;
  const double metres = system.GetTargetLinearUnits("VERT_CS", &unitName);
  return PlanUnit{unitName != nullptr ? unitName : "unknown", metres};
}

bool ReferenceSystem::isGeographic() const { return isKnown() && parsed(wkt_).IsGeographic() != 0; }

bool ReferenceSystem::hasHeights() const {
  if (!isKnown()) return false;
  const OGRSpatialReference system = parsed(wkt_);
  return system.IsCompound() != 0 || system.GetAxesCount() > 2;
}

ReferenceSystem ReferenceSystem::inPlan() const {
  if (!hasHeights()) return *this;
  const GdalReport quiet;
  OGRSpatialReference system = parsed(wkt_);
  if (system.IsCompound() != 0) {
    system.StripVertical();
  } else {
    system.DemoteTo2D(nullptr);
  }
  return ReferenceSystem(wktOf(system));
}

std::optional<ReferenceSystem> ReferenceSystem::common(ReferenceSystem const& a, ReferenceSystem const& b) {
  if (!a.isKnown() || a.wkt_ == b.wkt_) return b;
  if (!b.isKnown()) return a;
  if (a.hasHeights() && b.hasHeights()) {
    return same(parsed(a.wkt_), parsed(b.wkt_)) ? std::optional(a) : std::nullopt;
  }
  if (!sameInPlan(a, b)) return std::nullopt;
  return b.hasHeights() ? b : a;
}

}  // namespace Meseta47::host
