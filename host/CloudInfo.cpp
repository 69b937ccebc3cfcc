#include "host/CloudInfo.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "host/CloudReader.h"
#include "host/CommonSystem.h"
#include "host/FileError.h"
#include "host/mesh/NativeModel.h"
#include "host/vector/VectorInput.h"

namespace Meseta47::host {

void ValueRange::include(ValueRange const& other) {
  if (other.isEmpty()) return;
  *this = isEmpty() ? other : ValueRange{std::min(least, other.least), std::max(most, other.most)};
}

namespace {

/// Plan positions as whole numbers of units from the corner of all points. The corner is a point's own place, so that
/// the positions of its file fall on whole numbers and not halfway between two.
struct PlanGrid {
  double x0, y0, unitsAMetre;

  [[nodiscard]] double column(double x) const { return std::round((x - x0) * unitsAMetre); }
  [[nodiscard]] double row(double y) const { return std::round((y - y0) * unitsAMetre); }
};

struct PackedKey {
  using Key = std::uint64_t;
  static Key of(PlanGrid const& grid, double x, double y) {
    return static_cast<Key>(grid.column(x)) << 32U | static_cast<Key>(grid.row(y));
  }
};

/// For clouds too wide for 32 bits at their precision.
struct WideKey {
  using Key = std::pair<double, double>;
  static Key of(PlanGrid const& grid, double x, double y) { return {grid.column(x), grid.row(y)}; }
};

struct Stopped {};

std::optional<Octree> octreeOf(LasReader const& las) {
  const auto copc = las.octree();
  if (!copc) return std::nullopt;
  const int levels = copc->levels();
  return Octree{copc->nodes.size(), levels, copc->spacing, copc->spacingOf(std::max(levels - 1, 0))};
}

const VectorOptions kAllVectors{{}, {}, true, true};

/// What a file says of where it lies; why not, when it cannot be understood.
template <class Tell>
void settleSystem(CloudFileInfo& file, Tell tell) {
  try {
    file.system = tell();
  } catch (FileError const& error) {
    file.systemProblem = error.what();
  }
}

VectorFacts factsOf(VectorContent const& content) {
  VectorFacts facts;
  facts.withoutZ = content.withoutZ;
  for (VectorEntity const& entity : content.entities) {
    ++(entity.isLine ? facts.lines : facts.sets);
    ++facts.codes[entity.code];
    if (liesAtZero(entity)) ++facts.atZero;
  }
  return facts;
}

void include(std::array<ValueRange, 3>& all, std::array<ValueRange, 3> const& more) {
  for (std::size_t channel = 0; channel < all.size(); ++channel) all[channel].include(more[channel]);
}

class Gatherer {
 public:
  Gatherer(InfoProgress const& progress, TextColumns const& columns, bool partial)
      : progress_(progress), columns_(columns), reading_{.partial = partial} {}

  CloudInfo gather(std::span<std::string const> names) {
    CloudInfo info;
    for (std::string const& name : names) {
      info.files.push_back(isVectorFile(name) ? countVectors(name) : countFile(name));
      addTo(info, info.files.back());
    }
    settleCommonSystem(info);
    if (info.all.points > 0) {
      Extent const& extent = info.all.extent;
      const PlanGrid grid{extent.min[0], extent.min[1], std::pow(10.0, info.precision)};
      const double widest = std::max(extent.max[0] - extent.min[0], extent.max[1] - extent.min[1]);
      const bool packs = widest * grid.unitsAMetre + 1 <= std::numeric_limits<std::uint32_t>::max();
      packs ? countDuplicates<PackedKey>(info, grid) : countDuplicates<WideKey>(info, grid);
    }
    return info;
  }

