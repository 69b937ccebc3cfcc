#include "host/mesh/ExactModel.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "host/FileError.h"
#include "host/mesh/SharedPrecision.h"
#include "host/mesh/SurfaceSource.h"
#include "model/terrain/CModeloDigital.h"

namespace Meseta47::host {

namespace {

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
  const SharedPrecision precision(surface.vertices, 2, file);
  ExactModel model;
  model.precision = precision.decimals();
  model.vertices.resize(surface.vertices.size());
  model.origin = {precision.fillAxis(surface.vertices, 0, [&](std::size_t i, int x) { model.vertices[i].x = x; }),
                  precision.fillAxis(surface.vertices, 1, [&](std::size_t i, int y) { model.vertices[i].y = y; })};
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
