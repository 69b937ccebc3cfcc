#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/geometry/CCoor3D.h"
#include "model/storage/VectorCrudo.h"

namespace Meseta47 {

/// What a minimum is held to be.
enum class CEstadoSuelo : std::uint8_t { Objeto, Suelo, Ruido };

/// The lowest point of a cell, in scaled units.
struct CMinimoSuelo {
  int x = 0, y = 0, z = 0;
};

/// a - b, exactly.
[[nodiscard]] inline double Resta(int a, int b) { return static_cast<double>(static_cast<std::int64_t>(a) - b); }

/// The cells of a cloud, the lowest point of each, and what it is held to be. Cells are squares whose sides lie at the
/// multiples of their length, so that two parts of a cloud have the same cells. Minima stand row by row, from south to
/// north and in a row from west to east.
///
/// Reading is safe from any number of threads.
class CMallaSuelo {
 public:
  static constexpr std::uint32_t kNinguno = 0xFFFFFFFF;
  static constexpr int kParte = 8;  ///< cells: side of the squares by which spacings are told; a grid has whole ones

  double metro = 1, metroZ = 1;           ///< metres in a scaled unit, in plan and in height
  std::int64_t origenX = 0, origenY = 0;  ///< scaled units: the drawing's origin in its reference system
  double c = 1;                           ///< metres: side of a cell
  double espaciado = 1;                   ///< metres: mean spacing of the minima
  std::int64_t lado = 1;                  ///< scaled units: side of a cell
  std::int64_t x0 = 0, y0 = 0;            ///< scaled units: south-western corner of the first cell
  std::int64_t columnas = 0, filas = 0;
  VectorCrudo<std::uint32_t> indice;  ///< of each cell, its minimum, or kNinguno
  std::vector<CMinimoSuelo> minimos;
  std::vector<std::uint32_t> celdas;  ///< of each minimum, its cell
  std::vector<float> sp;              ///< of each minimum, metres: the spacing of those around it
  std::vector<float> alcances;        ///< of each square, metres: the greatest spacing of the minima that may see into
                                      ///< it, or that see one of these
  std::vector<CEstadoSuelo> estados;  ///< of each minimum

  [[nodiscard]] std::size_t Celdas() const { return static_cast<std::size_t>(columnas * filas); }
  [[nodiscard]] std::size_t Minimos() const { return minimos.size(); }
  [[nodiscard]] std::size_t Celda(std::int64_t columna, std::int64_t fila) const {
    return static_cast<std::size_t>(fila * columnas + columna);
  }
  /// The cell of a point within the grid.
  [[nodiscard]] std::size_t CeldaDe(CCoor3D<int> const& p) const { return Celda((p.x - x0) / lado, (p.y - y0) / lado); }
  /// The square that a cell lies in.
  [[nodiscard]] std::size_t Parte(std::int64_t columna, std::int64_t fila) const {
    return static_cast<std::size_t>(fila / kParte * (columnas / kParte) + columna / kParte);
  }
  [[nodiscard]] std::size_t Parte(std::uint32_t celda) const { return Parte(celda % columnas, celda / columnas); }
  [[nodiscard]] bool EsSuelo(std::size_t i) const { return estados[i] == CEstadoSuelo::Suelo; }

  /// Lets go of what tells neighbours. Vecinos() is over.
  void SueltaEntorno() {
    std::vector<std::uint32_t>().swap(celdas);
    std::vector<float>().swap(sp);
    std::vector<float>().swap(alcances);
  }

  /// f(j, dx, dy, dz, d2) for the minima j within `espacios` times the spacing around minimum i, but itself, in their
  /// order: from i to j, in metres, and the square of the distance in plan. O(cells within the radius).
  template <class F>
  void Vecinos(std::size_t i, double espacios, F const& f) const {
    Cercanos(i, espacios * static_cast<double>(sp[i]), f);
  }
  /// The same within a radius in metres.
  template <class F>
  void Cercanos(std::size_t i, double radio, F const& f) const {
    CMinimoSuelo const& p = minimos[i];
    const auto alcance = static_cast<std::int64_t>(radio / metro);
    const auto desde = [&](std::int64_t centro, std::int64_t cero) {
      return std::max<std::int64_t>(0, centro - alcance - cero) / lado;
    };
    const auto hasta = [&](std::int64_t centro, std::int64_t cero, std::int64_t cuantas) {
      return std::min(cuantas - 1, (centro + alcance - cero) / lado);
    };
    const std::int64_t oeste = desde(p.x, x0), este = hasta(p.x, x0, columnas), norte = hasta(p.y, y0, filas);
    const double r2 = radio * radio;
    for (std::int64_t fila = desde(p.y, y0); fila <= norte; ++fila) {
      std::uint32_t const* casilla = indice.data() + Celda(oeste, fila);
      for (std::uint32_t const* fin = casilla + (este - oeste + 1); casilla < fin; ++casilla) {
        const std::uint32_t j = *casilla;
        if (j == kNinguno || j == i) continue;
        const double dx = Resta(minimos[j].x, p.x) * metro, dy = Resta(minimos[j].y, p.y) * metro;
        const double d2 = dx * dx + dy * dy;
        if (d2 <= r2) f(static_cast<std::size_t>(j), dx, dy, Resta(minimos[j].z, p.z) * metroZ, d2);
      }
    }
  }
};

}  // namespace Meseta47
