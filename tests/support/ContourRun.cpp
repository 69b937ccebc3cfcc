#include "support/ContourRun.h"

#include <algorithm>
#include <limits>

#include "model/terrain/CTIN.h"
#include "model/threads/Codigos.h"
#include "planar/CNivelDeCurvas.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::test {

namespace {

CDibujo<int> CloudDrawing(std::vector<CCoor3D<int>> points) {
  CSetPuntos<int> cloud{CString(L"cloud")};
  cloud.CLinea<int>::Asigna(std::move(points));
  CDibujo<int> drawing(CDataSemilla(0, 0, 0, 0));
  drawing.Inserta(std::move(cloud));
  return drawing;
}

support::Mesh MeshOf(CTIN const& tin) {
  support::Mesh mesh;
  for (unsigned i = 0; i < tin.puntos.size(); ++i) {
    CPuntoTIN const& p = *tin.Punto(i);
    mesh.points.push_back({p.x, p.y, p.z});
  }
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) {
    Terna const& v = tin.Vertices(i);
    support::Triangle t{};
    for (std::size_t k = 0; k < 3; ++k) t[k] = static_cast<std::int32_t>(v[k]) + 1;
    mesh.triangles.push_back(t);
  }
  return mesh;
}

}  // namespace

std::vector<support::ContourLine> LinesOf(CDibujo<int> const& drawing) {
  std::vector<support::ContourLine> lines;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    support::ContourLine line;
    for (CCoor3D<int> const& p : drawing[i].Puntos()) line.push_back({p.x, p.y, p.z});
    lines.push_back(std::move(line));
  }
  return lines;
}

Contoured ContourCloud(std::vector<CCoor3D<int>> points, support::ContourRule rule, bool whole) {
  Contoured result;
  result.rule = rule;
  result.rule.longestSide = std::min<std::int64_t>(rule.longestSide, std::numeric_limits<std::int32_t>::max());
  CDibujo<int> drawing = CloudDrawing(std::move(points));
  CTriangulacion2D triangulation(0, drawing.semilla, 1);
  triangulation.SinMarco(whole);
  {
    CTIN tin(0, 0, drawing.semilla);
    result.code = triangulation.Run(drawing, tin, 0, nullptr, false, nullptr, nullptr, nullptr);
    if (result.code != kHecho) return result;
    result.mesh = MeshOf(tin);
  }
  drawing.PonNumerosACero();
  CDibujo<int> contours(drawing.semilla);
  const auto keep = [&contours](CNivelDeCurvas const& level) {
    for (std::size_t i = 0; i < level.Cantidad(); ++i) contours.Inserta(level.Linea(i));
  };
  const auto longest = static_cast<double>(result.rule.longestSide);
  result.code = result.rule.shore ? triangulation.Curvado(drawing, keep, longest, result.rule.interval, nullptr, false,
                                                          nullptr, CLlanos::ORILLA)
                                  : triangulation.Curvado(drawing, contours, longest, result.rule.interval, nullptr);
  result.lines = LinesOf(contours);
  return result;
}

std::string FaultsOf(Contoured const& contoured) {
  const support::PlainContours plain = plainContours(contoured.mesh, contoured.rule);
  std::string faults;
  const auto add = [&faults](std::string const& fault) {
    if (!fault.empty()) faults += fault + "\n";
  };
  add(levelFaults(contoured.lines, contoured.rule.interval));
  for (std::size_t i = 1; i < contoured.lines.size(); ++i) {
    if (contoured.lines[i].front().z < contoured.lines[i - 1].front().z) add("a line stands behind a higher one");
  }
  const std::string wrongPieces = pieceFaults(piecesOf(contoured.lines), plain.distinctPieces());
  add(wrongPieces);
  add(openEndFaults(contoured.lines, plain));
  add(strayFaults(contoured.lines, contoured.mesh, contoured.rule));
  if (wrongPieces.empty()) add(meetings(contoured.lines, plain).first);
  return faults;
}

}  // namespace Meseta47::test
