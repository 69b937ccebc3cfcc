#include "planar/CFuentes.h"

#include "run/Recorrido.h"

namespace Meseta47 {

unsigned CFuentes::Entidades() const {
  unsigned suma = 0;
  Recorre([&suma](short, CDibujo<int> const& d, auto const*) {
    suma += d.Cantidad();
    return kHecho;
  });
  return suma;
}

CCoor3D<int>* CFuentes::Semilla(CPosicion const& lugar) const {
  CDibujo<int> const* suyo = extra;
  if (lugar.lista == 0) {
    suyo = &dibujo;
  } else if (otros != nullptr && lugar.lista < otros->size() + (todasLasSemillas ? 1 : 0)) {
    suyo = (*otros)[lugar.lista - 1];
  }
  if (suyo == nullptr || lugar.entidad >= suyo->Cantidad()) return nullptr;
  CLinea<int> const& linea = (*suyo)[lugar.entidad];
  return lugar.punto < static_cast<unsigned>(linea.NPuntos()) ? PuntoDeRun(linea, lugar.punto) : nullptr;
}

}  // namespace Meseta47
