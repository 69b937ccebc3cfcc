#pragma once

#include <utility>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// The coordinate plane, as CCoor3D::CalculaLado numbers them, in which a triangle shows its turn: the plan unless the
/// triangle stands upright.
[[nodiscard]] inline int PlanoDeGiro(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c) {
  if (a.x == b.x && b.x == c.x) return 1;
  if (a.y == b.y && b.y == c.y) return 2;
  return a.CalculaLado(b, c, 0) == 0 ? 1 : 0;
}

/// Puts three points in the order that every triangle of a mesh has: the smallest position first, and from there such a
/// way round that the third does not lie on the left of the side from the first to the second: clockwise.
///
///        2
///       / \        The smallest one is 1. Seen in `plano`, 3 lies on the right of 1-2.
///      1---3
///
template <class P>
void ColocaEnOrden(P*& P1, P*& P2, P*& P3, int plano) {
  P *a = P1, *b = P2, *c = P3;
  if (*P1 > *P2) {
    if (*P2 > *P3) {
      a = P3, b = P2, c = P1;
    } else {
      a = P2, b = P3, c = P1;
    }
  } else if (*P1 > *P3) {
    a = P3, b = P2, c = P1;
  }
  if (c->CalculaLado(*a, *b, plano) == 1) std::swap(b, c);
  P1 = a, P2 = b, P3 = c;
}

}  // namespace Meseta47
