// What all searches begin and end with.
#include "classification/CBusquedaPuntos.h"
#include "model/threads/IPorcentaje.h"
#include "planar/Cronometra.h"
#include "planar/GuardaDeRun.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRegistra = 19020;

}  // namespace

/// The points of the further drawings that take part may hold numbers of an earlier run, and one that is not given
/// another must not pass for a point of this one. The others keep theirs: they are not this search's.
void CTriangulacion2D::BorraNumeros(std::vector<CDibujo<int>*> const& otros) const {
  for (CDibujo<int> const* otro : otros) {
    if (otro == nullptr) continue;
    RecorrePuntos(*otro, CFiltroPuntos(datos, Precision(), *otro), nullptr,
                  [](CLinea<int> const& e, unsigned, unsigned k) { PuntoDeRun(e, k)->num = 0; });
  }
}

int CTriangulacion2D::RunBusqueda(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros,
                                  std::vector<CPosicionEntidad> const* seleccion, std::function<int()> const& busca) {
  const CGuarda guarda(*this);
  dibujo.PonNumerosACero();
  if (otros != nullptr) BorraNumeros(*otros);
  double segundos = 0;
  int codigo = Cronometra(segundos, [&] { return Rellena(dibujo, otros, seleccion, nullptr); });
  resumen.segundosRellena = segundos;
  if (codigo != kHecho) return codigo;
  codigo = Cronometra(resumen.segundosEnlaza, [&] {
    return EnlazaLista(dibujo, otros, nullptr, nullptr, CHiloSalvaTriangulosEnlazados::SALVA_TAMBIEN, seleccion,
                       nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr);
  });
  if (codigo != kHecho) return codigo;
  return Concluye(Cronometra(resumen.segundosBusca, busca), nullptr);
}

int CTriangulacion2D::PreparaBusqueda(CBusquedaPuntos& busqueda, CDibujo<int> const& dibujo,
                                      std::vector<CDibujo<int>*>* otros,
                                      std::vector<CPosicionEntidad> const* seleccion) {
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeRegistra);
  divisiones.clear();  // the search needs the memory
  unsigned long long contador = 0;
  const auto registra = [&](CDibujo<int> const& d, std::vector<CPosicionEntidad> const* elegidos) {
    return RecorreMalla(d, contador, cantidadPuntos, elegidos,
                        [&](CLinea<int> const& e, unsigned k) { busqueda.Anade(PuntoDeRun(e, k)); });
  };
  int codigo = registra(dibujo, seleccion);
  for (std::size_t i = 0; codigo == kHecho && otros != nullptr && i < otros->size(); ++i) {
    if ((*otros)[i] != nullptr) codigo = registra(*(*otros)[i], nullptr);
  }
  return codigo;
}

}  // namespace Meseta47
