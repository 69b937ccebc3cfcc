#include "host/generate/Scan.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace Meseta47::host {
namespace {

constexpr double kStripSpacing = 140.0;  // metres at the most: a low flight, for many strips in a small block
constexpr double kOverlap = 0.25;        // of the spacing, added to it for the swath
constexpr double kFlyingHeight = 230.0;  // over the land under the aircraft, metres
constexpr double kPulseReturns = 1.25;   // returns of a pulse, a first guess that the pacing corrects
constexpr double kPulseSeconds = 1.0 / 200000.0;
constexpr double kTurnSeconds = 95.0;         // between strips
constexpr double kFirstSecond = 310254000.0;  // adjusted standard GPS time of the first pulse
constexpr std::uint8_t kOverlapFlag = 1 << 3;
constexpr std::size_t kBatch = 1 << 15;

/// Nearest integer; halves upwards.
std::int32_t scaled(double metres, double offset) {
  return static_cast<std::int32_t>(floorOf((metres - offset) / Scan::kScale + 0.5));
}

/// The angle whose tangent is `lean`, in 0.006 degrees. The series is good to a hundredth of that unit below 0.4.
std::int16_t scanAngleOf(double lean) {
  constexpr double kUnitsPerRadian = 57.295779513082320876 / 0.006;
  const double q = lean * lean;
  const double radians = lean * (1.0 - q * (1.0 / 3 - q * (1.0 / 5 - q * (1.0 / 7 - q * (1.0 / 9 - q / 11)))));
  return static_cast<std::int16_t>(floorOf(radians * kUnitsPerRadian + 0.5));
}

}  // namespace

Scan::Plan Scan::planFor(ScanOptions const& options) {
  if (!(options.density > 0)) throw std::invalid_argument("the density must be above 0 points for a square metre");
  Plan plan;
  plan.side = std::sqrt(static_cast<double>(options.points) / options.density);
  if (plan.side > 2.0e7) throw std::invalid_argument("so few points for a square metre make a block beyond 20,000 km");
  plan.strips = 1 + static_cast<int>(floorOf(plan.side / kStripSpacing));
  plan.spacing = plan.side / (plan.strips + kOverlap);
  plan.swath = plan.spacing * (1.0 + kOverlap);

  const double flownArea = plan.swath * plan.side * plan.strips;
  const double pulsePitch =
      std::sqrt(flownArea * kPulseReturns / static_cast<double>(std::max<std::uint64_t>(options.points, 1)));
  plan.linePulses = std::max<std::int64_t>(1, floorOf(plan.swath / std::max(pulsePitch, 1e-9) + 0.5));
  plan.lineStep = pulsePitch;
  return plan;
}

Scan::Scan(ScanOptions const& options)
    : options_(options),
      plan_(planFor(options)),
      scene_(options.seed, options.land),
      random_(mix(options.seed + 0xF11647)),
      lineYield_(static_cast<double>(plan_.linePulses) * kPulseReturns) {
  const double half = plan_.side / 2 + 1.0;
  origin_ = {static_cast<double>(floorOf(kCentreEast - half)), static_cast<double>(floorOf(kCentreNorth - half)), 0.0};
}

bool Scan::next(std::vector<LasPoint>& batch) {
  batch.clear();
  while (delivered_ < options_.points && batch.size() < kBatch) flyLine(batch);
  return !batch.empty();
}

void Scan::flyLine(std::vector<LasPoint>& batch) {
  const double step = pace();
  const std::uint64_t before = delivered_;
  for (std::int64_t pulse = 0; pulse < plan_.linePulses && delivered_ < options_.points; ++pulse) {
    firePulse(pulse, step, batch);
  }
  lineYield_ += (static_cast<double>(delivered_ - before) - lineYield_) / 64.0;
  ++line_;
  flown_ += step;
  if (flown_ >= plan_.side && strip_ + 1 < plan_.strips) turn();
}

/// The way to the next scan line: what is left to fly, shared among the lines that the points still to come will fill.
/// Past the end of the last strip the aircraft goes on as planned until it has them all.
double Scan::pace() const {
  const double ahead = plan_.side * (plan_.strips - 1 - strip_) + (plan_.side - flown_);
  const double lines = static_cast<double>(options_.points - delivered_) / std::max(lineYield_, 0.5);
  return clampTo(ahead / lines, plan_.lineStep * 0.5, plan_.lineStep * 2.0);
}

void Scan::turn() {
  flown_ -= plan_.side;
  ++strip_;
}

void Scan::firePulse(std::int64_t pulse, double step, std::vector<LasPoint>& batch) {
  const bool northwards = strip_ % 2 == 0, leftToRight = line_ % 2 == 0;
  const double sweep = (static_cast<double>(pulse) + 0.5) / static_cast<double>(plan_.linePulses);
  const double pitch = plan_.swath / static_cast<double>(plan_.linePulses);
  const double aside = 0.12 * pitch * random_.bell(), ahead = 0.12 * step * random_.bell();
  const double right = ((leftToRight ? sweep : 1.0 - sweep) - 0.5) * plan_.swath + aside;
  const double along = flown_ + sweep * step + ahead;
  const double axis = plan_.swath / 2 + plan_.spacing * strip_ - plan_.side / 2;
  const double x = axis + (northwards ? right : -right);
  const double y = (northwards ? along : plan_.side - along) - plan_.side / 2;
  const double lean = right / kFlyingHeight;

  LasPoint common;
  common.x = scaled(kCentreEast + x, origin_[0]);
  common.y = scaled(kCentreNorth + y, origin_[1]);
  common.scanDirection = leftToRight;
  common.edgeOfFlightLine = pulse + 1 == plan_.linePulses;
  common.scanAngle = scanAngleOf(lean);
  common.sourceId = static_cast<std::uint16_t>(strip_ % 65535 + 1);
  common.gpsTime = kFirstSecond + kTurnSeconds * strip_ + kPulseSeconds * static_cast<double>(pulses_++);
  const bool neighbour = x > axis ? strip_ + 1 < plan_.strips : strip_ > 0;
  if (neighbour && std::abs(right) > plan_.spacing / 2) common.flags = kOverlapFlag;

  Echoes echoes;
  echoesOf(scene_, x, y, lean, random_, echoes);
  echoes.keepFirst(static_cast<std::size_t>(std::min<std::uint64_t>(options_.points - delivered_, Echoes::kMost)));
  deliver(echoes, common, batch);
}

void Scan::deliver(Echoes const& echoes, LasPoint const& common, std::vector<LasPoint>& batch) {
  const double share = 1.0 / (0.35 + 0.65 * static_cast<double>(echoes.size()));
  LasPoint point = common;
  point.returns = static_cast<std::uint8_t>(echoes.size());
  for (Echo const& echo : echoes) {
    ++point.returnNumber;
    point.z = scaled(echo.z, origin_[2]);
    point.classification = static_cast<std::uint8_t>(echo.kind);
    paint(echo.material, echo.shade, share, random_, point);
    batch.push_back(point);
  }
  delivered_ += echoes.size();
}

}  // namespace Meseta47::host
