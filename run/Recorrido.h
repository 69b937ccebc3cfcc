#pragma once

#include <concepts>
#include <cstddef>
#include <type_traits>
#include <vector>

#include "model/drawing/CPosicionEntidad.h"
#include "model/threads/CMarcha.h"
#include "model/threads/Codigos.h"
#include "run/CFiltroPuntos.h"

namespace Meseta47 {

/// What the visit of a point tells the walk.
enum class CPaso {
  Sigue,
  SinAvanzar,  ///< go on, but leave the selection where it stands
  Termina,
};

/// A visit that also wants to see entities:
///   bool Entidad(CLinea<int> const&)  - before anything is asked of an entity; false ends the walk
///   bool Entera(CLinea<int> const&)   - an admitted entity without a selection; true if it is dealt with as a whole
template <class V>
concept CVisitaEntidades = requires(V& visita, CLinea<int> const& e) {
  { visita.Entidad(e) } -> std::same_as<bool>;
  { visita.Entera(e) } -> std::same_as<bool>;
};

namespace detalle {

/// The answer of a visit, whatever its type.
template <class V>
CPaso Visita(V& visita, CLinea<int> const& e, unsigned entidad, unsigned punto) {
  using CRespuesta = std::invoke_result_t<V&, CLinea<int> const&, unsigned, unsigned>;
  if constexpr (std::is_void_v<CRespuesta>) {
    visita(e, entidad, punto);
    return CPaso::Sigue;
  } else if constexpr (std::is_same_v<CRespuesta, bool>) {
    return visita(e, entidad, punto) ? CPaso::Sigue : CPaso::Termina;
  } else {
    return visita(e, entidad, punto);
  }
}

}  // namespace detalle

/// Walks the points of a drawing that pass the filter, in the order of entities and points, in step with a selection
/// when there is one. The selection is sorted by entity and point, and the walk ends when it runs out; an entity or a
/// point other than the one under its cursor is passed over. `visita(CLinea<int> const&, entidad, punto)` is called for
/// each point and answers nothing, a bool (false ends the walk) or a CPaso; it may see entities as well. False when the
/// visit ended the walk.
template <class V>
bool RecorrePuntos(CDibujo<int> const& dibujo, CFiltroPuntos const& filtro,
                   std::vector<CPosicionEntidad> const* seleccion, V&& visita) {
  using CVisita = std::remove_reference_t<V>;
  std::size_t cursor = 0;
  const auto elegido = [&](unsigned entidad) {
    return cursor < seleccion->size() && static_cast<unsigned>((*seleccion)[cursor].entidad) == entidad;
  };
  for (unsigned e = 0; e < dibujo.Cantidad(); ++e) {
    CLinea<int> const& linea = dibujo[e];
    if (seleccion != nullptr && cursor >= seleccion->size()) return true;
    if constexpr (CVisitaEntidades<CVisita>) {
      if (!visita.Entidad(linea)) return false;
    }
    if (seleccion != nullptr && !elegido(e)) continue;
    if (!filtro.AdmiteEntidad(linea)) {
      while (seleccion != nullptr && elegido(e)) ++cursor;
      continue;
    }
    if constexpr (CVisitaEntidades<CVisita>) {
      if (seleccion == nullptr && visita.Entera(linea)) continue;
    }
    const auto n = static_cast<unsigned>(linea.NPuntos());
    for (unsigned k = 0; k < n; ++k) {
      if (seleccion != nullptr) {
        if (!elegido(e)) break;
        if (static_cast<unsigned>((*seleccion)[cursor].punto) != k) continue;
      }
      CPaso paso = CPaso::Sigue;
      if (filtro.AdmitePunto(*linea.PunteroAPunto(static_cast<int>(k)))) paso = detalle::Visita(visita, linea, e, k);
      if (paso == CPaso::Termina) return false;
      if (seleccion == nullptr || paso == CPaso::SinAvanzar) continue;
      // A point named twice in the selection is dealt with once.
      const CPosicionEntidad hecho = (*seleccion)[cursor];
      while (cursor < seleccion->size() && (*seleccion)[cursor] == hecho) ++cursor;
    }
  }
  return true;
}

/// The same, with a step of progress before each visit. kHecho, also when the visit ends the walk, or kCancelado.
template <class V>
int RecorrePuntos(CDibujo<int> const& dibujo, CFiltroPuntos const& filtro,
                  std::vector<CPosicionEntidad> const* seleccion, CMarcha& marcha, V&& visita) {
  int codigo = kHecho;
  RecorrePuntos(dibujo, filtro, seleccion, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
    if (!marcha.Avanza()) {
      codigo = kCancelado;
      return CPaso::Termina;
    }
    return detalle::Visita(visita, e, entidad, k);
  });
  return codigo;
}

/// How many points take part in a run, and their extents: what its division of space is sized by.
struct URDIMBRE_API CCuentaPuntos {
  unsigned cuantos = 0;
  CMaximas<int> caja;
};

/// Counts and measures the points that `RecorrePuntos` would visit, with a step of progress an entity. An entity that
/// lies wholly in the height window is counted as a whole, in the time of one point; also in a cloud of which some
/// classes don't count, as the number only sizes the divisions. Adds to `cuenta`. kHecho or kCancelado.
URDIMBRE_API int CuentaPuntos(CDibujo<int> const& dibujo, CFiltroPuntos const& filtro,
                              std::vector<CPosicionEntidad> const* seleccion, CMarcha& marcha, CCuentaPuntos& cuenta);

/// The stored point of an entity, to be numbered and pointed at. Drawings reach the phases of a run as constant, since
/// none of their positions changes; the number of a point belongs to the run.
inline CCoor3D<int>* PuntoDeRun(CLinea<int> const& e, unsigned punto) {
  return const_cast<CCoor3D<int>*>(e.PunteroAPunto(static_cast<int>(punto)));
}

}  // namespace Meseta47
