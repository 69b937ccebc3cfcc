// A point set in the numbering that the temporary file uses.
#include "model/drawing/CIntensidadTipo.h"
#include "model/drawing/CRGBTipo.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFiltroPuntos.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

namespace {

struct CVisitaRegistro {
  IPorcentaje* porcentaje;
  int nivel;
  unsigned long long& contador;
  unsigned long long total;
  std::function<void(CLinea<int> const&, unsigned)> const& registra;
  int codigo = kHecho;

  bool Entidad(CLinea<int> const&) { return true; }
  bool Entera(CLinea<int> const&) { return false; }
  CPaso Punto(CLinea<int> const& e, unsigned, unsigned k) {
    ++contador;
    if (porcentaje != nullptr && porcentaje->Porcentaje(nivel, contador, total, false) == 0) {
      codigo = kCancelado;
      return CPaso::Termina;
    }
    // Not in the mesh. The selection stays on it, and so ends there: a selection names points that are in.
    if (e.PunteroAPunto(static_cast<int>(k))->num == 0) return CPaso::SinAvanzar;
    registra(e, k);
    return CPaso::Sigue;
  }
};

}  // namespace

int CTriangulacion2D::RecorreMalla(CDibujo<int> const& dibujo, unsigned long long& contador, unsigned long long total,
                                   std::vector<CPosicionEntidad> const* seleccion,
                                   std::function<void(CLinea<int> const&, unsigned)> const& registra) const {
  CVisitaRegistro visita{Progreso(), mensajes, contador, total, registra};
  RecorrePuntos(dibujo, CFiltroPuntos(datos, Precision(), dibujo), seleccion, visita);
  return visita.codigo;
}

int CTriangulacion2D::RegistraPuntos(CSetPuntosMdt& puntos, CDibujo<int> const& dibujo, unsigned long long& contador,
                                     unsigned long long total, std::vector<CPosicionEntidad> const* seleccion,
                                     std::vector<CRGBTipo>* colores, std::vector<CIntensidadTipo>* intensidades) {
  return RecorreMalla(dibujo, contador, total, seleccion, [&](CLinea<int> const& e, unsigned k) {
    CPuntoTIN punto(*e.PunteroAPunto(static_cast<int>(k)));
    CSetPuntos<int> const* nube = CSetPuntos<int>::De(e);
    if (nube != nullptr) punto.aero = nube->Info(k);
    puntos.push_back(punto, true);
    const auto indice = static_cast<std::size_t>(punto.num) - 1;
    if (colores != nullptr) {
      (*colores)[indice] = CRGBTipo(punto.aero.rojo, punto.aero.verde, punto.aero.azul, -1);
    } else if (intensidades != nullptr) {
      (*intensidades)[indice] =
          CIntensidadTipo(nube != nullptr ? punto.intensidad : static_cast<unsigned short>(0), -1);
    }
  });
}

}  // namespace Meseta47
