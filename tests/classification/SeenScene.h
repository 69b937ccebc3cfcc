#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "model/drawing/CCondicionHIntensidad.h"
#include "model/drawing/CCondicionHRGB.h"
#include "model/threads/Codigos.h"
#include "support/PlanarRun.h"
#include "support/Random.h"

namespace Meseta47::test {

/// A point as a scanner with a camera sees it.
struct SeenPoint {
  int x, y, z;
  int intensity = 0;
  std::array<int, 3> colour{};
  unsigned char clase = 2;
};

/// One set of points. Its unit is the metre unless the seed says otherwise.
inline CDibujo<int> Seen(std::vector<SeenPoint> const& points, CDataSemilla const& seed = {0, 0, 0, 0}) {
  std::vector<CCoor3D<int>> stored;
  std::vector<tipoAero3> infos;
  for (SeenPoint const& p : points) {
    CCoor3D<int>& q = stored.emplace_back(p.x, p.y, p.z, 0);
    q.clasificacion = p.clase;
    q.intensidad = static_cast<std::uint16_t>(p.intensity);
    tipoAero3& info = infos.emplace_back();
    info.rojo = static_cast<std::uint8_t>(p.colour[0]);
    info.verde = static_cast<std::uint8_t>(p.colour[1]);
    info.azul = static_cast<std::uint8_t>(p.colour[2]);
  }
  CSetPuntos<int> set(L"cloud");
  set.Asigna(std::move(stored), std::move(infos));
  CDibujo<int> drawing(seed);
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  return drawing;
}

inline std::vector<SeenPoint> And(std::vector<SeenPoint> ground, std::vector<SeenPoint> const& more) {
  ground.insert(ground.end(), more.begin(), more.end());
  return ground;
}

/// Ground that keeps what stands around the origin off the frame.
inline const std::vector<SeenPoint> kFarCorners{{40, 41, 0}, {-40, 43, 0}, {-41, -40, 0}, {42, -43, 0}};
/// The same, with six points four metres from the origin before it.
inline const std::vector<SeenPoint> kFlat{{4, 0, 0},  {2, 3, 0},   {-2, 3, 0},   {-4, 0, 0},    {-2, -3, 0},
                                          {2, -3, 0}, {40, 41, 0}, {-40, 43, 0}, {-41, -40, 0}, {42, -43, 0}};

/// What every search has.
struct SeenSearch {
  CDataTriangulacion data;
  double distance = 2;
  unsigned changed = 12345;
  CNivelMensajes level = MENSAJES_NORMALES;
  std::vector<CDibujo<int>*> others{};
  std::vector<CPosicionEntidad> const* selection = nullptr;

  template <class Search>
  int With(CDibujo<int>& drawing, Search search) {
    CTriangulacion2D triangulation(0, drawing.semilla, data, 7);
    triangulation.Mensajes(level);
    return search(triangulation, others.empty() ? nullptr : &others);
  }
};

struct ColourSearch : SeenSearch {
  std::vector<CCondicionHRGB> when;

  int Run(CDibujo<int>& drawing) {
    return With(drawing, [&](CTriangulacion2D& t, std::vector<CDibujo<int>*>* o) {
      return t.RunPuntosAltosRGB(drawing, distance, when, changed, o, selection);
    });
  }
  int List(CDibujo<int>& drawing, double height, std::vector<CCondicionHRGB>& list) {
    return With(drawing, [&](CTriangulacion2D& t, std::vector<CDibujo<int>*>* o) {
      return t.RunListarPuntosAltosRGB(drawing, height, list, o, selection);
    });
  }
};

struct IntensitySearch : SeenSearch {
  std::vector<CCondicionHIntensidad> when;

  int Run(CDibujo<int>& drawing) {
    return With(drawing, [&](CTriangulacion2D& t, std::vector<CDibujo<int>*>* o) {
      return t.RunPuntosAltosIntensidad(drawing, distance, when, changed, o, selection);
    });
  }
  int List(CDibujo<int>& drawing, double height, std::vector<CCondicionHIntensidad>& list) {
    return With(drawing, [&](CTriangulacion2D& t, std::vector<CDibujo<int>*>* o) {
      return t.RunListarPuntosAltosIntensidad(drawing, height, list, o, selection);
    });
  }
};

struct JumpSearch : SeenSearch {
  int difference = 100;
  CInfoClasificacion info{9, 0.0, L""};

  int Run(CDibujo<int>& drawing) {
    return With(drawing, [&](CTriangulacion2D& t, std::vector<CDibujo<int>*>* o) {
      return t.RunPuntosDifIntensidad(drawing, distance, difference, info, changed, o, selection);
    });
  }
};

/// What a cloud's mesh spills, in the order of the file, without the triangles at the frame; vertices are places of the
/// cloud. `data` chooses the points that take part.
inline std::vector<support::Triangle> SpilledOf(CDibujo<int> drawing, CDataTriangulacion const& data = {}) {
  OpenTriangulation triangulation(data, drawing.semilla);
  drawing.PonNumerosACero();
  EXPECT_EQ(triangulation.Link(drawing), kHecho);
  std::vector<std::int32_t> placeOf(static_cast<std::size_t>(drawing[0].NPuntos()) + 1, 0);
  for (int i = 0; i < drawing[0].NPuntos(); ++i) placeOf[static_cast<std::size_t>(drawing[0].Punto(i).num)] = i;
  std::vector<support::Triangle> triangles;
  for (support::Triangle const& t : RecordsOf(triangulation.SpilledBytes())) {
    if (*std::min_element(t.begin(), t.end()) < 0) continue;
    triangles.push_back({placeOf[static_cast<std::size_t>(t[0])], placeOf[static_cast<std::size_t>(t[1])],
                         placeOf[static_cast<std::size_t>(t[2])]});
  }
  triangulation.BorraFicheroTemporal();
  return triangles;
}

/// Poles of many colours and intensities on the ground, in general position, in millimetres; a third is tall.
inline std::vector<SeenPoint> Garden(int n, std::uint64_t seed = 1) {
  support::Random random(seed);
  std::vector<SeenPoint> points;
  for (int i = 0; i < n; ++i) {
    const int kind = random.between(0, 5), tint = random.between(0, 3);
    points.push_back({random.between(0, 100'000),
                      random.between(0, 100'000),
                      kind < 2 ? random.between(8'000, 20'000) : random.between(0, 300),
                      random.between(0, 3) == 0 ? random.between(30'000, 65'535) : random.between(0, 8'000),
                      {random.between(0, 80) + 40 * tint, random.between(60, 140), random.between(0, 255)},
                      static_cast<unsigned char>(kind == 5 ? 6 : 2)});
  }
  return points;
}

}  // namespace Meseta47::test
