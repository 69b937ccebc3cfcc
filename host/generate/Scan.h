#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/generate/Noise.h"
#include "host/generate/Pulse.h"
#include "host/generate/Scene.h"
#include "host/las/LasPoint.h"

namespace Meseta47::host {

struct ScanOptions {
  std::uint64_t points = 0;  ///< exactly as many are delivered
  std::uint64_t seed = 0;
  double density = 8;  ///< points for a square metre of the block, all returns of all strips together; above 0
  LandStyle land{};
};

/// An airborne laser scan of a made-up land, classified by what each pulse truly hit. A square block of points /
/// density square metres is flown in parallel, overlapping strips, northwards and southwards by turns, under a mirror
/// that sweeps to and fro; the points come in the order of the flight. The aircraft paces itself so that the points run
/// out as the last strip ends.
///
/// The same points and seed and density give the same bytes with any compiler, on any machine. Blocks of one seed show
/// the same land around the same centre, whatever their size. Memory does not grow with the points. One thread.
class Scan {
 public:
  static constexpr int kEpsg = 25830;     ///< ETRS89 / UTM zone 30N: the coordinates are metres of this system
  static constexpr double kScale = 0.01;  ///< metres
  static constexpr double kCentreEast = 450000.0, kCentreNorth = 4480000.0;

  /// Throws std::invalid_argument when the density is not above 0 or the block would leave the file's 32-bit range.
  explicit Scan(ScanOptions const& options);

  std::array<double, 3> scale() const { return {kScale, kScale, kScale}; }
  /// Whole metres at or below the block's south-western corner, so that no scaled coordinate is negative by design.
  std::array<double, 3> offset() const { return origin_; }
  /// Length of the block's sides, metres.
  double side() const { return plan_.side; }
  int strips() const { return plan_.strips; }

  /// Replaces the batch by the next points, some tens of thousands. False, with an empty batch, when all are delivered.
  bool next(std::vector<LasPoint>& batch);

 private:
  /// The flight as planned; lengths in metres.
  struct Plan {
    double side = 0;
    int strips = 1;
    double spacing = 0, swath = 0;  ///< from strip to strip, and width of each
    std::int64_t linePulses = 1;
    double lineStep = 0;  ///< between scan lines, as planned
  };

  static Plan planFor(ScanOptions const& options);
  void flyLine(std::vector<LasPoint>& batch);
  double pace() const;
  void firePulse(std::int64_t pulse, double step, std::vector<LasPoint>& batch);
  void deliver(Echoes const& echoes, LasPoint const& common, std::vector<LasPoint>& batch);
  void turn();

  ScanOptions options_;
  Plan plan_;
  std::array<double, 3> origin_{};
  Scene scene_;
  Random random_;

  std::uint64_t delivered_ = 0;
  int strip_ = 0;
  std::int64_t line_ = 0;    ///< scan lines flown, all strips
  std::int64_t pulses_ = 0;  ///< fired, all strips
  double flown_ = 0;         ///< metres along the strip
  double lineYield_ = 0;     ///< points that a scan line brings of late
};

}  // namespace Meseta47::host
