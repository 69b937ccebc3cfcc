// The filling phase: a pass that counts and measures, a division of space sized by it, and a pass that records in every
// cell which point will be its last.
#include <algorithm>

#include "model/threads/CMarcha.h"
#include "model/threads/IPorcentaje.h"
#include "run/Recorrido.h"
#include "tetrahedral/CMedidasDeRun3D.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRellena = 19020;

double MayorAncho(CMaximas<int> const& caja) { return std::max({caja.Ancho(), caja.Alto(), caja.Altura()}); }

}  // namespace

int CTriangulacion3D::Rellena(CDibujo<int>& dibujo) {
  PreparaEnlace();
  primerosPuntos.clear();
  resumen = CResumenEspacial();
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(nivelMensajes, kMensajeRellena);
  cantidadPuntos = 0;

  CMaximas<int> caja;
  unsigned cuenta = 0, progreso = 0;
  if (const int codigo = Rellena(dibujo, caja, progreso, cuenta, 2 * dibujo.Cantidad(), true); codigo != kHecho) {
    return codigo;
  }
  EstableceDivisiones(cuenta, caja);
  progreso = cuenta / 2;  // the bar goes on from one third
  if (const int codigo = Rellena(dibujo, caja, progreso, cuenta, cuenta + progreso, false); codigo != kHecho) {
    return codigo;
  }
  divisiones.Comprimir();
  resumen.aceptados = cantidadPuntos;
  return cantidadPuntos == 0 ? kPocosPuntos : kHecho;
}

int CTriangulacion3D::Rellena(CDibujo<int>& dibujo, CMaximas<int>& caja, unsigned& progreso, unsigned& cuenta,
                              unsigned total, bool contar) {
  const CFiltroPuntos filtro(datos, Precision(), dibujo, CFiltroPuntos::CPor::CodigosSiempre);
  CMarcha marcha(Progreso(), nivelMensajes, total, progreso);
  int codigo = kHecho;
  if (contar) {
    CCuentaPuntos contados{cuenta, caja};
    codigo = CuentaPuntos(dibujo, filtro, nullptr, marcha, contados);
    cuenta = contados.cuantos;
    caja = contados.caja;
  } else {
    codigo = RecorrePuntos(dibujo, filtro, nullptr, marcha, [this](CLinea<int> const& e, unsigned entidad, unsigned k) {
      CCoor3D<int> const& p = *e.PunteroAPunto(static_cast<int>(k));
      if (divisiones.ColocaIndices(p, {static_cast<int>(entidad), static_cast<int>(k)})) {
        primerosPuntos.emplace_back(0, entidad, k);
      }
      ++cantidadPuntos;
    });
  }
  progreso = static_cast<unsigned>(marcha.Hechos());
  return codigo;
}

void CTriangulacion3D::EstableceDivisiones(unsigned n, CMaximas<int> const& caja) {
  maximas = caja;
  GeneraEsquinas();
  // Three times as wide as the points on each axis, so that every sphere between them falls in it.
  const double w = MayorAncho(caja);
  CMaximas<int> cubo;
  cubo.Minimo.Actualiza(caja.Minimo.x - w, caja.Minimo.y - w, caja.Minimo.z - w);
  cubo.Maximo.Actualiza(caja.Maximo.x + w, caja.Maximo.y + w, caja.Maximo.z + w);
  divisiones.PreparaDivisiones(std::uint64_t{n} * std::max(finura, 1U), cubo);
}

//        -3 +---------+ -6
//          /|        /|         x to the right, y into the page, z upward
//      -4 +---------+ | -5
//         | | -2    | | -7
//         | +-------|-+
//         |/        |/
//      -1 +---------+ -8
void CTriangulacion3D::GeneraEsquinas() {
  const CCoor3D<int> c = maximas.Centro(true);
  const double r = CMedidasDeRun3D::SemiladoDelMarco(MayorAncho(maximas));
  constexpr int kLado[8][3] = {{-1, -1, -1}, {-1, 1, -1}, {-1, 1, 1}, {-1, -1, 1},
                               {1, -1, 1},   {1, 1, 1},   {1, 1, -1}, {1, -1, -1}};
  for (int i = 0; i < 8; ++i) {
    esquinas[i].Actualiza(c.x + kLado[i][0] * r, c.y + kLado[i][1] * r, c.z + kLado[i][2] * r);
    esquinas[i].num = -1 - i;
  }
}

}  // namespace Meseta47
