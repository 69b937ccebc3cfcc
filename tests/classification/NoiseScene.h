#pragma once

#include <string>
#include <vector>

#include "classification/CDataPicos.h"
#include "classification/SearchScene.h"
#include "model/threads/Codigos.h"
#include "support/PlainNoise.h"

namespace Meseta47::test {

/// What the three searches for noise are given alike, and what they answered. Drawings are in metres.
struct NoiseSearch {
  CDataSemilla seed{0, 0, 0, 0};
  CDataTriangulacion data{};
  CInfoClasificacion info{7, 0.0, L""};
  unsigned changed = 12345;
  std::vector<CDibujo<int>*> others{};
  std::vector<CPosicionEntidad> const* selection = nullptr;
  CNivelMensajes level = MENSAJES_NORMALES;

  std::vector<CDibujo<int>*>* Others() { return others.empty() ? nullptr : &others; }
};

struct Isolated : NoiseSearch {
  double distance = 10;
  unsigned neighbours = 1;

  int Run(CDibujo<int>& drawing) {
    CTriangulacion2D triangulation(0, seed, data, 7);
    triangulation.Mensajes(level);
    return triangulation.RunPuntosAislados(drawing, distance, neighbours, info, changed, Others(), selection);
  }
};

struct Aerial : NoiseSearch {
  double radius = 10, factor = 2;

  int Run(CDibujo<int>& drawing) {
    CTriangulacion2D triangulation(0, seed, data, 7);
    triangulation.Mensajes(level);
    return triangulation.RunPuntosAereos(drawing, radius, factor, info, changed, Others(), selection);
  }
};

/// `changed` begins at 0, since the search adds to it.
struct Peaks : NoiseSearch {
  double distance = 0, height = 5, slope = 0;
  std::vector<CPosicionEntidad> found{};
  int* progress = nullptr;

  Peaks() { changed = 0; }
  int Run(CDibujo<int>& drawing) {
    CTriangulacion2D triangulation(0, seed, data, 7);
    triangulation.Mensajes(level);
    CDataPicos wanted;
    wanted.DistanciaMax = distance;
    wanted.AlturaMin = height;
    wanted.pendienteMax = slope;
    wanted.Tipo = info;
    return triangulation.BuscaPicos(drawing, wanted, changed, Others(), selection, progress, &found);
  }
};

/// Classes once `found` have 7, where there were 2 everywhere.
inline std::vector<int> ClassesWith(support::Found const& found) {
  std::vector<int> classes;
  for (const bool is : found) classes.push_back(is ? 7 : 2);
  return classes;
}

inline std::vector<ClassedPoint> Classed(std::vector<support::Point> const& points) {
  std::vector<ClassedPoint> classed;
  for (support::Point const& p : points) classed.push_back({p.x, p.y, p.z});
  return classed;
}

inline std::vector<CPosicionEntidad> Places(std::vector<int> const& points) {
  std::vector<CPosicionEntidad> places;
  for (const int i : points) places.emplace_back(0, i);
  return places;
}

}  // namespace Meseta47::test
