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

Scan::Plan Scan::planFor(const ScanOptions& options) {
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

Scan::Scan(const ScanOptions& options_)
    : options(options_),
      plan(planFor(options_)),
      scene(options_.seed, options_.land),
      random(mix(options_.seed + 0xF11647)),
      lineYield(static_cast<double>(plan.linePulses) * kPulseReturns) {
  const double half = plan.side / 2 + 1.0;
  origin = {static_cast<double>(floorOf(kCentreEast - half)), static_cast<double>(floorOf(kCentreNorth - half)), 0.0};
}

bool Scan::next(std::vector<LasPoint>& batch) {
  batch.clear();
  while (delivered < options.points && batch.size() < kBatch) flyLine(batch);
  return !batch.empty();
}

void Scan::flyLine(std::vector<LasPoint>& batch) {
  const double step = pace();
  const std::uint64_t before = delivered;
  for (std::int64_t pulse = 0; pulse < plan.linePulses && delivered < options.points; ++pulse) {
    firePulse(pulse, step, batch);
  }
  lineYield += (static_cast<double>(delivered - before) - lineYield) / 64.0;
  ++line;
  flown += step;
  if (flown >= plan.side && strip + 1 < plan.strips) turn();
}

/// The way to the next scan line: what is left to fly, shared among the lines that the points still to come will fill.
/// Past the end of the last strip the aircraft goes on as planned until it has them all.
double Scan::pace() const {
  const double ahead = plan.side * (plan.strips - 1 - strip) + (plan.side - flown);
  const double lines = static_cast<double>(options.points - delivered) / std::max(lineYield, 0.5);
  return clampTo(ahead / lines, plan.lineStep * 0.5, plan.lineStep * 2.0);
}

void Scan::turn() {
  flown -= plan.side;
  ++strip;
}

void Scan::firePulse(std::int64_t pulse, double step, std::vector<LasPoint>& batch) {
  const bool northwards = strip % 2 == 0, leftToRight = line % 2 == 0;
  const double sweep = (static_cast<double>(pulse) + 0.5) / static_cast<double>(plan.linePulses);
  const double pitch = plan.swath / static_cast<double>(plan.linePulses);
  const double aside = 0.12 * pitch * random.bell(), ahead = 0.12 * step * random.bell();
  const double right = ((leftToRight ? sweep : 1.0 - sweep) - 0.5) * plan.swath + aside;
  const double along = flown + sweep * step + ahead;
  const double axis = plan.swath / 2 + plan.spacing * strip - plan.side / 2;
  const double x = axis + (northwards ? right : -right);
  const double y = (northwards ? along : plan.side - along) - plan.side / 2;
  const double lean = right / kFlyingHeight;

  LasPoint common;
  common.x = scaled(kCentreEast + x, origin[0]);
  common.y = scaled(kCentreNorth + y, origin[1]);
  common.scanDirection = leftToRight;
  common.edgeOfFlightLine = pulse + 1 == plan.linePulses;
  common.scanAngle = scanAngleOf(lean);
  common.sourceId = static_cast<std::uint16_t>(strip % 65535 + 1);
  common.gpsTime = kFirstSecond + kTurnSeconds * strip + kPulseSeconds * static_cast<double>(pulses++);
  const bool neighbour = x > axis ? strip + 1 < plan.strips : strip > 0;
  if (neighbour && std::abs(right) > plan.spacing / 2) common.flags = kOverlapFlag;

  Echoes echoes;
  echoesOf(scene, x, y, lean, random, echoes);
  echoes.keepFirst(static_cast<std::size_t>(std::min<std::uint64_t>(options.points - delivered, Echoes::kMost)));
  deliver(echoes, common, batch);
}

void Scan::deliver(const Echoes& echoes, const LasPoint& common, std::vector<LasPoint>& batch) {
  const double share = 1.0 / (0.35 + 0.65 * static_cast<double>(echoes.size()));
  LasPoint point = common;
  point.returns = static_cast<std::uint8_t>(echoes.size());
  for (const Echo& echo : echoes) {
    ++point.returnNumber;
    point.z = scaled(echo.z, origin[2]);
    point.classification = static_cast<std::uint8_t>(echo.kind);
    paint(echo.surface, echo.shade, share, random, point);
    batch.push_back(point);
  }
  delivered += echoes.size();
}

}  // namespace Meseta47::host
