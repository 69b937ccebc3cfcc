#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

struct CVisitaQueCuenta {
  CFiltroPuntos const& filtro;
  CMarcha& marcha;
  CCuentaPuntos& cuenta;

  bool Entidad(CLinea<int> const&) { return marcha.Avanza(); }
  bool Entera(CLinea<int> const& e) {
    if (!filtro.TodaEnVentana(e)) return false;
    cuenta.cuantos += static_cast<unsigned>(e.NPuntos());
    cuenta.caja.Nuevo(e.maximas);
    return true;
  }
  void operator()(CLinea<int> const& e, unsigned, unsigned k) {
    ++cuenta.cuantos;
    cuenta.caja.Nuevo(*e.PunteroAPunto(static_cast<int>(k)));
  }
};

}  // namespace

int CuentaPuntos(CDibujo<int> const& dibujo, CFiltroPuntos const& filtro,
                 std::vector<CPosicionEntidad> const* seleccion, CMarcha& marcha, CCuentaPuntos& cuenta) {
  return RecorrePuntos(dibujo, filtro, seleccion, CVisitaQueCuenta{filtro, marcha, cuenta}) ? kHecho : kCancelado;
}

}  // namespace Meseta47
