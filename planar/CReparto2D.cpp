#include "planar/CReparto2D.h"

#include <algorithm>

#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

namespace {

// Quadrants are numbered as CCeldas does: 1 is added for x high, 2 for y low.
std::uint64_t Izquierda(std::uint64_t const (&porCuadrante)[4]) { return porCuadrante[0] + porCuadrante[2]; }
std::uint64_t Derecha(std::uint64_t const (&porCuadrante)[4]) { return porCuadrante[1] + porCuadrante[3]; }
std::uint64_t Arriba(std::uint64_t const (&porCuadrante)[4]) { return porCuadrante[0] + porCuadrante[1]; }
std::uint64_t Abajo(std::uint64_t const (&porCuadrante)[4]) { return porCuadrante[2] + porCuadrante[3]; }

std::uint64_t MenorEnX(std::uint64_t const (&porCuadrante)[4]) {
  return std::min(Izquierda(porCuadrante), Derecha(porCuadrante));
}
std::uint64_t MenorEnY(std::uint64_t const (&porCuadrante)[4]) {
  return std::min(Arriba(porCuadrante), Abajo(porCuadrante));
}

}  // namespace

CReparto2D CReparto2D::Para(std::uint64_t const (&porCuadrante)[4], CCoor3D<int> const& centro) {
  if (MenorEnX(porCuadrante) >= MenorEnY(porCuadrante)) return {&CCoor3D<int>::x, centro.x};
  return {&CCoor3D<int>::y, centro.y};
}

bool CReparto2D::VaPorDos(std::uint64_t puntos, std::uint64_t const (&porCuadrante)[4], CMaximas<int> const& caja,
                          std::uint32_t minimo) {
  constexpr auto kMaximo = static_cast<std::uint64_t>(CSetTriangulos2D::kSegundaMarca);
  constexpr double kAncho = 0x1p28;         // scaled units: a circle in a quadrant is below a quarter of this
  constexpr std::uint64_t kParteMenor = 4;  // of the points at least so much in the lesser half: a quarter
  const std::uint64_t menor = std::max(MenorEnX(porCuadrante), MenorEnY(porCuadrante));
  return puntos >= minimo && puntos <= kMaximo && caja.Ancho() <= kAncho && caja.Alto() <= kAncho &&
         menor * kParteMenor >= puntos;
}

}  // namespace Meseta47
