#pragma once

#include <cstdint>

#include "host/generate/LandStyle.h"

namespace Meseta47::host {

/// What the bare earth is covered with.
enum class Cover : std::uint8_t { Field, Meadow, WoodFloor, Gravel, Road, Water };

/// The bare earth, or the water, at one place.
struct Ground {
  double z = 0;                   ///< metres
  double slopeX = 0, slopeY = 0;  ///< rise over run of the relief; for shading, since banks and cuttings are left out
  Cover cover = Cover::Meadow;
  std::uint64_t parcel = 0;  ///< equal for the places of one field
};

/// Where a place lies with regard to a winding line that runs along one of the axes.
struct LineFoot {
  bool alongY = false;     ///< the line runs northwards; otherwise eastwards
  std::int64_t index = 0;  ///< which of the parallel lines
  double along = 0;        ///< coordinate of the nearest place of the line on the axis that it follows
  double side = 0;         ///< signed distance to the line, metres; the sign is that of the axis across
  double slope = 0;        ///< of the line: metres across for a metre along
  double distance() const { return side < 0 ? -side : side; }
};

/// The river nearest to a place.
struct RiverFoot {
  double distance = 0;   ///< from its axis, metres
  double halfWidth = 0;  ///< metres
  double level = 0;      ///< height of its water there
};

/// Hills worn by water, rivers that wind northwards between them and roads in both directions. Every figure is a pure
/// function of the place and the seed, so that any part of an endless land can be made at any time. Places are metres
/// from the centre of the land. Safe to share among threads. A height costs about fifteen noise look-ups.
class Terrain {
 public:
  static constexpr double kRoadHalfWidth = 3.6;

  explicit Terrain(std::uint64_t seed, LandStyle const& style = {});

  LandStyle const& style() const { return kind_; }

  Ground at(double x, double y) const;
  double height(double x, double y) const { return at(x, y).z; }

  /// Height of the bridge above this place in `z`, or false where there is none.
  bool bridge(double x, double y, double& z) const;

  RiverFoot river(double x, double y) const;
  LineFoot mainRoad(double x, double y) const;   ///< along the valleys
  LineFoot crossRoad(double x, double y) const;  ///< from hill to hill, over the rivers

  /// Distance to the axis of the nearest road, metres.
  double roadDistance(double x, double y) const;

  /// Place of a road's axis: the other coordinate, for a `foot.along`.
  double roadAcross(LineFoot const& foot, double along) const;

  bool isWood(double x, double y) const;

 private:
  double roadHeight(double x, double y) const;
  double flattenFor(LineFoot const& road, double x, double y, double z) const;
  std::uint64_t parcelAt(double x, double y) const;

  std::uint64_t seed_;
  LandStyle kind_;
};

}  // namespace Meseta47::host
