#include "host/mesh/ExactModel.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "host/FileError.h"
#include "host/mesh/SurfaceSource.h"
#include "model/terrain/CModeloDigital.h"

namespace Meseta47::host {

namespace {

constexpr int kMostDecimals = 9;
constexpr double kLargestWhole = 0x1p53;  // up to here a double holds every whole number

bool isFloat(double value) { return static_cast<double>(static_cast<float>(value)) == value; }

/// The decimals that all coordinates share, found by raising them wherever a coordinate needs more.
class SharedPrecision {
 public:
  SharedPrecision(std::vector<Surface::Vertex> const& vertices, std::string const& file) : file_(file) {
    floats_ =
        std::all_of(vertices.begin(), vertices.end(), [](auto const& v) { return isFloat(v[0]) && isFloat(v[1]); });
    for (Surface::Vertex const& v : vertices) {
      raiseFor(v[0]);
      raiseFor(v[1]);
    }
  }

  [[nodiscard]] int decimals() const { return decimals_; }
  [[nodiscard]] double units() const { return units_; }
  [[nodiscard]] double whole(double value) const { return std::nearbyint(value * units_); }

 private:
  void raiseFor(double value) {
    while (!isWhole(value)) {
      if (decimals_ == kMostDecimals || std::abs(value) * units_ * 10 > kLargestWhole) {
        throw FileError(file_, fmt::format("the coordinate {:.17g} has no decimals that all others share: the model "
                                           "cannot be proved exactly; write it as .urd, or in doubles",
                                           value));
      }
      units_ *= 10;
      ++decimals_;
    }
  }

  /// A file holds the double (or float) that is nearest to a decimal number; an origin that was added may cost a bit.
  [[nodiscard]] bool isWhole(double value) const {
    const double nearest = whole(value) / units_;
    if (floats_) return static_cast<float>(nearest) == static_cast<float>(value);
    return std::abs(nearest - value) <= std::abs(value) * std::numeric_limits<double>::epsilon();
  }

  std::string const& file_;
  bool floats_ = false;
  int decimals_ = 0;
  double units_ = 1;
};

/// Fills one axis of the vertices with whole units, counted from the middle of the extent.
template <class Set>
double fillAxis(std::vector<Surface::Vertex> const& from, std::size_t axis, SharedPrecision const& precision,
                std::string const& file, Set set) {
  double low = std::numeric_limits<double>::infinity(), high = -low;
  for (Surface::Vertex const& v : from) {
    low = std::min(low, precision.whole(v[axis]));
    high = std::max(high, precision.whole(v[axis]));
  }
  if (std::max(-low, high) > kLargestWhole || high - low > std::numeric_limits<std::uint32_t>::max()) {
    throw FileError(file, fmt::format("from {:.9g} to {:.9g} it has more units of {} decimals than 32 bits count: the "
                                      "model cannot be proved exactly; write it with a lower --precision",
                                      low / precision.units(), high / precision.units(), precision.decimals()));
  }
  const double middle = low + std::floor((high - low) / 2) + 1;  // 32 bits count one more below 0 than above
  for (std::size_t i = 0; i < from.size(); ++i) set(i, static_cast<int>(precision.whole(from[i][axis]) - middle));
  return middle / precision.units();
}

/// The triangles of a native model run clockwise.
ExactModel exactModel(CTIN const& tin) {
  ExactModel model;
  model.hasOutline = true;
  model.usesAllVertices = false;
  model.precision = tin.semilla.precision;
  model.origin = {tin.semilla.origen[0], tin.semilla.origen[1]};
  model.vertices.assign(tin.puntos.begin(), tin.puntos.end());
  const auto count = static_cast<std::uint32_t>(tin.Cantidad());
  model.triangles.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto [a, b, c] = tin.Vertices(i);
    model.triangles.push_back({a, c, b});
  }
  for (std::size_t i = 0; i < tin.Limite().size(); ++i) model.outline.push_back({tin.Limite()[i], tin.EsHueco(i)});
  return model;
}

}  // namespace

std::string ExactModel::place(std::uint32_t vertex) const {
  const double units = std::pow(10.0, precision);
  const int decimals = std::max(precision, 0);
  return fmt::format("{:.{}f} {:.{}f}", origin[0] + vertices[vertex].x / units, decimals,
                     origin[1] + vertices[vertex].y / units, decimals);
}

ExactModel exactModel(Surface surface, std::string const& file) {
  const SharedPrecision precision(surface.vertices, file);
  ExactModel model;
  model.precision = precision.decimals();
  model.vertices.resize(surface.vertices.size());
  model.origin = {
      fillAxis(surface.vertices, 0, precision, file, [&](std::size_t i, int x) { model.vertices[i].x = x; }),
      fillAxis(surface.vertices, 1, precision, file, [&](std::size_t i, int y) { model.vertices[i].y = y; })};
  model.triangles = std::move(surface.triangles);
  return model;
}

ExactModel readExactModel(std::string const& path, HostApp& app) {
  if (modelKindOf(path) == ModelKind::native) {
    const CModeloDigital model = readNativeModel(path);
    if (model.Tin().Cantidad() == 0) throw FileError(path, "the model has no triangles: there is nothing to prove");
    return exactModel(model.Tin());
  }
  return exactModel(readModel(path, app), path);
}

}  // namespace Meseta47::host
