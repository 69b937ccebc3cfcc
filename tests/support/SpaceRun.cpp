#include "support/SpaceRun.h"

#include <cstring>
#include <unordered_map>

namespace Meseta47::test {

CDataTriangulacion EverythingIn() {
  CDataTriangulacion data;
  data.incluidos.Inserta(CElementoDigiTab(CTipoEntidad{}, L"*", 70, 70, 70, 0, 0, CString(), 1), false);
  return data;
}

namespace {

/// Places in the cloud by the numbers that the run gave.
std::vector<std::int32_t> PlacesOf(CLinea<int> const& cloud) {
  std::vector<std::int32_t> places(static_cast<std::size_t>(cloud.NPuntos()) + 1, 0);
  for (int i = 0; i < cloud.NPuntos(); ++i) {
    const int number = cloud.PunteroAPunto(i)->num;
    if (number > 0) places.at(static_cast<std::size_t>(number)) = i + 1;
  }
  return places;
}

void Collect(CSetTetraedros const& set, std::vector<support::Tetrahedron>& tetrahedra) {
  std::vector<CTetraedro*> all;
  set.RellenaVectorPunteros(all);
  for (CTetraedro const* t : all) tetrahedra.push_back({t->N1(), t->N2(), t->N3(), t->N4()});
}

}  // namespace

LinkedInSpace LinkInSpace(std::vector<support::Point> const& points, bool spill, unsigned fineness) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D triangulation;
  triangulation.SetFinura(fineness);
  LinkedInSpace linked;
  linked.code = spill ? triangulation.RunTetraedros(drawing) : triangulation.Link(drawing, false);
  if (linked.code == kHecho && spill) {
    const std::string bytes = triangulation.SpilledBytes();
    linked.mesh.tetrahedra.resize(bytes.size() / sizeof(support::Tetrahedron));
    std::memcpy(linked.mesh.tetrahedra.data(), bytes.data(), bytes.size());
  } else {
    Collect(triangulation.setRaiz, linked.mesh.tetrahedra);
  }
  const std::vector<std::int32_t> places = PlacesOf(drawing[0]);
  for (support::Tetrahedron& t : linked.mesh.tetrahedra) {
    for (std::int32_t& n : t) n = n > 0 ? places.at(static_cast<std::size_t>(n)) : n;
  }
  linked.mesh.points = points;
  for (CPuntoTIN const& p : triangulation.esquinas) linked.mesh.corners.push_back({p.x, p.y, p.z});
  linked.summary = triangulation.Resumen();
  return linked;
}

LinkedInSpace LinkHull(std::vector<support::Point> const& points) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D triangulation;
  LinkedInSpace linked;
  linked.code = triangulation.RunTetraedros(drawing);
  if (linked.code != kHecho) return linked;
  linked.code = triangulation.RecorreTetraedros(
      drawing, true, [&](CTriangulacion3D::CCuatro const& t) { linked.mesh.tetrahedra.push_back(t); });
  const std::vector<std::int32_t> places = PlacesOf(drawing[0]);
  for (support::Tetrahedron& t : linked.mesh.tetrahedra) {
    for (std::int32_t& n : t) n = places.at(static_cast<std::size_t>(n));
  }
  linked.mesh.points = points;
  linked.summary = triangulation.Resumen();
  return linked;
}

}  // namespace Meseta47::test
