// What all searches begin and end with.
#include "classification/BusquedaMensajes.h"
#include "classification/CBusquedaPuntos.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/Fases.h"
#include "run/Recorrido.h"

namespace Meseta47 {

/// The points of the further drawings that take part may hold numbers of an earlier run, and one that is not given
/// another must not pass for a point of this one. The others keep theirs: they are not this search's.
void CTriangulacion2D::BorraNumeros(std::vector<CDibujo<int>*> const& otros) const {
  for (CDibujo<int> const* otro : otros) {
    if (otro == nullptr) continue;
    RecorrePuntos(*otro, Filtro(*otro), nullptr,
                  [](CLinea<int> const& e, unsigned, unsigned k) { PuntoDeRun(e, k)->num = 0; });
  }
}

int CTriangulacion2D::RunBusqueda(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros,
                                  std::vector<CPosicionEntidad> const* seleccion, std::function<int()> const& busca) {
  dibujo.PonNumerosACero();
  if (otros != nullptr) BorraNumeros(*otros);
  const CFuentes fuentes{dibujo, otros, seleccion};
  CEnlace enlace{.modo = CHiloSalvaTriangulosEnlazados::SALVA_TAMBIEN};
  return Corre({{resumen.segundosRellena, [&] { return Rellena(fuentes); }},
                {resumen.segundosEnlaza, [&] { return Enlaza(fuentes, enlace); }},
                {resumen.segundosBusca, busca}});
}

int CTriangulacion2D::PreparaBusqueda(CBusquedaPuntos& busqueda, CFuentes const& fuentes, CRegistra const& registra) {
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeRegistra);
  divisiones.clear();  // the search needs the memory
  unsigned long long contador = 0;
  return fuentes.Recorre([&](short lista, CDibujo<int> const& d, std::vector<CPosicionEntidad> const* elegidos) {
    return RecorreMalla(d, contador, cantidadPuntos, elegidos, [&](CLinea<int> const& e, unsigned k) {
      busqueda.Anade(PuntoDeRun(e, k));
      if (registra) registra(lista, e, k);
    });
  });
}

}  // namespace Meseta47
