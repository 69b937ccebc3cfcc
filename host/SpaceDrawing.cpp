#include "host/SpaceDrawing.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

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

}  // namespace

CDibujo<int> spaceDrawingOf(LoadedCloud& cloud, CloudOptions const& options, HostApp& app) {
  CDibujo<int> drawing(cloud.seed);
  drawing.tipoNube = 1;  // filters look at the class of each point
  const CDataTriangulacion filters = filtersOf(options);
  const CFiltroPuntos filter(filters, cloud.seed.Precision(), drawing);
  const auto add = [&drawing](std::vector<CCoor3D<int>> points) {
    if (points.empty()) return;
    CSetPuntos<int> set(L"CLOUD");
    set.CLinea<int>::Asigna(std::move(points));
    drawing.Inserta(std::move(set));
  };
  if (options.hilbert()) cloud.lines.Sort(7, true, -1);
  for (unsigned e = 0; e < cloud.lines.Cantidad(); ++e) {
    std::vector<CCoor3D<int>> points = cloud.lines[e].Puntos();
    std::erase_if(points, [&filter](CCoor3D<int> const& p) { return !filter.AdmitePunto(p); });
    add(std::move(points));
  }
  cloud.lines.Clear();
  std::vector<ScaledPoint> points = std::move(cloud.points);
  cloud.points = {};
  std::erase_if(points, [&filter](ScaledPoint const& p) { return !filter.AdmitePunto(static_cast<CCoor3D<int>>(p)); });
  app.step(0, 1);
  add(options.hilbert() ? inOrder<CCoor3D<int>>(points, spaceOrder(points))
                        : std::vector<CCoor3D<int>>(points.begin(), points.end()));
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
