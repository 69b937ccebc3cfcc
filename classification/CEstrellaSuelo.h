#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "classification/CMallaSuelo.h"

namespace Meseta47 {

/// The ground minima that are joined to one of them in the Delaunay triangulation of all, found from those around it
/// alone.
///
/// Inversion about the minimum makes straight lines of the circles that run through it, so that its neighbours are the
/// corners of the convex hull of the inverted minima (after K. Q. Brown, "Voronoi diagrams from convex hulls", 1979). A
/// side of the hull at a distance h is a triangle whose circle has the diameter 1 / h. All that is farther away than R
/// falls within 1 / R, and makes no difference to a hull that stays outside that.
///
/// Of four or more minima on one circle any triangulation may come out; it depends on their places alone. An object
/// serves one thread, and keeps its memory from one minimum to the next. About a microsecond where minima are complete.
class CEstrellaSuelo {
 public:
  explicit CEstrellaSuelo(CMallaSuelo const& laMalla) : malla(laMalla) {}

  /// Finds the neighbours of the ground minimum `i`. False where it lies at the rim of the ground, which is where a
  /// triangle at it has too wide a circle for land, and as soon as `admite` refuses a neighbour.
  template <class F>
  bool Halla(std::size_t i, F const& admite) {
    Empieza();
    for (double espacios = kPrimero; espacios <= kUltimo; espacios *= 2) {
      Amplia(i, espacios);
      if (!std::all_of(vecinos.begin(), vecinos.end(), admite)) return false;
      if (Cerrada()) return true;
    }
    return false;
  }

  /// Those of the last minimum, counter-clockwise.
  [[nodiscard]] std::vector<std::size_t> const& Vecinos() const { return vecinos; }

 private:
  static constexpr double kPrimero = 4,
                          kUltimo = 16;  // spacings within which they are looked for: at first, and at most

  struct CPunto {
    double x, y;  ///< 1 / metres
    std::size_t minimo;
  };

  static double Giro(CPunto const& a, CPunto const& b, CPunto const& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
  }

  void Empieza();
  void Amplia(std::size_t i, double espacios);
  void Invierte(std::size_t i, double espacios, double desde);
  void Envuelve();
  void Separa(double radio);
  [[nodiscard]] bool Cerrada() const { return abiertos.empty() && !vecinos.empty(); }

  CMallaSuelo const& malla;
  double hecho = 0;  ///< metres: up to here all have been looked at
  std::vector<CPunto> puntos, envoltura;
  std::vector<std::pair<CPunto, CPunto>> abiertos;  ///< sides of the hull beyond which another corner may lie
  std::vector<std::size_t> vecinos;                 ///< corners that are certain
};

}  // namespace Meseta47
