#pragma once

#include <optional>
#include <string>

#include "host/las/LasVlr.h"

namespace Meseta47::host {

/// A unit of coordinates.
struct PlanUnit {
  std::string name;   ///< as the system has it: metre, US survey foot, degree
  double metres = 1;  ///< 0 for an angle
};

/// The coordinate reference system of a file, as a value: which place on the Earth the numbers mean. Eastings (or
/// longitudes) come first, whatever the order that the authority of the system wants. One that nobody told is unknown.
///
/// Building one takes a millisecond or so; copies share nothing and may go to other threads.
class ReferenceSystem {
 public:
  ReferenceSystem() = default;

  /// Whether this build understands reference systems; in one without GDAL all stay unknown, and what files say of
  /// theirs is a FileError that tells that it is left out.
  [[nodiscard]] static bool areUnderstood();

  /// Of whatever a person may write: EPSG:25830, EPSG:25830+5782, well known text, PROJ.4 text, PROJJSON, or the name
  /// of a file that holds one. Throws UsageError.
  static ReferenceSystem fromUser(std::string const& text);
  /// Throws FileError, naming the file, for text that is none.
  static ReferenceSystem fromWkt(std::string const& wkt, std::string const& file);
  /// Unknown when the keys say nothing about it. Throws FileError when they do, but not what.
  static ReferenceSystem fromGeoKeys(GeoKeys const& keys, std::string const& file);

  [[nodiscard]] bool isKnown() const { return !wkt_.empty(); }
  /// Well known text (2019); empty when unknown.
  [[nodiscard]] std::string const& wkt() const { return wkt_; }
  /// Its name, with the EPSG code where it has one, as a message tells it: NAD83 / UTM zone 17N (EPSG:26917).
  [[nodiscard]] std::string label() const;
  [[nodiscard]] std::string name() const;
  /// The code of the system in plan: the one that it carries, else that of a system of the register which is the same;
  /// 0 when there is none.
  [[nodiscard]] int epsg() const;
  [[nodiscard]] PlanUnit unit() const;
  /// The unit of heights: what the system says of them, else a projected system's unit in plan, as is the custom. None
  /// for a system of angles without heights, and for an unknown one.
  [[nodiscard]] std::optional<PlanUnit> heightUnit() const;
  /// Whether positions are angles.
  [[nodiscard]] bool isGeographic() const;
  [[nodiscard]] bool hasHeights() const;
  /// The same without what it says of heights.
  [[nodiscard]] ReferenceSystem inPlan() const;

  /// The one system that two files agree on. An unknown one agrees with any, and one that says nothing of heights with
  /// one that does; none when they contradict each other.
  [[nodiscard]] static std::optional<ReferenceSystem> common(ReferenceSystem const& a, ReferenceSystem const& b);

 private:
  explicit ReferenceSystem(std::string wkt) : wkt_(std::move(wkt)) {}

  std::string wkt_;
};

}  // namespace Meseta47::host
