#pragma once

#include <cstdint>
#include <vector>

#include "model/drawing/CLinea.h"
#include "planar/CSegmentos.h"

namespace Meseta47 {

/// The contours of one level, joined from its pieces as CDibujo::Junta joins lines "nuevo" of two points, without
/// repeated ones, on through crossings: the same lines in the same order. A contour is told by the end of a piece where
/// it begins, and becomes a line when it is asked for: 25 bytes a piece in all.
///
/// Does not change once made; any number of threads may ask.
class URDIMBRE_API CNivelDeCurvas {
 public:
  /// Joins the pieces, in scaled units; they may come in any order and sense. Where they part what is higher than the
  /// level from what is not, as `llanos` then says, two that lie upon each other have higher ground on both sides, and
  /// part nothing: they go in pairs, and contours end on the border of the surface alone. O(n log n).
  CNivelDeCurvas(int laAltura, std::vector<CSegmento> losSegmentos, CLlanos llanos = CLlanos::LADOS);

  [[nodiscard]] int Altura() const { return altura; }
  /// How many contours there are.
  [[nodiscard]] std::size_t Cantidad() const { return cadenas.size(); }
  /// A contour: a line "nuevo", a ring with its first point repeated at the end. Its points have positions and nothing
  /// else. O(its points).
  [[nodiscard]] CLinea<int> Linea(std::size_t i) const;

 private:
  // An end of a piece is twice its index, plus 1 at `b`: the other end is that with its lowest bit turned.
  using CExtremo = std::uint32_t;

  struct CCadena {
    CExtremo inicio;
    std::uint32_t puntos;
  };
  class CPaseo;

  [[nodiscard]] CLugarPlano const& Lugar(CExtremo e) const {
    return e % 2 == 0 ? segmentos[e / 2].a : segmentos[e / 2].b;
  }
  void EmparejaExtremos();
  void EmparejaNudo(std::vector<CExtremo> const& extremos);
  void Une(CExtremo a, CExtremo b);
  void RecogeCadenas();
  [[nodiscard]] CCadena Abierta(std::vector<CExtremo> const& camino) const;
  [[nodiscard]] CCadena Anillo(std::vector<CExtremo> const& camino) const;
  [[nodiscard]] int Compara(CCadena const& a, CCadena const& b) const;

  int altura;
  std::vector<CSegmento> segmentos;  ///< ascending, each once, lower end first
  std::vector<CExtremo> pareja;      ///< for each end, the one that it is joined to
  std::vector<CCadena> cadenas;      ///< in the order of the lines
};

}  // namespace Meseta47
