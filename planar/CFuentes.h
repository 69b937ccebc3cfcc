#pragma once

#include <cstddef>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CPosicionEntidad.h"
#include "model/threads/Codigos.h"
#include "run/CPosicion.h"

namespace Meseta47 {

class CRango;

/// The drawings that a run takes its points from, in the order in which they go in. The place of a drawing in that
/// order is the list of its points' CPosicion. They are borrowed, and a run writes nothing but the numbers of their
/// points.
struct URDIMBRE_API CFuentes {
  CDibujo<int> const& dibujo;                                ///< list 0
  std::vector<CDibujo<int>*> const* otros = nullptr;         ///< lists from 1 on; a null pointer keeps its place
  std::vector<CPosicionEntidad> const* seleccion = nullptr;  ///< of the first drawing; null for all
  CDibujo<int> const* extra = nullptr;                       ///< the list behind them: it gives no seeds
  bool todasLasSemillas = false;                             ///< those of the last of the further drawings too

  /// Calls `visita(lista, dibujo, seleccion)` for each drawing, until one answers other than kHecho, which is handed
  /// on.
  template <class F>
  int Recorre(F&& visita) const {
    std::vector<CPosicionEntidad> const* const todos = nullptr;
    int codigo = visita(short{0}, dibujo, seleccion);
    short lista = 1;
    for (std::size_t i = 0; otros != nullptr && i < otros->size(); ++i, ++lista) {
      if (codigo == kHecho && (*otros)[i] != nullptr) codigo = visita(lista, *(*otros)[i], todos);
    }
    if (codigo == kHecho && extra != nullptr) codigo = visita(lista, *extra, todos);
    return codigo;
  }

  [[nodiscard]] bool EsExtra(short lista) const {
    return extra != nullptr && static_cast<std::size_t>(lista) == (otros != nullptr ? otros->size() : 0) + 1;
  }
  [[nodiscard]] unsigned Entidades() const;
  /// The point of a seed; null where there is none. Without all seeds those of the last further drawing are looked for
  /// in the extra one, or left out, as CTriangulacion2D::Run tells.
  [[nodiscard]] CCoor3D<int>* Semilla(CPosicion const& lugar) const;
};

/// How the file that linking has left becomes a model.
struct CGeneracion {
  CFuentes const& fuentes;                      ///< the drawings that were linked
  std::vector<CDibujo<int>*>* borra = nullptr;  ///< the further ones, to be deleted once they are not needed
  double ladoMaximo = 0;                        ///< greatest length of a side in plan, metres; 0 for any
  CRango const *alturas = nullptr, *intensidades = nullptr;  ///< of the absolute differences along sides
};

}  // namespace Meseta47
