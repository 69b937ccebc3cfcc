#include "classification/BusquedaClases.h"

namespace Meseta47 {

void EscribeClases(CDibujo<int>& dibujo, std::vector<CClaseHallada> const& halladas) {
  for (CClaseHallada const& h : halladas) {
    const CInfoClasificacion clase(h.clase, 0.0, CString());
    dibujo[static_cast<unsigned>(h.lugar.entidad)].SetClasificacion(clase, h.lugar.punto);
  }
}

}  // namespace Meseta47
