#include "host/SpaceDrawing.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>
#include <utility>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/SpatialOrder3D.h"
#include "host/mesh/SpaceRank.h"
#include "model/geometry/CMaximas.h"
#include "run/CFiltroPuntos.h"
#include "tetrahedral/CMedidasDeRun3D.h"

namespace Meseta47::host {

namespace {

void requireSpace(CDibujo<int> const& drawing, std::string const& what) {
  SpaceRank rank;
  std::uint64_t points = 0;
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    points += drawing[e].Puntos().size();
    for (CCoor3D<int> const& p : drawing[e].Puntos()) rank.add(p);
  }
  if (rank.points() == 4) return;
  if (points < 4) {
    throw Failure(fmt::format("{}: {} points are left after the filters; a tetrahedron needs 4", what, points));
  }
  constexpr char const* kWhere[] = {"", "at one place", "on one line", "in one plane"};
  throw Failure(fmt::format("{}: all {} points lie {}; tetrahedra need points off a plane", what, withThousands(points),
                            kWhere[rank.points()]));
}

void requireFrame(CDibujo<int> const& drawing, std::string const& what) {
  CMaximas<int> box;
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    for (CCoor3D<int> const& p : drawing[e].Puntos()) box.Nuevo(p);
  }
  const double half = CMedidasDeRun3D::SemiladoDelMarco(std::max({box.Ancho(), box.Alto(), box.Altura()})) + 1;
  const auto reach = [half](int low, int high) { return std::abs((double{1} * low + high) / 2) + half; };
  const double farthest = std::max(
      {reach(box.Minimo.x, box.Maximo.x), reach(box.Minimo.y, box.Maximo.y), reach(box.Minimo.z, box.Maximo.z)});
  const double most = std::numeric_limits<std::int32_t>::max();
  if (farthest <= most) return;
  const int fewer = static_cast<int>(std::ceil(std::log10(farthest / most)));
  throw Failure(
      fmt::format("{}: the cube around the points does not fit 32-bit coordinates at precision {}: "
                  "--precision {} would fit, or take a part of it with --bounds or --z",
                  what, drawing.semilla.precision, drawing.semilla.precision - fewer));
}

void add(CDibujo<int>& drawing, std::vector<CCoor3D<int>> points, std::vector<Rgb8> const& colours) {
  if (points.empty()) return;
  CSetPuntos<int> set(L"CLOUD");
  set.Asigna(std::move(points), surveyData(colours));
  drawing.Inserta(std::move(set));
}

/// The points that the filter lets through; their colours, where there are any, stay with them.
std::vector<ScaledPoint> admitted(std::vector<ScaledPoint> points, std::vector<Rgb8>& colours,
                                  CFiltroPuntos const& filter) {
  const auto isOut = [&filter](ScaledPoint const& p) { return !filter.AdmitePunto(static_cast<CCoor3D<int>>(p)); };
  if (!colours.empty()) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (!isOut(points[i])) colours[kept++] = colours[i];
    }
    colours.resize(kept);
  }
  std::erase_if(points, isOut);
  return points;
}

}  // namespace

CDibujo<int> spaceDrawingOf(LoadedCloud& cloud, CloudOptions const& options, HostApp& app) {
  CDibujo<int> drawing(cloud.seed);
  drawing.tipoNube = 1;  // filters look at the class of each point
  const CDataTriangulacion filters = filtersOf(options);
  const CFiltroPuntos filter(filters, cloud.seed.Precision(), drawing);
  if (options.hilbert()) cloud.lines.Sort(7, true, -1);
  for (unsigned e = 0; e < cloud.lines.Cantidad(); ++e) {
    std::vector<CCoor3D<int>> points = cloud.lines[e].Puntos();
    std::erase_if(points, [&filter](CCoor3D<int> const& p) { return !filter.AdmitePunto(p); });
    add(drawing, std::move(points), {});
  }
  cloud.lines.Clear();
  std::vector<Rgb8> colours = std::exchange(cloud.colours, {});
  const std::vector<ScaledPoint> points = admitted(std::exchange(cloud.points, {}), colours, filter);
  app.step(0, 1);
  if (options.hilbert()) {
    const std::vector<std::uint32_t> order = spaceOrder(points);
    if (!colours.empty()) applyOrder(colours, order);
    add(drawing, inOrder<CCoor3D<int>>(points, order), colours);
  } else {
    add(drawing, {points.begin(), points.end()}, colours);
  }
  app.step(1, 1);
  requireSpace(drawing, options.what());
  requireFrame(drawing, options.what());
  return drawing;
}

CDataTriangulacion everything() {
  CDataTriangulacion data;
  data.incluidos.Inserta(CElementoDigiTab(CTipoEntidad{}, L"*", 70, 70, 70, 0, 0, CString(), 1), false);
  return data;
}

}  // namespace Meseta47::host
