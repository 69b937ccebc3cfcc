#include "host/LoadedCloud.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <future>
#include <limits>
#include <utility>

#include "host/CommonSystem.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/PointStream.h"

namespace Meseta47::host {

namespace {

/// A file to be read. What vector files hold stands here from the start: it is little beside a cloud.
struct Input {
  std::string name;
  std::optional<VectorContent> vector;
};

using Groups = std::vector<std::vector<Input>>;

constexpr double kFrameMargin = 1.2;  // a run builds a square frame that much wider than the points
constexpr double kInt32 = 2147483647.0;

/// Some point does not fit 32 bits on the seed that was tried.
struct OutOfRange {};

struct Survey {
  Extent extent;
  int decimals = std::numeric_limits<int>::min();
  std::uint64_t points = 0;
  std::vector<std::uint64_t> cloudPoints;  ///< of each group, without those of vector files
};

void include(Survey& result, Input const& input, bool believe) {
  if (input.vector) {
    result.extent.include(input.vector->extent);
    result.decimals = std::max(result.decimals, input.vector->decimals);
    result.points += input.vector->places;
    return;
  }
  PointStream stream(input.name);
  if (const auto extent = stream.extent(believe)) result.extent.include(*extent);
  result.decimals = std::max(result.decimals, stream.decimals());
  result.points += stream.count();
  result.cloudPoints.back() += stream.count();
}

Survey survey(Groups const& groups, bool believe) {
  Survey result;
  for (auto const& inputs : groups) {
    result.cloudPoints.push_back(0);
    for (Input const& input : inputs) include(result, input, believe);
  }
  return result;
}

/// The extent that takes part: what of it lies within the bounds.
Extent within(Extent extent, LoadOptions const& options) {
  if (!options.bounds) return extent;
  extent.min[0] = std::max(extent.min[0], options.bounds->minX);
  extent.min[1] = std::max(extent.min[1], options.bounds->minY);
  extent.max[0] = std::min(extent.max[0], options.bounds->maxX);
  extent.max[1] = std::min(extent.max[1], options.bounds->maxY);
  return extent;
}

CDataSemilla seedFor(Extent const& extent, int precision) {
  const auto middle = [&extent](std::size_t i) {
    const double value = (extent.min[i] + extent.max[i]) / 2;
    return std::isfinite(value) && std::abs(value) < 1e15 ? std::floor(value) : 0.0;
  };
  return {static_cast<char>(precision), middle(0), middle(1), 0.0};
}

/// Half the side of the frame, or the greatest height, whichever is more: it must fit 32 bits once scaled.
double reach(Extent const& extent) {
  const double side = std::max(extent.max[0] - extent.min[0], extent.max[1] - extent.min[1]);
  return std::max({side * kFrameMargin / 2 + 1, std::abs(extent.min[2]), std::abs(extent.max[2])});
}

void requireFit(Extent const& extent, int precision, std::string const& what) {
  const double farthest = reach(extent);
  if (extent.isEmpty() || farthest * std::pow(10.0, precision) <= kInt32) return;
  const int fitting = static_cast<int>(std::floor(std::log10(kInt32 / farthest)));
  throw Failure(
      fmt::format("{}: an extent of {:g} by {:g} by {:g} does not fit 32-bit coordinates at precision {}: "
                  "--precision {} would fit, or take a part of it with --bounds",
                  what, extent.max[0] - extent.min[0], extent.max[1] - extent.min[1], extent.max[2] - extent.min[2],
                  precision, fitting));
}

/// Decimals to add of those that are wanted: none that would make the diagonal of the extent longer than 32 bits hold.
int roomForMore(Extent const& extent, int decimals, LoadOptions const& options) {
  if (extent.isEmpty()) return 0;
  const double diagonal = std::hypot(extent.max[0] - extent.min[0], extent.max[1] - extent.min[1]);
  const double fitting = std::floor(std::log10(kInt32 / std::max({diagonal, reach(extent), 1.0})));
  const int most = std::min(static_cast<int>(fitting), kMostDecimals);
  return std::clamp(most - decimals, 0, options.moreDecimals);
}

bool fits(WidePoint const& p) {
  return std::all_of(p.position.begin(), p.position.end(), [](std::int64_t v) {
    return v >= std::numeric_limits<std::int32_t>::min() && v <= std::numeric_limits<std::int32_t>::max();
  });
}

/// The bounds in scaled integers, so that points of every file meet the same limits.
class BoundsFilter {
 public:
  BoundsFilter(LoadOptions const& options, CDataSemilla const& seed) : active_(options.bounds.has_value()) {
    if (!active_) return;
    const double units = seed.Precision();
    const Bounds& b = *options.bounds;
    minX_ = (b.minX - seed.origen[0]) * units - kSlack;
    minY_ = (b.minY - seed.origen[1]) * units - kSlack;
    maxX_ = (b.maxX - seed.origen[0]) * units + kSlack;
    maxY_ = (b.maxY - seed.origen[1]) * units + kSlack;
  }
  [[nodiscard]] bool admits(WidePoint const& p) const {
    if (!active_) return true;
    const auto x = static_cast<double>(p.position[0]), y = static_cast<double>(p.position[1]);
    return x >= minX_ && x <= maxX_ && y >= minY_ && y <= maxY_;
  }

