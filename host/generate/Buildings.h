#pragma once

#include <array>
#include <cstdint>

#include "host/generate/Terrain.h"

namespace Meseta47::host {

enum class RoofShape : std::uint8_t { Flat, Gable, Hip };

/// A house or a shed on its lot beside a road.
struct Building {
  bool stands = false;    ///< false: the lot is empty
  double x = 0, y = 0;    ///< centre
  double ux = 1, uy = 0;  ///< direction of its length, the road's; of length 1
  double halfLength = 0, halfDepth = 0;
  double eave = 0;  ///< height of the lowest part of the roof, above all ground under it
  double rise = 0;  ///< from the eave to the ridge
  RoofShape shape = RoofShape::Flat;
  std::uint64_t paint = 0;  ///< chance for the colour
};

/// A place of a roof.
struct Roof {
  double z = 0;
  double slopeX = 0, slopeY = 0;  ///< rise over run
  double edge = 0;                ///< distance to the nearest wall, metres
  double eave = 0;
  bool flat = false;
  std::uint64_t paint = 0;  ///< chance for the colour
};

/// The villages: houses along both sides of the roads, where the land has a village. A pure function of place and seed;
/// the lots looked at last are remembered, so an object serves one thread.
class Buildings {
 public:
  /// The terrain must outlive the object.
  Buildings(Terrain const& terrain, std::uint64_t seed);

  /// The roof above a place in `roof`, or false where there is none.
  bool at(double x, double y, Roof& roof);

  /// True within `margin` metres (3 at the most) of a wall, inside or out.
  bool isNear(double x, double y, double margin);

 private:
  struct Lot {
    bool alongY = false;
    std::int64_t road = 0, number = 0;
    int side = 0;  ///< -1 or 1; 0 in a slot never used
    bool operator==(Lot const&) const = default;
  };
  struct Slot {
    Lot lot;
    Building building;
  };

  Building const* find(double x, double y, double margin);
  Building const* findAlong(LineFoot const& road, double x, double y, double margin);
  Building const& onLot(Lot const& lot);
  Building build(Lot const& lot) const;
  bool isFree(Lot const& lot, Building const& building) const;
  double highestGround(Building const& building) const;

  Terrain const& terrain_;
  std::uint64_t seed_;
  std::array<Slot, 512> slots_;
};

}  // namespace Meseta47::host
