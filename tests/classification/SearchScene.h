#pragma once

#include <vector>

#include "support/PlanarRun.h"

namespace Meseta47::test {

/// A point and its class.
struct ClassedPoint {
  int x, y, z;
  unsigned char clase = 2;
};

/// One set of points. Its unit is the metre unless the seed says otherwise.
inline CDibujo<int> Cloud(std::vector<ClassedPoint> const& points, CDataSemilla const& seed = {0, 0, 0, 0}) {
  std::vector<CCoor3D<int>> stored;
  stored.reserve(points.size());
  for (ClassedPoint const& p : points) {
    stored.emplace_back(p.x, p.y, p.z, 0);
    stored.back().clasificacion = p.clase;
  }
  CSetPuntos<int> set(L"cloud");
  set.CLinea<int>::Asigna(std::move(stored));
  CDibujo<int> drawing(seed);
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  return drawing;
}

/// Classes of all points, entity by entity.
inline std::vector<int> ClassesOf(CDibujo<int> const& drawing) {
  std::vector<int> classes;
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    for (CCoor3D<int> const& p : drawing[e].Puntos()) classes.push_back(p.clasificacion);
  }
  return classes;
}

/// Parameters that let the named classes be changed ("*": all) and the others not.
inline CDataTriangulacion Changing(std::vector<CString> const& included, std::vector<CString> const& excluded = {}) {
  CDataTriangulacion data;
  data.incluidos.clear();
  for (CString const& code : included) {
    data.incluidos.Inserta(CElementoDigiTab(ENTIDAD_LINEA, code, 70, 70, 70, 0, 0, L"", 1), false);
  }
  for (CString const& code : excluded) {
    data.excluidos.Inserta(CElementoDigiTab(ENTIDAD_LINEA, code, 70, 70, 70, 0, 0, L"", 1), false);
  }
  return data;
}

}  // namespace Meseta47::test
