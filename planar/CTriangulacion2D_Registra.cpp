// A point set in the numbering that the temporary file uses.
#include "model/drawing/CIntensidadTipo.h"
#include "model/drawing/CRGBTipo.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "planar/CTriangulacion2D.h"
#include "run/Recorrido.h"

namespace Meseta47 {

int CTriangulacion2D::RecorreMalla(CDibujo<int> const& dibujo, unsigned long long& contador, unsigned long long total,
                                   std::vector<CPosicionEntidad> const* seleccion,
                                   std::function<void(CLinea<int> const&, unsigned)> const& registra) const {
  CMarcha marcha(Progreso(), mensajes, total, contador);
  const auto registraSiEsta = [&](CLinea<int> const& e, unsigned, unsigned k) {
    // Not in the mesh. The selection stays on it, and so ends there: a selection names points that are in.
    if (e.PunteroAPunto(static_cast<int>(k))->num == 0) return CPaso::SinAvanzar;
    registra(e, k);
    return CPaso::Sigue;
  };
  const int codigo = RecorrePuntos(dibujo, Filtro(dibujo), seleccion, marcha, registraSiEsta);
  contador = marcha.Hechos();
  return codigo;
}

/// A point as a model has it, with the survey data of its set.
CPuntoTIN CTriangulacion2D::PuntoDeModelo(CLinea<int> const& e, unsigned k) {
  CPuntoTIN punto(*e.PunteroAPunto(static_cast<int>(k)));
  if (CSetPuntos<int> const* nube = CSetPuntos<int>::De(e)) punto.aero = nube->Info(k);
  return punto;
}

int CTriangulacion2D::RegistraPuntos(CSetPuntosMdt& puntos, CDibujo<int> const& dibujo, unsigned long long& contador,
                                     unsigned long long total, std::vector<CPosicionEntidad> const* seleccion,
                                     std::vector<CRGBTipo>* colores, std::vector<CIntensidadTipo>* intensidades) {
  return RecorreMalla(dibujo, contador, total, seleccion, [&](CLinea<int> const& e, unsigned k) {
    const CPuntoTIN punto = PuntoDeModelo(e, k);
    puntos.push_back(punto, false);  // nobody points at them yet
    const auto indice = static_cast<std::size_t>(punto.num) - 1;
    if (colores != nullptr) {
      (*colores)[indice] = CRGBTipo(punto.aero.rojo, punto.aero.verde, punto.aero.azul, -1);
    } else if (intensidades != nullptr) {
      (*intensidades)[indice] =
          CIntensidadTipo(CSetPuntos<int>::De(e) != nullptr ? punto.intensidad : static_cast<unsigned short>(0), -1);
    }
  });
}

}  // namespace Meseta47
