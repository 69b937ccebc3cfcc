// The points behind the seeds, inserted by two threads where that is worth it: each walks the drawings and takes those
// of its half.
#include <algorithm>
#include <functional>

#include "planar/CDosMitades.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "platform/Procesadores.h"
#include "run/Recorrido.h"

namespace Meseta47 {

/// Whether two threads can insert the points of this pass, with the same outcome as one, and it pays.
bool CTriangulacion2D::CabenDosMitades(CFuentes const& fuentes, CEnlace const& enlace) const {
  const bool soloEscribe = enlace.modo == CHiloSalvaTriangulosEnlazados::SALVA ||
                           enlace.modo == CHiloSalvaTriangulosEnlazados::SALVA_TAMBIEN;
  return NumeroProcesadores() > 1 && soloEscribe && fuentes.extra == nullptr && enlace.tolerancia.unidades == 0 &&
         divisiones.hijos != nullptr && CReparto2D::VaPorDos(cantidadPuntos, porCuadrante, maximas, minimoDeDos);
}

/// Calls `visita` with the points behind the seeds and their numbers until it answers false. The last number.
template <class F>
int CTriangulacion2D::RecorreResto(CFuentes const& fuentes, int ultimaSemilla, F&& visita) const {
  int numero = ultimaSemilla;
  fuentes.Recorre([&](short lista, CDibujo<int> const& d, auto const* elegidos) {
    auto siguiente = std::find_if(primerosPuntos.begin(), primerosPuntos.end(),
                                  [lista](CPosicion const& s) { return s.lista == static_cast<unsigned>(lista); });
    const bool va = RecorrePuntos(d, Filtro(d), elegidos, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
      const CPosicion aqui(static_cast<unsigned>(lista), entidad, k);
      if (siguiente != primerosPuntos.end() && *siguiente == aqui) {
        ++siguiente;
        return true;
      }
      return visita(PuntoDeRun(e, k), aqui, ++numero);
    });
    return va ? kHecho : kCancelado;
  });
  return numero;
}

/// Feeds two halves, and tells how far they are.
struct CTriangulacion2D::CAlimento {
  CTriangulacion2D const& run;
  CFuentes const& fuentes;
  CDosMitades& mitades;
  CReparto2D reparto;
  int ultimaSemilla;
  std::function<bool(int)> llega;  ///< told where the caller's thread is; false cancels
  int ultimo = 0;                  ///< number of the last point that the caller's thread has come by
  bool cancelado = false;

  bool Cancela() {
    cancelado = true;
    mitades.Para();
    return false;
  }
  /// CDosMitades::CAlimenta.
  bool operator()(CDosMitades::CTramo const& tramo) {
    bool quedan = false;
    const auto inserta = [&](CCoor3D<int>* p, CPosicion const& lugar, int numero) {
      if (numero < tramo.desde) return true;
      const unsigned cual = reparto.Mitad(*p);
      if (!tramo.Tiene(cual)) return true;
      quedan = true;
      if (numero >= tramo.hasta) return false;
      if (tramo.EsDelQueLlama() && !llega(numero)) return Cancela();
      const CLugarEnLista suyo{static_cast<std::int16_t>(lugar.lista), static_cast<std::int32_t>(lugar.entidad),
                               static_cast<std::int32_t>(lugar.punto)};
      quedan = !mitades.Inserta(tramo, cual, p, suyo, numero);
      return !quedan;
    };
    const int suUltimo = run.RecorreResto(fuentes, ultimaSemilla, inserta);
    if (tramo.EsDelQueLlama()) ultimo = suUltimo;
    return !quedan;
  }
};

/// What InsertaResto does with all points. kTarde: it is to be done anew, by one thread.
int CTriangulacion2D::InsertaEnMitades(CFuentes const& fuentes, CEnlace const& enlace, CMarcha& marcha,
                                       CInsercion const& como, std::unique_ptr<CDosMitades>& mitades) {
  const CReparto2D reparto = CReparto2D::Para(porCuadrante, divisiones.centro);
  const auto ultimaSemilla = static_cast<int>(cantidadPuntos);
  const std::uint64_t hechosAntes = marcha.Hechos();
  const int contadorAntes = como.contador != nullptr ? *como.contador : 0;
  mitades = std::make_unique<CDosMitades>(
      setRaiz, divisiones, reparto, Completa(enlace.modo), setsCerrados, ficheroTemporal.Fichero(),
      static_cast<std::int64_t>(balance.creados - balance.condenados), ultimaSemilla);
  const auto llega = [&](int numero) {
    const int mas = numero - ultimaSemilla;
    if (como.contador != nullptr) *como.contador = contadorAntes + mas;
    return marcha.Llega(hechosAntes + static_cast<unsigned>(mas));
  };
  CAlimento alimento{*this, fuentes, *mitades, reparto, ultimaSemilla, llega};
  const CDosMitades::CFinal fin =
      mitades->Corre(std::ref(alimento), [&] { return marcha.Sigue() || alimento.Cancela(); });
  if (alimento.cancelado) return kCancelado;
  porDos = {fin == CDosMitades::HECHO, fin == CDosMitades::TARDE, mitades->Mitad(0).enTurno + mitades->Mitad(1).enTurno,
            mitades->ASolas()};
  if (fin == CDosMitades::SIN_MEMORIA) return kFicheroInconsistente;
  if (fin != CDosMitades::HECHO) return kTarde;
  cantidadPuntos = static_cast<std::uint32_t>(alimento.ultimo);
  if (!llega(alimento.ultimo)) return kCancelado;
  for (unsigned i = 0; i < 2; ++i) SumaMitad(mitades->Mitad(i));
  resumen.picoVivos = std::max(resumen.picoVivos, mitades->Mezcla().PicoVivos());
  return kHecho;
}

void CTriangulacion2D::SumaMitad(CMitad& mitad) {
  balance.creados += mitad.balance.creados;
  balance.condenados += mitad.balance.condenados;
  duplicados += mitad.duplicados;
  visitados.aceptados += static_cast<unsigned>(mitad.aceptados);
  visitados.rechazados += static_cast<unsigned>(mitad.rechazados);
  resumen.examinados += mitad.aceptados + mitad.rechazados;
  borde.Toma(mitad.borde);
  medidas.Suma(mitad.medidas);
}

}  // namespace Meseta47