 private:
  static constexpr double kSlack = 1e-4;  // of a unit: what taking the origin off may have rounded
  bool active_;
  double minX_ = 0, minY_ = 0, maxX_ = 0, maxY_ = 0;
};

struct Reading {
  CDataSemilla seed;
  BoundsFilter bounds;
  LoadOptions const& options;
  std::uint64_t total;
  std::uint64_t done = 0;
  HostApp& app;
};

void append(LoadedCloud& cloud, WidePoint const& wide, Reading const& reading) {
  const std::uint64_t place = cloud.pointsRead++;
  if (reading.options.wayBack) cloud.classes.push_back(wide.classification);
  if (!reading.bounds.admits(wide)) return;
  if (!fits(wide)) throw OutOfRange{};
  cloud.points.push_back({static_cast<int>(wide.position[0]), static_cast<int>(wide.position[1]),
                          static_cast<int>(wide.position[2]), wide.intensity, wide.classification});
  if (reading.options.wayBack) cloud.places.push_back(static_cast<std::uint32_t>(place));
}

void reserve(LoadedCloud& cloud, std::uint64_t more, Reading const& reading) {
  cloud.points.reserve(cloud.points.size() + more);
  if (!reading.options.wayBack) return;
  cloud.places.reserve(cloud.places.size() + more);
  cloud.classes.reserve(cloud.classes.size() + more);
}

void requireCountable(LoadedCloud const& cloud, std::string const& file) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  if (cloud.pointsRead <= kMost) return;
  throw Failure(fmt::format("{}: has more than the {} points that can be told apart in one run: split it into tiles",
                            file, withThousands(kMost)));
}

void readCloud(LoadedCloud& cloud, std::string const& file, Reading& reading) {
  std::vector<WidePoint> batch;
  PointStream stream(file);
  if (reading.options.bounds) reserve(cloud, stream.count(), reading);  // of many files few points may be within
  while (stream.next(reading.seed, batch)) {
    for (WidePoint const& wide : batch) append(cloud, wide, reading);
    reading.done += batch.size();
    reading.app.step(reading.done, std::max(reading.total, reading.done));
    if (reading.options.wayBack) requireCountable(cloud, file);
  }
}

/// The places of an entity that are within the bounds, on the seed.
std::vector<CCoor3D<int>> placesOf(VectorEntity const& entity, Reading const& reading) {
  std::vector<CCoor3D<int>> points;
  points.reserve(entity.places.size());
  for (auto const& place : entity.places) {
    const WidePoint wide = scaled(place, reading.seed);
    if (!reading.bounds.admits(wide)) continue;
    if (!fits(wide)) throw OutOfRange{};
    points.emplace_back(static_cast<int>(wide.position[0]), static_cast<int>(wide.position[1]),
                        static_cast<int>(wide.position[2]), 0);
    points.back().clasificacion = reading.options.map->vertexClass;
  }
  return points;
}

void readVector(LoadedCloud& cloud, VectorContent const& content, Reading const& reading) {
  for (VectorEntity const& entity : content.entities) {
    std::vector<CCoor3D<int>> points = placesOf(entity, reading);
    if (points.empty()) continue;
    const CString code = CString::DesdeUtf8(entity.code);
    if (entity.isLine) {
      CLinea<int> line(code);
      line.Asigna(std::move(points));
      cloud.lines.Inserta(std::move(line));
    } else {
      CSetPuntos<int> set(code);
      set.CLinea<int>::Asigna(std::move(points));
      cloud.lines.Inserta(std::move(set));
    }
  }
  cloud.pointsRead += content.places;
  cloud.linePoints += content.places;
  cloud.withoutZ += content.withoutZ;
}

LoadedCloud readGroup(std::vector<Input> const& inputs, std::uint64_t points, Reading& reading) {
  LoadedCloud cloud{reading.seed, {}, 0, {}, {}};
  if (!reading.options.bounds) reserve(cloud, points, reading);
  cloud.lines.semilla = reading.seed;
  for (Input const& input : inputs) {
    if (input.vector) {
      readVector(cloud, *input.vector, reading);
    } else {
      readCloud(cloud, input.name, reading);
    }
  }
  return cloud;
}

std::vector<LoadedCloud> readAll(Groups const& groups, Survey const& found, LoadOptions const& options, HostApp& app) {
  const Extent extent = within(found.extent, options);
  const int precision = options.precision.value_or(found.decimals + roomForMore(extent, found.decimals, options));
  requireFit(extent, precision, groups[0][0].name);
  const CDataSemilla seed = seedFor(extent, precision);
  Reading reading{seed, BoundsFilter(options, seed), options, found.points, 0, app};
  std::vector<LoadedCloud> clouds;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    clouds.push_back(readGroup(groups[i], found.cloudPoints[i], reading));
  }
  return clouds;
}

