#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "planar/CSetTriangulos2D.h"
#include "support/PlanarScene.h"

namespace Meseta47::test {

inline std::vector<CTriangulo2D*> ListOf(CSetTriangulos2D const& set) {
  std::vector<CTriangulo2D*> triangles;
  for (CTriangulo2D* t = set.primero; t != nullptr; t = t->Sig()) triangles.push_back(t);
  return triangles;
}

inline std::vector<CTriangulo2D*> BackwardListOf(CSetTriangulos2D const& set) {
  std::vector<CTriangulo2D*> triangles;
  for (CTriangulo2D* t = set.ultimo; t != nullptr; t = t->Ant()) triangles.push_back(t);
  return triangles;
}

inline std::vector<CTriangulo2D*> OpenOf(CSetTriangulos2D const& set) { return set.Abiertos(); }

/// A root from 0 to 1000 each way, and small triangles with points of their own, kept alive by the scene.
class SetScene : public testing::Test {
 protected:
  SetScene() { root.EstableceDivisiones(Box(0, 0, 1000, 1000), false); }

  /// Files a triangle of about two units with its right angle at (x, y), and returns the filed copy.
  CTriangulo2D* FileSmall(CSetTriangulos2D& set, int x, int y) {
    CTriangulo2D const small = Small(x, y);
    set.Inserta(small);
    return small.P1() == nullptr ? nullptr : Filed(set, small);
  }

  CTriangulo2D Small(int x, int y) {
    held.push_back(std::make_unique<std::vector<CCoor3D<int>>>(Numbered({{x, y}, {x, y + 2}, {x + 2, y}})));
    auto& p = *held.back();
    for (CCoor3D<int>& q : p) q.num = ++lastNumber;
    return CTriangulo2D(&p[0], &p[1], &p[2]);
  }

  /// The copy of a triangle that lies somewhere in a subtree.
  static CTriangulo2D* Filed(CSetTriangulos2D& set, CTriangulo2D const& t) {
    for (CTriangulo2D* mine : ListOf(set)) {
      if (*mine == t) return mine;
    }
    for (unsigned i = 0; set.hijos != nullptr && i < 4; ++i) {
      if (CTriangulo2D* found = Filed(set.hijos[i], t)) return found;
    }
    return nullptr;
  }

  /// Fills a set with small triangles, spread over its four quadrants in turn, each wholly within one.
  void FillEvenly(CSetTriangulos2D& set, int count) {
    for (int i = 0; i < count; ++i) {
      const int step = 10 * (i / 4 % 40);
      FileSmall(set, 20 + step + (i % 2 == 0 ? 0 : 500), 20 + step + (i / 2 % 2 == 0 ? 0 : 500));
    }
  }

  std::vector<std::unique_ptr<std::vector<CCoor3D<int>>>> held;
  int lastNumber = 0;
  CSetTriangulos2D root{0};  // after the points, so that it goes before them
};

}  // namespace Meseta47::test
