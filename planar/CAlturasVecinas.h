#pragma once

#include <cstddef>
#include <vector>

#include "platform/Exporta.h"

namespace Meseta47 {

/// What the worker learns of the points around each point while the mesh leaves memory, and whether a point stands out
/// against them. Five arrays by point number less 1, 14 bytes a point.
///
/// Counts wrap at 8 bits and sums at 32, two's complement: peaks have few neighbours, and a point with so many that a
/// count wraps is in the middle of them.
struct URDIMBRE_API CAlturasVecinas {
  std::vector<int> minimos, maximos;     ///< least and greatest height of the neighbours, scaled units
  std::vector<int> sumas;                ///< of their heights, each neighbour once a triangle
  std::vector<unsigned char> vecinos;    ///< how many were summed: two a triangle
  std::vector<unsigned char> empinados;  ///< how many steep rises reach the point

  /// Room for so many points of which nothing is known.
  void Prepara(std::size_t puntos);

  /// Whether the point of that index, at height `z`, is a peak or a pit:
  ///  - two steep rises reach it; or else, of a point with more than 4 neighbours counted (three triangles),
  ///  - it stands above the highest or below the lowest of them, and by more than `altura` above or below that one or
  ///    their mean.
  /// The mean is cut towards zero.
  [[nodiscard]] bool EsPico(std::size_t indice, int z, int altura) const;
};

}  // namespace Meseta47