std::vector<LoadedCloud> readGroups(Groups const& groups, LoadOptions const& options, HostApp& app) {
  try {
    return readAll(groups, survey(groups, true), options, app);
  } catch (OutOfRange const&) {
    // Some file declares less than it holds. What the points themselves say decides.
  }
  const Survey measured = survey(groups, false);
  try {
    return readAll(groups, measured, options, app);
  } catch (OutOfRange const&) {
    throw Failure(fmt::format("{}: the coordinates do not fit 32 bits at precision {}: give a lower --precision",
                              groups[0][0].name, options.precision.value_or(measured.decimals)));
  }
}

Groups inputsOf(std::vector<std::vector<std::string>> const& names, LoadOptions const& options) {
  Groups groups;
  for (auto const& files : names) {
    auto& inputs = groups.emplace_back();
    for (std::string const& file : files) {
      Input& input = inputs.emplace_back(Input{file, std::nullopt});
      if (options.map && isVectorFile(file)) input.vector = readVectorFile(file, options.map->vectors);
    }
  }
  return groups;
}

ReferenceSystem commonSystem(Groups const& groups, MapOptions const& map) {
  CommonSystem common(map.system);
  for (auto const& inputs : groups) {
    for (Input const& input : inputs) {
      if (common.isGiven()) return common.system();
      common.meet(input.vector ? input.vector->system : systemOf(PointStream(input.name)), input.name);
    }
  }
  return common.system();
}

}  // namespace

std::vector<CCoor3D<int>> takePoints(LoadedCloud& cloud, bool hilbert) {
  const std::vector<ScaledPoint> points = std::exchange(cloud.points, {});
  if (!hilbert) return {points.begin(), points.end()};
  const std::vector<std::uint32_t> order = hilbertOrder(points);
  if (!cloud.places.empty()) applyOrder(cloud.places, order);
  return inOrder<CCoor3D<int>>(points, order);
}

std::vector<LoadedCloud> loadClouds(std::vector<std::vector<std::string>> const& groups, LoadOptions const& options,
                                    HostApp& app) {
  app.phase("Reading");
  const Groups inputs = inputsOf(groups, options);
  // Looking into the register of systems takes half as long as reading a million points: beside it, or after it where
  // there is no thread.
  const auto findSystem = [&] { return options.map ? commonSystem(inputs, *options.map) : ReferenceSystem(); };
  auto system = std::async(std::launch::async | std::launch::deferred, findSystem);
  std::vector<LoadedCloud> clouds = readGroups(inputs, options, app);
  const ReferenceSystem found = system.get();
  for (LoadedCloud& cloud : clouds) cloud.system = found;
  return clouds;
}

}  // namespace Meseta47::host
