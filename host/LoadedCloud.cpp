#include "host/LoadedCloud.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <fmt/format.h>
#include <future>
#include <limits>
#include <utility>

#include "host/CommonSystem.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/PointStream.h"
#include "model/storage/Reservado.h"
#include "model/threads/Reparto.h"
#include "planar/CMedidasDeRun.h"

namespace Meseta47::host {

namespace {

/// A file to be read. What vector files hold stands here from the start: it is little beside a cloud.
struct Input {
  std::string name;
  std::optional<VectorContent> vector;
  std::optional<Extent> extent{};  ///< of a cloud, once it is measured
  std::uint64_t missing = 0;       ///< points of a cloud that a cut took away
};

using Groups = std::vector<std::vector<Input>>;

constexpr double kInt32 = 2147483647.0;

/// Some point does not fit 32 bits on the seed that was tried.
struct OutOfRange {};

struct Survey {
  Extent extent;
  bool believed = true;  ///< the extents are those that headers declare
  int decimals = std::numeric_limits<int>::min();
  int promised = std::numeric_limits<int>::min();  ///< those that are no mere digits of a text
  std::uint64_t points = 0;
  std::vector<std::uint64_t> cloudPoints;  ///< of each group, without those of vector files
};

/// What of a cloud is read. A way back needs every record of the file.
LasReading readingOf(LoadOptions const& options) {
  const LasFields fields = options.colours ? LasFields::all : LasFields::surface;
  if (options.wayBack) return {.fields = fields};
  return {.fields = fields, .partial = options.partial, .box = options.bounds, .resolution = options.resolution};
}

void include(Survey& result, Input& input, bool believe, LoadOptions const& options) {
  if (input.vector) {
    result.extent.include(input.vector->extent);
    result.promised = std::max(result.promised, input.vector->decimals);
    result.decimals = std::max(result.decimals, result.promised);
    result.points += input.vector->places;
    return;
  }
  PointStream stream(input.name, options.columns, readingOf(options));
  input.extent = stream.extent(believe);
  if (input.extent) result.extent.include(*input.extent);
  input.missing = stream.las() == nullptr ? 0 : stream.las()->missing();
  result.decimals = std::max(result.decimals, stream.decimals());
  if (!stream.isText()) result.promised = std::max(result.promised, stream.decimals());
  result.points += stream.count();
  result.cloudPoints.back() += stream.count();
}

Survey survey(Groups& groups, bool believe, LoadOptions const& options) {
  Survey result;
  result.believed = believe;
  for (auto& inputs : groups) {
    result.cloudPoints.push_back(0);
    for (Input& input : inputs) include(result, input, believe, options);
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

/// What must fit 32 bits once scaled: half the side of the frame around an extent in plan, and the greatest height.
double reach(Extent const& extent, std::size_t axis) {
  if (axis == 2) return std::max(std::abs(extent.min[2]), std::abs(extent.max[2]));
  return CMedidasDeRun::SemiladoDelMarco(extent.max[axis] - extent.min[axis]) + 1;
}
double reach(Extent const& extent) { return std::max({reach(extent, 0), reach(extent, 1), reach(extent, 2)}); }

bool hasRoom(Extent const& extent, int precision) {
  return extent.isEmpty() || reach(extent) * std::pow(10.0, precision) <= kInt32;
}

/// The most decimals at which an extent has room.
int fittingDecimals(Extent const& extent) { return static_cast<int>(std::floor(std::log10(kInt32 / reach(extent)))); }

/// Blames the axes that are too long, and no other.
void requireFit(Extent const& extent, int precision, std::string const& what) {
  if (hasRoom(extent, precision)) return;
  const double units = std::pow(10.0, precision);
  std::string blamed;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (reach(extent, axis) * units <= kInt32) continue;
    if (!blamed.empty()) blamed += " and ";
    blamed += axis == 2 ? fmt::format("heights from {:g} to {:g}", extent.min[2], extent.max[2])
                        : fmt::format("an extent of {:g} in {}", extent.max[axis] - extent.min[axis], "xy"[axis]);
  }
  const bool inPlan = std::max(reach(extent, 0), reach(extent, 1)) * units > kInt32;
  const int fitting = fittingDecimals(extent);
  const std::string lower = fitting < kFewestDecimals ? "" : fmt::format("--precision {} would fit, or ", fitting);
  throw Failure(fmt::format("{}: 32-bit coordinates have no room at precision {} for {}: {}{}", what, precision, blamed,
                            lower, inPlan ? "take a part of it with --bounds" : "mend the heights"));
}

/// Text of whole numbers is no promise of whole metres, and the frame around a few units would fall on the points.
int roomyDecimals(Extent const& extent, int decimals) {
  constexpr double kRoom = 100;  // units across: the frame then stands ten off
  const double side = std::max(extent.max[0] - extent.min[0], extent.max[1] - extent.min[1]);
  if (extent.isEmpty() || !(side > 0)) return decimals;
  while (decimals < kMostDecimals && side * std::pow(10.0, decimals) < kRoom) ++decimals;
  return decimals;
}

/// Text often comes with more digits than were measured. Where 32 bits have no room for all of them, those are kept
/// that fit, a tenth of a millimetre at least, and what other files promise.
int fittingDecimals(Extent const& extent, Survey const& found, int decimals) {
  constexpr int kLeast = 4;
  if (hasRoom(extent, decimals)) return decimals;
  return std::clamp(fittingDecimals(extent), std::min(std::max(kLeast, found.promised), decimals), decimals);
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
    Bounds const& b = *options.bounds;
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

ScaledPoint narrowed(WidePoint const& wide) {
  return {static_cast<int>(wide.position[0]), static_cast<int>(wide.position[1]), static_cast<int>(wide.position[2]),
          wide.intensity, wide.classification};
}

/// Adds those of a batch that lie within the bounds.
void appendWithin(LoadedCloud& cloud, std::vector<WidePoint> const& batch, Reading const& reading) {
  for (WidePoint const& wide : batch) {
    const std::uint64_t place = cloud.pointsRead++;
    if (reading.options.wayBack) cloud.classes.push_back(wide.classification);
    if (!reading.bounds.admits(wide)) continue;
    if (!fits(wide)) throw OutOfRange{};
    cloud.points.push_back(narrowed(wide));
    if (reading.options.wayBack) cloud.places.push_back(static_cast<std::uint32_t>(place));
    if (reading.options.colours) cloud.colours.push_back(wide.colour);
  }
}

/// Adds a whole batch, on all processors.
void append(LoadedCloud& cloud, std::vector<WidePoint> const& batch, Reading const& reading) {
  constexpr std::size_t kPart = 8192;  // points that a thread takes at a time
  LoadOptions const& options = reading.options;
  const std::size_t first = cloud.points.size(), firstClass = cloud.classes.size();
  cloud.points.resize(first + batch.size());
  if (options.wayBack) cloud.classes.resize(firstClass + batch.size());
  if (options.colours) cloud.colours.resize(first + batch.size());
  std::atomic<bool> fitting{true};
  Reparte(batch.size(), kPart, [&](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) {
      if (!fits(batch[i])) fitting = false;
      cloud.points[first + i] = narrowed(batch[i]);
      if (options.wayBack) cloud.classes[firstClass + i] = batch[i].classification;
      if (options.colours) cloud.colours[first + i] = batch[i].colour;
    }
  });
  if (!fitting) throw OutOfRange{};
  cloud.pointsRead += batch.size();
}

void reserve(LoadedCloud& cloud, std::uint64_t more, Reading const& reading) {
  cloud.points.reserve(cloud.points.size() + more);
  if (reading.options.colours) cloud.colours.reserve(cloud.colours.size() + more);
  if (!reading.options.wayBack) return;
  if (reading.options.bounds) cloud.places.reserve(cloud.places.size() + more);
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
  PointStream stream(file, reading.options.columns, readingOf(reading.options));
  if (reading.options.bounds) reserve(cloud, stream.count(), reading);  // of many files few points may be within
  while (stream.next(reading.seed, batch)) {
    reading.options.bounds ? appendWithin(cloud, batch, reading) : append(cloud, batch, reading);
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
  LoadedCloud cloud{reading.seed, {}, 0, {}, {}, {}};
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

/// Who is to blame for an extent without room: a file that has none by itself, or all of them.
std::string blamed(Groups const& groups, LoadOptions const& options, int precision) {
  std::size_t files = 0;
  for (auto const& inputs : groups) {
    for (Input const& input : inputs) {
      ++files;
      const std::optional<Extent> own = input.vector ? input.vector->extent : input.extent;
      if (own && !hasRoom(within(*own, options), precision)) return input.name;
    }
  }
  return files == 1 ? groups[0][0].name : fmt::format("{} files together", files);
}

std::vector<LoadedCloud> readAll(Groups const& groups, Survey const& found, LoadOptions const& options, HostApp& app) {
  const Extent extent = within(found.extent, options);
  const int wanted = roomyDecimals(extent, found.decimals), decimals = fittingDecimals(extent, found, wanted);
  const int precision = options.precision.value_or(decimals + roomForMore(extent, decimals, options));
  if (found.believed && !hasRoom(extent, precision)) throw OutOfRange{};
  requireFit(extent, precision, blamed(groups, options, precision));
  const CDataSemilla seed = seedFor(extent, precision);
  Reading reading{seed, BoundsFilter(options, seed), options, found.points, 0, app};
  std::vector<LoadedCloud> clouds;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    clouds.push_back(readGroup(groups[i], found.cloudPoints[i], reading));
  }
  if (!options.precision && decimals < wanted) {
    app.warn(
        fmt::format("coordinates in text have {} decimals, of which 32 bits hold {} here: they are rounded to "
                    "that; --precision takes fewer",
                    wanted, decimals));
  }
  return clouds;
}

std::vector<LoadedCloud> readGroups(Groups& groups, LoadOptions const& options, HostApp& app) {
  try {
    return readAll(groups, survey(groups, true, options), options, app);
  } catch (OutOfRange const&) {
    // Some file declares less than it holds, or more than there is room for. What the points themselves say decides.
  }
  const Survey measured = survey(groups, false, options);
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

/// Has the cloud say where it lies. Where that is given, what cannot be understood is no fault, nor in a build that
/// understands none.
void meetSystem(CommonSystem& common, Input const& input, LoadOptions const& options) {
  if (input.vector) return common.meet(input.vector->system, input.name);
  const PointStream stream(input.name, options.columns, {.fields = LasFields::surface, .partial = options.partial});
  try {
    common.meet(systemOf(stream.las()), input.name);
  } catch (FileError const& error) {
    if (!ReferenceSystem::areUnderstood()) return common.warn(error.what());
    if (!common.isGiven()) throw;
  }
}

CommonSystem commonSystem(Groups const& groups, MapOptions const& map, LoadOptions const& options) {
  CommonSystem common(map.system);
  for (auto const& inputs : groups) {
    for (Input const& input : inputs) meetSystem(common, input, options);
  }
  return common;
}

/// Whoever takes what there is wants to know what there is not.
void warnOfCuts(Groups const& groups, HostApp& app) {
  for (auto const& inputs : groups) {
    for (Input const& input : inputs) {
      if (input.missing == 0) continue;
      app.warn(fmt::format("{}: is cut short, and {} of the points that it promises are missing", input.name,
                           withThousands(input.missing)));
    }
  }
}

/// Where all places that do not lie at 0 are.
Extent clearOfZero(Groups const& groups) {
  Extent rest;
  for (auto const& inputs : groups) {
    for (Input const& input : inputs) {
      if (!input.vector) {
        if (input.extent) rest.include(*input.extent);
        continue;
      }
      for (VectorEntity const& entity : input.vector->entities) {
        for (auto const& p : entity.places) {
          if (p[2] != 0) rest.include(p[0], p[1], p[2]);
        }
      }
    }
  }
  return rest;
}

/// Lines drawn without heights often come with 0 for all of them, or for some vertices, and would cut pits into the
/// ground. They are told of where all else lies clear of 0.
void warnOfZeroHeights(Groups const& groups, HostApp& app) {
  constexpr double kClear = 0.1;  // of the range of heights
  const Extent rest = clearOfZero(groups);
  const double low = rest.min[2], high = rest.max[2];
  if (rest.isEmpty() || std::max(low, -high) <= kClear * (high - low)) return;
  const auto tell = [&](Input const& input, std::uint64_t count, std::uint64_t of, char const* what) {
    if (count == 0) return;
    app.warn(
        fmt::format("{}: {} of its {} {}, and all else lies between {:g} and {:g}: give them heights, or leave "
                    "them out with --code",
                    input.name, withThousands(count), withThousands(of), what, low, high));
  };
  for (auto const& inputs : groups) {
    for (Input const& input : inputs) {
      if (!input.vector) continue;
      std::uint64_t whole = 0, places = 0;
      for (VectorEntity const& entity : input.vector->entities) {
        const std::uint64_t atZero = placesAtZero(entity);
        (atZero == entity.places.size() ? whole : places) += atZero == entity.places.size() ? 1 : atZero;
      }
      tell(input, whole, input.vector->entities.size(), "lines and sets of points have the height 0 throughout");
      tell(input, places, input.vector->places, "vertices have the height 0, in lines that have others too");
    }
  }
}

}  // namespace

std::vector<CCoor3D<int>> takePoints(LoadedCloud& cloud, bool hilbert, Ties ties, Halves halves) {
  const std::vector<ScaledPoint> points = std::exchange(cloud.points, {});
  if (!hilbert) {
    std::vector<CCoor3D<int>> taken = Reservado<CCoor3D<int>>(points.size());
    for (ScaledPoint const& p : points) taken.emplace_back(static_cast<CCoor3D<int>>(p));
    return taken;
  }
  std::vector<std::uint32_t> order = hilbertOrder(points, ties);
  if (halves == Halves::inTurns) alternateHalves(order, points);
  if (!cloud.places.empty()) applyOrder(cloud.places, order);
  if (!cloud.colours.empty()) applyOrder(cloud.colours, order);
  std::vector<CCoor3D<int>> taken = inOrder<CCoor3D<int>>(points, order);
  if (cloud.places.empty() && !cloud.classes.empty()) cloud.places = std::move(order);
  return taken;
}

std::vector<LoadedCloud> loadClouds(std::vector<std::vector<std::string>> const& groups, LoadOptions const& options,
                                    HostApp& app) {
  app.phase("Reading");
  Groups inputs = inputsOf(groups, options);
  // Looking into the register of systems takes half as long as reading a million points: beside it, or after it where
  // there is no thread.
  const auto findSystem = [&] {
    return options.map ? commonSystem(inputs, *options.map, options) : CommonSystem(ReferenceSystem());
  };
  auto system = std::async(std::launch::async | std::launch::deferred, findSystem);
  std::vector<LoadedCloud> clouds;
  try {
    clouds = readGroups(inputs, options, app);
  } catch (Failure const&) {
    system.get();  // files of different systems have an extent that nothing holds: the systems are the reason
    throw;
  }
  const CommonSystem found = system.get();
  for (LoadedCloud& cloud : clouds) cloud.system = found.system();
  for (std::string const& warning : found.warnings()) app.warn(warning);
  warnOfCuts(inputs, app);
  warnOfZeroHeights(inputs, app);
  return clouds;
}

}  // namespace Meseta47::host
