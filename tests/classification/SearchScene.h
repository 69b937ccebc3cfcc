#pragma once

#include <vector>

#include "support/PlanarRun.h"
#include "support/Random.h"

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

/// A search in a drawing in metres, and what it answered.
struct Search {
  CDataSemilla seed{0, 0, 0, 0};
  CDataTriangulacion data;
  double distance = 2, height = 5;
  CInfoClasificacion info{6, 0.0, L""};
  int onePass = 0;
  bool withoutFrame = false;
  unsigned changed = 12345;
  std::vector<CDibujo<int>*> others{};
  std::vector<CPosicionEntidad> const* selection = nullptr;

  int Run(CDibujo<int>& drawing) {
    CTriangulacion2D triangulation(0, seed, data, 7);
    triangulation.SinMarco(withoutFrame);
    return triangulation.RunPuntosAltos(drawing, distance, height, info, onePass, changed,
                                        others.empty() ? nullptr : &others, selection);
  }
};

/// Ground that keeps what stands around the origin off the frame.
inline const std::vector<ClassedPoint> kCorners{{40, 41, 0}, {-40, 43, 0}, {-41, -40, 0}, {42, -43, 0}};
/// The same, with six points four metres from the origin before it.
inline const std::vector<ClassedPoint> kGround{{4, 0, 0},  {2, 3, 0},   {-2, 3, 0},   {-4, 0, 0},    {-2, -3, 0},
                                               {2, -3, 0}, {40, 41, 0}, {-40, 43, 0}, {-41, -40, 0}, {42, -43, 0}};

inline std::vector<ClassedPoint> With(std::vector<ClassedPoint> ground, std::vector<ClassedPoint> const& more) {
  ground.insert(ground.end(), more.begin(), more.end());
  return ground;
}

/// Three poles in a triangle that is an outline for a distance of seven metres, and a lower point within it.
inline const std::vector<ClassedPoint> kPoles{{-3, -3, 90}, {3, -3, 90}, {0, 3, 90}, {0, 0, 88}};

/// A cloud of poles on the ground in general position; a third of the points is tall.
inline std::vector<ClassedPoint> Forest(int n, std::uint64_t seed = 1) {
  support::Random random(seed);
  std::vector<ClassedPoint> points;
  for (int i = 0; i < n; ++i) {
    const int kind = random.between(0, 5);
    points.push_back({random.between(0, 100'000), random.between(0, 100'000),
                      kind < 2 ? random.between(8'000, 20'000) : random.between(0, 300),
                      static_cast<unsigned char>(kind == 5 ? 6 : 2)});
  }
  return points;
}

/// A search in millimetres.
inline Search InForest() {
  Search search;
  search.seed = CDataSemilla(3, 0, 0, 0);
  search.distance = 15;
  search.height = 2;
  return search;
}

}  // namespace Meseta47::test
