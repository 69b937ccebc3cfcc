#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/terrain/CDataTriangulacion.h"
#include "run/CFiltroPuntos.h"

namespace Meseta47 {

/// The points of a drawing in a row, to be gone through in parts, and a filter that says which take part. The drawing
/// keeps the points, and must not move them meanwhile.
class CPuntosSuelo {
 public:
  CPuntosSuelo(CDibujo<int>& dibujo, CDataTriangulacion const& filtros)
      : filtro(filtros, dibujo.semilla.Precision(), dibujo) {
    for (unsigned e = 0; e < dibujo.Cantidad(); ++e) {
      CLinea<int>& linea = dibujo[e];
      if (linea.NPuntos() == 0 || !filtro.AdmiteEntidad(linea)) continue;
      trozos.push_back({total, linea.PunteroAPunto(0)});
      total += static_cast<std::size_t>(linea.NPuntos());
    }
  }

  /// Of the row; not all of them need take part.
  [[nodiscard]] std::size_t Total() const { return total; }

  [[nodiscard]] CCoor3D<int> const& operator[](std::size_t lugar) const {
    CTrozo const& trozo = trozos[trozos.size() == 1 ? 0 : TrozoDe(lugar)];
    return trozo.puntos[lugar - trozo.primero];
  }

  /// f(p, place in the row) for those of [desde, hasta) that take part.
  template <class F>
  void Recorre(std::size_t desde, std::size_t hasta, F const& f) const {
    for (std::size_t t = TrozoDe(desde); desde < hasta; ++t) {
      const std::size_t fin = std::min(hasta, t + 1 < trozos.size() ? trozos[t + 1].primero : total);
      for (CCoor3D<int>* p = trozos[t].puntos + (desde - trozos[t].primero); desde < fin; ++desde, ++p) {
        if (!p->EsBorrado() && filtro.AdmitePunto(*p)) f(*p, desde);
      }
    }
  }

 private:
  struct CTrozo {
    std::size_t primero;  ///< place in the row
    CCoor3D<int>* puntos;
  };

  [[nodiscard]] std::size_t TrozoDe(std::size_t lugar) const {
    const auto detras = std::upper_bound(trozos.begin(), trozos.end(), lugar,
                                         [](std::size_t l, CTrozo const& trozo) { return l < trozo.primero; });
    return detras == trozos.begin() ? 0 : static_cast<std::size_t>(detras - trozos.begin()) - 1;
  }

  CFiltroPuntos filtro;
  std::vector<CTrozo> trozos;
  std::size_t total = 0;
};

}  // namespace Meseta47