 private:
  CloudFileInfo countFile(std::string const& name) {
    CloudReader reader(name, columns_, reading_);
    CloudFileInfo file;
    file.name = name;
    if (LasReader const* const las = reader.las(); las != nullptr) {
      file.las = LasFacts{las->header(), las->vlrs().size(), las->compression(), octreeOf(*las), las->missing()};
      settleSystem(file, [las] { return systemOf(las); });
    }
    if (reader.text() != nullptr) file.text = TextFacts{reader.text()->columns(), reader.text()->columnsFrom()};
    if (reader.isModel()) {
      const CModeloDigital model = readNativeModel(name);
      file.model = ModelFacts{model.Tin().Cantidad(), model.Tin().Limite().size()};
    }
    forEachPoint(reader, [&file, coloured = reader.hasColour()](CloudPoint const& p) {
      ++file.points;
      file.intensity.include(p.intensity);
      if (coloured) include(file.colour, {ValueRange{p.r, p.r}, ValueRange{p.g, p.g}, ValueRange{p.b, p.b}});
      ++file.byClass[p.classification];
      ++file.byReturn[p.returnNumber];
      file.extent.include(p.x, p.y, p.z);
    });
    file.precision = reader.precision();
    return file;
  }

  CloudFileInfo countVectors(std::string const& name) {
    VectorContent content = readVectorFile(name, kAllVectors);
    CloudFileInfo file;
    file.name = name;
    file.vector = factsOf(content);
    file.system = content.system;
    file.points = content.places;
    file.extent = content.extent;
    file.precision = content.decimals;
    pass(content.places);
    return file;
  }

  static void addTo(CloudInfo& info, CloudFileInfo const& file) {
    info.precision = std::max(info.precision, file.precision);
    info.all.points += file.points;
    info.all.extent.include(file.extent);
    info.all.intensity.include(file.intensity);
    include(info.all.colour, file.colour);
    const auto plus = std::plus<std::uint64_t>();
    std::transform(file.byClass.begin(), file.byClass.end(), info.all.byClass.begin(), info.all.byClass.begin(), plus);
    std::transform(file.byReturn.begin(), file.byReturn.end(), info.all.byReturn.begin(), info.all.byReturn.begin(),
                   plus);
  }

  static void settleCommonSystem(CloudInfo& info) {
    CommonSystem common{ReferenceSystem()};
    try {
      for (CloudFileInfo const& file : info.files) common.meet(file.system, file.name);
      info.all.system = common.system();
    } catch (FileError const& error) {
      info.systemProblem = error.what();
    }
  }

  template <typename Kind>
  void countDuplicates(CloudInfo& info, PlanGrid const& grid) {
    std::vector<typename Kind::Key> keys;
    keys.reserve(info.all.points);
    for (CloudFileInfo& file : info.files) {
      const auto first = static_cast<std::ptrdiff_t>(keys.size());
      forEachPlace(file, [&](double x, double y) { keys.push_back(Kind::of(grid, x, y)); });
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
  void forEachPlace(CloudFileInfo const& file, Action action) {
    if (!file.vector) {
      LasReading places = reading_;
      places.fields = LasFields::surface;
      CloudReader reader(file.name, columns_, places);
      return forEachPoint(reader, [&action](CloudPoint const& p) { action(p.x, p.y); });
    }
    const VectorContent content = readVectorFile(file.name, kAllVectors);
    for (VectorEntity const& entity : content.entities) {
      for (auto const& place : entity.places) action(place[0], place[1]);
    }
  }

  template <typename Action>
  void forEachPoint(CloudReader& reader, Action action) {
    while (reader.readBatch(batch_) > 0) {
      std::for_each(batch_.begin(), batch_.end(), action);
      pass(batch_.size());
    }
  }

  void pass(std::uint64_t points) {
    passed_ += points;
    if (progress_ && !progress_(passed_)) {
      throw Stopped();
    }
  }

  InfoProgress const& progress_;
  TextColumns const& columns_;
  LasReading reading_;
  std::vector<CloudPoint> batch_;
  std::uint64_t passed_ = 0;
};

}  // namespace

std::optional<CloudInfo> gatherInfo(std::span<std::string const> names, InfoProgress const& progress,
                                    TextColumns const& columns, bool partial) {
  try {
    return Gatherer(progress, columns, partial).gather(names);
  } catch (Stopped const&) {
    return std::nullopt;
  }
}

}  // namespace Meseta47::host
