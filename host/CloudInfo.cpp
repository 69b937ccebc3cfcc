#include "host/CloudInfo.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "host/CloudReader.h"

namespace Meseta47::host {

namespace {

/// Plan positions as whole numbers of units from the corner of all points. The corner is a point's own place, so that
/// the positions of its file fall on whole numbers and not halfway between two.
struct PlanGrid {
  double x0, y0, unitsAMetre;

  [[nodiscard]] double column(CloudPoint const& p) const { return std::round((p.x - x0) * unitsAMetre); }
  [[nodiscard]] double row(CloudPoint const& p) const { return std::round((p.y - y0) * unitsAMetre); }
};

struct PackedKey {
  using Key = std::uint64_t;
  static Key of(PlanGrid const& grid, CloudPoint const& p) {
    return static_cast<Key>(grid.column(p)) << 32U | static_cast<Key>(grid.row(p));
  }
};

/// For clouds too wide for 32 bits at their precision.
struct WideKey {
  using Key = std::pair<double, double>;
  static Key of(PlanGrid const& grid, CloudPoint const& p) { return {grid.column(p), grid.row(p)}; }
};

struct Stopped {};

class Gatherer {
 public:
  explicit Gatherer(InfoProgress const& progress) : progress_(progress) {}

  CloudInfo gather(std::span<std::string const> names) {
    CloudInfo info;
    for (std::string const& name : names) {
      info.files.push_back(countFile(name));
      addTo(info, info.files.back());
    }
    if (info.all.points > 0) {
      const Extent& extent = info.all.extent;
      const PlanGrid grid{extent.min[0], extent.min[1], std::pow(10.0, info.precision)};
      const double widest = std::max(extent.max[0] - extent.min[0], extent.max[1] - extent.min[1]);
      const bool packs = widest * grid.unitsAMetre + 1 <= std::numeric_limits<std::uint32_t>::max();
      packs ? countDuplicates<PackedKey>(info, grid) : countDuplicates<WideKey>(info, grid);
    }
    return info;
  }

 private:
  CloudFileInfo countFile(std::string const& name) {
    CloudReader reader(name);
    CloudFileInfo file;
    file.name = name;
    if (LasReader const* const las = reader.las(); las != nullptr) {
      file.header = las->header();
      file.vlrs = las->vlrs();
      file.wkt = las->wkt();
      file.geoKeys = las->geoKeys();
    }
    forEachPoint(reader, [&file](CloudPoint const& p) {
      ++file.points;
      ++file.byClass[p.classification];
      ++file.byReturn[p.returnNumber];
      file.extent.include(p.x, p.y, p.z);
    });
    file.precision = reader.precision();
    return file;
  }

  static void addTo(CloudInfo& info, CloudFileInfo const& file) {
    info.precision = std::max(info.precision, file.precision);
    info.all.points += file.points;
    info.all.extent.include(file.extent);
    const auto plus = std::plus<std::uint64_t>();
    std::transform(file.byClass.begin(), file.byClass.end(), info.all.byClass.begin(), info.all.byClass.begin(), plus);
    std::transform(file.byReturn.begin(), file.byReturn.end(), info.all.byReturn.begin(), info.all.byReturn.begin(),
                   plus);
  }

  template <typename Kind>
  void countDuplicates(CloudInfo& info, PlanGrid const& grid) {
    std::vector<typename Kind::Key> keys;
    keys.reserve(info.all.points);
    for (CloudFileInfo& file : info.files) {
      const auto first = static_cast<std::ptrdiff_t>(keys.size());
      CloudReader reader(file.name);
      forEachPoint(reader, [&](CloudPoint const& p) { keys.push_back(Kind::of(grid, p)); });
      file.planDuplicates = repeated(keys.begin() + first, keys.end());
    }
    info.all.planDuplicates =
        info.files.size() == 1 ? info.files[0].planDuplicates : repeated(keys.begin(), keys.end());
  }

  /// Sorts the keys; how many equal the one before them.
  template <typename Iterator>
  static std::uint64_t repeated(Iterator begin, Iterator end) {
    std::sort(begin, end);
    std::uint64_t count = 0;
    for (Iterator at = begin; at != end; ++at) {
      if (at != begin && *at == *(at - 1)) {
        ++count;
      }
    }
    return count;
  }

  template <typename Action>
  void forEachPoint(CloudReader& reader, Action action) {
    while (reader.readBatch(batch_) > 0) {
      std::for_each(batch_.begin(), batch_.end(), action);
      passed_ += batch_.size();
      if (progress_ && !progress_(passed_)) {
        throw Stopped();
      }
    }
  }

  InfoProgress const& progress_;
  std::vector<CloudPoint> batch_;
  std::uint64_t passed_ = 0;
};

}  // namespace

std::optional<CloudInfo> gatherInfo(std::span<std::string const> names, InfoProgress const& progress) {
  try {
    return Gatherer(progress).gather(names);
  } catch (Stopped const&) {
    return std::nullopt;
  }
}

}  // namespace Meseta47::host
