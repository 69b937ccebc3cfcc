#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "model/geometry/CCoor3D.h"
#include "platform/CFile.h"

namespace Meseta47 {

/// A position in plan, in scaled units, ordered by x, then y.
struct CLugarPlano {
  std::int32_t x, y;

  auto operator<=>(CLugarPlano const&) const = default;
};

/// A piece of a contour: two places on its level.
struct CSegmento {
  CLugarPlano a, b;

  auto operator<=>(CSegmento const&) const = default;
};

/// What contours are where a surface lies flat on a level, in whole or along sides.
enum class CLlanos {
  LADOS,   ///< every side that lies on a level is a piece of contour
  ORILLA,  ///< a level runs between what is higher and what is not: the shore of a flat area, once
};

/// The pieces of all contours of a run, from when triangles are cut until the levels are joined: 16 bytes each, for
/// there are as many as triangles. They keep their positions and nothing else of the points that they come from. With a
/// file, at most 64 KB of a level are in memory. A file that fails keeps its failure, and pieces are missing then.
///
/// Used by one thread at a time.
class URDIMBRE_API CSegmentos {
 public:
  /// From now on, what is more than 4,096 pieces of a level goes to the file's end, in the order in which it comes. The
  /// file is open for reading and writing, and must stand until Clear(); null for none.
  void PonFichero(CFile* elFichero) { fichero = elFichero; }

  /// How triangles are to be cut from now on; LADOS before that and after Clear().
  void PonLlanos(CLlanos losLlanos) { llanos = losLlanos; }
  [[nodiscard]] CLlanos Llanos() const { return llanos; }

  /// Cuts a triangle with the multiples of `equidistancia` as ORILLA has it: a vertex on a level counts as below it. So
  /// each level takes one piece at most, its ends lie on two sides, and the triangle across such a side has a piece
  /// that ends at the very same place. Pieces that rounding brings down to a point are left out. O(levels within the
  /// triangle).
  void Corta(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, int equidistancia);

  /// Adds a piece of the level that both ends lie on, lower end first. O(log levels), mostly O(1).
  void Anade(CCoor3D<int> const& a, CCoor3D<int> const& b);

  [[nodiscard]] std::size_t Cantidad() const { return cantidad; }
  /// Heights of the lowest level and of the highest one; there must be pieces.
  [[nodiscard]] int MinimoZ() const { return niveles.begin()->first; }
  [[nodiscard]] int MaximoZ() const { return niveles.rbegin()->first; }

  /// Takes the pieces of a level out, in the order in which they came; none when it has none.
  [[nodiscard]] std::vector<CSegmento> Saca(int z);
  /// Forgets all pieces, how to cut, and the file, which stays as it is.
  void Clear();

 private:
  /// Blocks that are filled one after another and never move: of a list that doubles its room, two thirds at the worst
  /// would be empty while it moves.
  struct CNivel {
    std::vector<long long> enFichero;  ///< where each block begins that is in the file
    std::vector<std::vector<CSegmento>> bloques;
    std::size_t cantidad = 0;  ///< in memory

    void Anade(CSegmento const& s, CFile* elFichero);
    void Guarda(CFile& elFichero);
    std::size_t Total() const;
    void Recoge(std::vector<CSegmento>& segmentos, CFile* elFichero);
  };

  CFile* fichero = nullptr;
  CLlanos llanos = CLlanos::LADOS;
  std::map<int, CNivel> niveles;  ///< by height
  CNivel* ultimo = nullptr;       ///< level of the piece added last, where the next one lies as a rule
  int ultimoZ = 0;
  std::size_t cantidad = 0;
};

}  // namespace Meseta47
