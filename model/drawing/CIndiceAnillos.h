#pragma once

#include <cstdint>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// A closed line in plan, its sides filed by the rows of the plan that they cross.
class URDIMBRE_API CAnillo {
 public:
  enum class ELugar { Fuera, Dentro, EnElBorde };

  explicit CAnillo(CLinea<int> const& linea);

  [[nodiscard]] CMaximas<int> const& Caja() const { return caja; }
  [[nodiscard]] int ZMaximo() const { return caja.Maximo.z; }

  /// Where a place lies, exactly, by the parity of the sides that its row crosses on the right. Looks at the sides of
  /// one row: about as many as a horizontal line cuts.
  [[nodiscard]] ELugar Lugar(int x, int y) const;

 private:
  struct CTramo {
    std::int32_t ax, ay, bx, by;
  };

  [[nodiscard]] std::size_t Fila(int y) const;

  CMaximas<int> caja;
  double porFila = 1;                 // units of height in a row
  std::vector<std::uint32_t> inicio;  // sides of row f: from inicio[f] to inicio[f + 1]
  std::vector<CTramo> tramos;
};

/// The outlines of a drawing, ready to be asked what lies inside. Outlines are its lines that are closed in plan and
/// not deleted. A place is inside when an odd number of them goes round it, so that a ring in a ring is a hole and a
/// third one an island; and on the very line of any.
///
/// Reading it is safe from several threads.
class CIndiceAnillos {
 public:
  explicit CIndiceAnillos(CDibujo<int> const& limites);

  [[nodiscard]] bool EstaVacio() const { return anillos.empty(); }

  /// The outline that holds a place: of those round it, the last in the drawing, which is the innermost one when larger
  /// outlines stand before smaller ones. Null when the place is outside.
  [[nodiscard]] CAnillo const* Busca(int x, int y) const;

  /// Greatest height of all outlines.
  [[nodiscard]] int ZMaximo() const { return caja.Maximo.z; }

 private:
  struct CCelda {
    std::size_t columna, fila;
  };

  void EligeCeldas();
  [[nodiscard]] CCelda CeldaDe(int x, int y) const;

  std::vector<CAnillo> anillos;
  CMaximas<int> caja;
  std::size_t columnas = 1, filas = 1;
  std::vector<std::uint32_t> inicio;     // rings of a cell: from inicio[c] to inicio[c + 1]
  std::vector<std::uint32_t> porCeldas;  // in the order of the drawing within a cell
};

}  // namespace Meseta47
