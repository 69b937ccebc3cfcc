#include "tetrahedral/CSetTetraedros.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "model/drawing/CDibujo.h"
#include "support/FaultGuard.h"
#include "support/Random.h"
#include "support/SpaceScenes.h"

using namespace Meseta47;
using namespace Meseta47::test;
using testing::ElementsAre;

namespace {

/// Shows what is protected.
struct Open : CSetTetraedros {
  using CSetTetraedros::ComparaXMax;
  using CSetTetraedros::ComparaXMin;
  using CSetTetraedros::CSetTetraedros;
  using CSetTetraedros::Inserta;
  using CSetTetraedros::SetIdentificadores;
};

class CSetTetraedrosTest : public testing::Test {
 protected:
  CSetTetraedrosTest() { root.EstableceDivisiones(Box(-1000, 1000), false); }

  /// A regular one of about 4 units around a place.
  CTetraedro Small(int x, int y, int z) {
    const int n = 100 + 4 * made++;
    return {p(x + 1, y + 1, z + 1, n), p(x + 1, y - 1, z - 1, n + 1), p(x - 1, y + 1, z - 1, n + 2),
            p(x - 1, y - 1, z + 1, n + 3)};
  }
  bool File(CSetTetraedros& set, CTetraedro t) { return set.Inserta(t, false, false, false, false, false, false); }
  void FileMany(CSetTetraedros& set, int n, int x, int y, int z) {
    for (int i = 0; i < n; ++i) File(set, Small(x, y, z));
  }

  /// The cube from -10 to 10 around the origin, cut into five, linked.
  void MakeCube() {
    CCoor3D<int>* v[8];
    for (int i = 0; i < 8; ++i) {
      v[i] = p((i & 1) != 0 ? 10 : -10, (i & 2) != 0 ? 10 : -10, (i & 4) != 0 ? 10 : -10, i + 1);
    }
    const int parts[5][4] = {{0, 3, 5, 6}, {0, 1, 3, 5}, {0, 2, 3, 6}, {0, 4, 5, 6}, {3, 5, 6, 7}};
    bool inList = false;
    for (auto const& part : parts) {
      CTetraedro t(v[part[0]], v[part[1]], v[part[2]], v[part[3]]);
      ASSERT_TRUE(root.Inserta(t, true, true, true, true, inList, false));
      inList = true;
    }
  }

  Points p;
  int made = 0;
  Open root{0};
};

TEST_F(CSetTetraedrosTest, ChildrenAreNumberedByOctant) {
  root.EstableceDivisiones(Box(-100, 100), true);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(-1, 1, -1, 0)), 0);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(1, 1, -1, 0)), 1);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(-1, -1, -1, 0)), 2);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(1, -1, -1, 0)), 3);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(-1, 1, 1, 0)), 4);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(1, -1, 1, 0)), 7);
  EXPECT_EQ(root.Hijo(5)->maximas.Minimo, CCoor3D<int>(0, 0, 0, 0));
  EXPECT_EQ(root.Hijo(2)->maximas.Maximo, CCoor3D<int>(0, 0, 0, 0));
  EXPECT_EQ(root.Hijo(6)->maximas.Minimo, CCoor3D<int>(-100, -100, 0, 0));
  EXPECT_EQ(root.Hijo(8), nullptr);
  EXPECT_EQ(root.Hijo(0)->BuscaHijo(CCoor3D<int>(1, 1, 1, 0)), -1);
}

TEST_F(CSetTetraedrosTest, APointOnAPlaneGoesToTheHighChildInBothSearches) {
  root.EstableceDivisiones(Box(-100, 100), true);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(0, 0, 0, 0)), 5);
  EXPECT_EQ(root.DameHijo(CCoor3D<int>(0, 0, 0, 0)), root.Hijo(5));
  EXPECT_EQ(root.DameHijo(CCoor3D<int>(0, -1, -1, 0)), root.Hijo(3));
}

TEST_F(CSetTetraedrosTest, ABoxThatTouchesAPlaneByOneIntegerStaysInTheParent) {
  root.EstableceDivisiones(Box(-100, 100), true);
  const auto box = [](int low, int high) {
    CMaximas<int> m = Box(1, 2);
    m.Minimo.x = low;
    m.Maximo.x = high;
    return m;
  };
  EXPECT_EQ(root.BuscaHijo(box(1, 5)), 5);
  EXPECT_EQ(root.BuscaHijo(box(0, 5)), -1);
  EXPECT_EQ(root.BuscaHijo(box(-5, -1)), 4);
  EXPECT_EQ(root.BuscaHijo(box(-5, 0)), -1);
}

TEST_F(CSetTetraedrosTest, The150thDoesNotSplitALeafAndThe151stDoes) {
  FileMany(root, 150, 500, 500, 500);
  EXPECT_FALSE(root.TieneHijos());
  EXPECT_EQ(root.Cantidad(), 150U);
  FileMany(root, 1, 500, 500, 500);
  ASSERT_TRUE(root.TieneHijos());
  EXPECT_EQ(root.Cantidad(), 0U);
  EXPECT_EQ(root.Hijo(5)->Cantidad(), 151U);
  EXPECT_EQ(root.CantidadTotal(), 151U);
  EXPECT_EQ(root.Hijo(5)->Primero()->GetSet(), root.Hijo(5));
}

TEST_F(CSetTetraedrosTest, WhatStraddlesAPlaneStaysBehindInASplitInItsOrder) {
  FileMany(root, 2, 0, 500, 500);
  FileMany(root, 149, 500, 500, 500);
  EXPECT_EQ(root.Cantidad(), 2U);
  EXPECT_EQ(root.Primero()->N1(), 100);
  EXPECT_EQ(root.Primero()->Sig()->N1(), 104);
  EXPECT_EQ(root.Primero()->Sig()->Sig(), nullptr);
  EXPECT_EQ(root.Hijo(5)->Primero()->N1(), 108);
}

TEST_F(CSetTetraedrosTest, ALeafAtLevelTwelveTakesAnyNumber) {
  Open deep(12);
  deep.EstableceDivisiones(Box(-1000, 1000), false);
  FileMany(deep, 200, 500, 500, 500);
  EXPECT_FALSE(deep.TieneHijos());
  EXPECT_EQ(deep.Cantidad(), 200U);
}

TEST_F(CSetTetraedrosTest, AClosedOctantTakesNothing) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  root.Hijo(5)->cerrado = true;
  EXPECT_FALSE(File(root, Small(500, 500, 500)));
  EXPECT_TRUE(File(root, Small(-500, 500, 500)));
  EXPECT_EQ(root.CantidadTotal(), 1U);
}

TEST_F(CSetTetraedrosTest, OfTheSameFourPointsOneIsFiledWhenAskedFor) {
  CTetraedro t = Small(5, 5, 5);
  EXPECT_TRUE(root.Inserta(t, false, false, false, false, false, true));
  EXPECT_FALSE(root.Inserta(t, false, false, false, false, false, true));
  EXPECT_TRUE(root.Inserta(t, false, false, false, false, false, false));
  EXPECT_EQ(root.Cantidad(), 2U);
}

TEST_F(CSetTetraedrosTest, TheCubesTetrahedraFindOneAnotherByTheirFaces) {
  MakeCube();
  std::vector<CTetraedro*> all;
  root.RellenaVectorPunteros(all);
  ASSERT_EQ(all.size(), 5U);
  EXPECT_EQ(all[0]->CarasLimite(), 0);
  for (std::size_t i = 1; i < 5; ++i) EXPECT_EQ(all[i]->CarasLimite(), 3);
  CSetCaras outside;
  root.CompruebaCarasExteriores(outside);
  EXPECT_EQ(outside.size(), 12U);
  CSetCaras faces;
  root.GetCaras(faces);
  EXPECT_EQ(faces.size(), 20U);
  faces.BorraDuplicadas();
  EXPECT_EQ(faces.size(), 12U);
}

TEST_F(CSetTetraedrosTest, EqualNumbersAreRefusedInTheListAndNotAmongFreeFaces) {
  MakeCube();
  unsigned code = 0;
  CTetraedro* t = root.Primero();
  root.VaciaPosiblesVecinos();
  EXPECT_EQ(root.GetContieneCara(*t->P1(), *t->P2(), *t->P3(), code, false), nullptr);
  CTetraedro* found = root.GetContieneCara(*t->P1(), *t->P2(), *t->P3(), code, true);
  ASSERT_NE(found, nullptr);  // either of the two that share it
  EXPECT_EQ(static_cast<int>(code), found->ContieneCara(t->N1(), t->N2(), t->N3()));
  EXPECT_EQ(root.GetContieneCara(*t->P1(), *t->P1(), *t->P3(), code, true), nullptr);
  CTetraedro odd(p(0, 0, 0, 50), p(9, 0, 0, 50), p(0, 9, 0, 50), p(0, 0, 9, 51));
  root.posiblesVecinos.push_back(&odd);
  odd.SetVecino123(nullptr, 2, 2, 2, false);
  CSetTetraedros other(0);
  other.EstableceDivisiones(Box(-1000, 1000), false);
  File(other, odd);
  root.posiblesVecinos[0] = other.Primero();
  EXPECT_EQ(root.GetContieneCara(*odd.P1(), *odd.P2(), *odd.P3(), code, false), other.Primero());
  EXPECT_EQ(root.GetContieneCara(*p(0, 0, 0, 7), *p(0, 0, 0, 8), *p(0, 0, 0, 9), code, true), nullptr);
  root.VaciaPosiblesVecinos();
}

TEST_F(CSetTetraedrosTest, FreeFacesOfClosedSetsArePassedOverAndMarkedOnesErased) {
  CSetTetraedros closed(0);
  closed.EstableceDivisiones(Box(-1000, 1000), false);
  File(closed, Small(0, 0, 0));
  File(root, Small(0, 0, 0));
  CTetraedro *theirs = closed.Primero(), *mine = root.Primero();
  closed.cerrado = true;
  unsigned code = 0;
  root.posiblesVecinos = {theirs, mine};
  EXPECT_EQ(root.GetContieneCara(*theirs->P1(), *theirs->P2(), *theirs->P3(), code, false), nullptr);
  mine->SetBorrado(true);
  EXPECT_EQ(root.GetContieneCara(*mine->P1(), *mine->P2(), *mine->P3(), code, false), nullptr);
  EXPECT_THAT(root.posiblesVecinos, ElementsAre(theirs));
  mine->SetBorrado(false);
  root.VaciaPosiblesVecinos();
}

TEST_F(CSetTetraedrosTest, ATetrahedronLeavesTheListWithItsLastFreeFace) {
  File(root, Small(0, 0, 0));
  CTetraedro *t = root.Primero(), other[3];
  root.posiblesVecinos = {t};
  unsigned code = 0;
  t->SetVecino124(&other[0], 2, 2, 2, false);
  t->SetVecino134(&other[1], 2, 2, 2, false);
  EXPECT_EQ(root.GetContieneCara(*t->P1(), *t->P2(), *t->P3(), code, false), t);
  EXPECT_EQ(root.posiblesVecinos.size(), 1U);
  t->SetVecino234(&other[2], 2, 2, 2, false);
  EXPECT_EQ(root.GetContieneCara(*t->P1(), *t->P2(), *t->P3(), code, false), t);
  EXPECT_TRUE(root.posiblesVecinos.empty());
  t->clear();
}

class CavityTest : public CSetTetraedrosTest {
 protected:
  int Search(CCoor3D<int>& q, CTetraedro* start = nullptr) {
    faces.clear();
    cavity.clear();
    return root.Implicados(q, faces, cavity, visited, refused, start);
  }
  CSetCaras faces;
  std::vector<CTetraedro*> cavity;
  unsigned visited = 99, refused = 99;
};

TEST_F(CavityTest, WithoutAStartTheAnswerIsTwoAndNothingIsTouched) {
  CCoor3D<int> q(0, 0, 0, 20);
  EXPECT_EQ(Search(q), 2);
  EXPECT_TRUE(faces.empty());
  EXPECT_TRUE(cavity.empty());
  EXPECT_EQ(visited + refused, 0U);
}

TEST_F(CavityTest, AStartInAClosedSetIsNone) {
  MakeCube();
  CTetraedro* start = root.Primero();
  root.cerrado = true;
  CCoor3D<int> q(0, 0, 0, 20);
  EXPECT_EQ(Search(q, start), 2);
}

TEST_F(CavityTest, TheWholeCubeIsCosphericalAndGoesForAPointInside) {
  MakeCube();
  CCoor3D<int> q(1, 2, 3, 20);
  EXPECT_EQ(Search(q), 0);
  EXPECT_EQ(q.num, 20);
  EXPECT_EQ(cavity.size(), 5U);
  EXPECT_EQ(faces.size(), 20U);
  for (CTetraedro* t : cavity) {
    EXPECT_TRUE(t->Borrado());
    EXPECT_EQ(t->GetIdentificador(), 20 + 10'000'000);
  }
  faces.BorraDuplicadas();
  EXPECT_EQ(faces.size(), 12U);
  for (CTetraedro* t : cavity) t->SetBorrado(false);
}

TEST_F(CavityTest, APointOnAVertexAnswersThreeWithItsNumberRestoredAndMarksLeft) {
  MakeCube();
  CCoor3D<int> q(10, 10, 10, 20);
  EXPECT_EQ(Search(q, root.Primero()), 3);
  EXPECT_EQ(q.num, 20);
  int marked = 0;
  for (CTetraedro* t : cavity) {
    marked += t->Borrado() ? 1 : 0;
    t->SetBorrado(false);
  }
  EXPECT_GE(marked, 1);  // the one in the middle, which has not the vertex
  EXPECT_GE(cavity.size(), 2U);
}

TEST_F(CavityTest, APointBeyondAllSpheresAnswersFour) {
  MakeCube();
  CCoor3D<int> q(500, 0, 0, 20);
  EXPECT_EQ(Search(q), 4);
  EXPECT_EQ(visited, 5U);
  EXPECT_TRUE(cavity.empty());
}

TEST_F(CavityTest, ANonRootSetAnswersOneForAPointOutsideAndKeepsItsFreeFaces) {
  MakeCube();
  Open child(1);
  child.EstableceDivisiones(Box(-5, 5), false);
  child.posiblesVecinos = {root.Primero()};
  CCoor3D<int> q(8, 0, 0, 20);
  EXPECT_EQ(child.Implicados(q, faces, cavity, visited, refused, root.Primero()), 1);
  EXPECT_EQ(child.posiblesVecinos.size(), 1U);
  child.posiblesVecinos.clear();
}

TEST_F(CavityTest, AWalkNeedsNoClearingOfStamps) {
  MakeCube();
  for (const int number : {20, 21, 22}) {
    CCoor3D<int> q(1, 2, 3, number);
    EXPECT_EQ(Search(q), 0);
    EXPECT_EQ(cavity.size(), 5U);
    for (CTetraedro* t : cavity) t->SetBorrado(false);
  }
}

TEST_F(CavityTest, WhatTheWalkHasFoundOutsideIsRefusedWithoutATest) {
  MakeCube();
  // A second cell far away, reachable through a link: the walk begins there.
  CTetraedro far(p(400, 0, 0, 31), p(410, 0, 0, 32), p(400, 10, 0, 33), p(400, 0, 10, 34));
  File(root, far);
  CTetraedro *start = root.ultimo, *middle = root.Primero();
  CTetraedro* side = middle->Sig();
  start->SetVecino123(side, 2, 2, 2, false);
  side->SetVecino123(start, 2, 2, 2, false);
  CCoor3D<int> q(1, 2, 3, 20);
  EXPECT_EQ(Search(q, start), 0);
  EXPECT_EQ(visited, 1U);
  EXPECT_EQ(refused, 1U);
  EXPECT_EQ(start->GetIdentificador(), 20);
  EXPECT_EQ(cavity.size(), 5U);
  for (CTetraedro* t : cavity) t->SetBorrado(false);
}

/// The fast way and the one step by step leave the same tree: sets, order in the lists, neighbours.
class TwoWaysTest : public CSetTetraedrosTest {
 protected:
  static std::string Portrait(CSetTetraedros& set) {
    std::string text;
    std::vector<CSetTetraedros*> sets;
    set.RellenaVectorHijos(sets, false);
    for (CSetTetraedros* s : sets) {
      text += "set " + std::to_string(s->nivel) + "\n";
      for (CTetraedro* t = s->Primero(); t != nullptr; t = t->Sig()) {
        text += Text(t);
        for (CTetraedro* v : {t->GetVecino123(), t->GetVecino124(), t->GetVecino134(), t->GetVecino234()}) {
          text += " | " + (v == nullptr ? std::string("-") : Text(v));
        }
        text += t->GetSet() == s ? "\n" : " elsewhere\n";
      }
    }
    return text;
  }
  static std::string Text(CTetraedro* t) {
    return std::to_string(t->N1()) + " " + std::to_string(t->N2()) + " " + std::to_string(t->N3()) + " " +
           std::to_string(t->N4());
  }
  /// One point in the way of the interface, step by step.
  int StepByStep(CCoor3D<int>* q) {
    CSetCaras faces;
    std::vector<CTetraedro*> cavity;
    unsigned a = 0, b = 0;
    const int answer = root.Implicados(*q, faces, cavity, a, b, root.inicio);
    if (answer != 0) {
      for (CTetraedro* t : cavity) t->SetBorrado(false);
      return answer;
    }
    faces.BorraDuplicadas();
    std::vector<CTetraedro> made_;
    for (CCara const& f : faces) {
      made_.emplace_back(f.P1(), f.P2(), f.P3(), q);
      auto* outside = static_cast<CTetraedro*>(f.Tetra());
      if (outside != nullptr && outside->Borrado()) outside = nullptr;
      made_.back().SetVecino123(outside, f.D12(), f.D13(), f.D23(), f.Grabado());
    }
    for (CTetraedro* t : cavity) {
      t->GetSet()->Borra(t, false);
      delete t;
    }
    for (CTetraedro& t : made_) {
      root.Inserta(t, t.GetMaximasEsfera(), false, true, true, true, false, false);
      t.clear();
    }
    return 0;
  }
};

TEST_F(TwoWaysTest, TheFastInsertionLeavesWhatTheStepsLeave) {
  for (const int spread : {400, 12}) {  // at random, and a grid full of repeated and cospherical points
    std::string portraits[2];
    std::vector<int> answers[2];
    for (const int way : {0, 1}) {
      root.Vacia();
      root.EstableceDivisiones(Box(-1000, 1000), true);
      for (unsigned i = 0; i < 8; ++i) root.Hijo(i)->EstableceDivisiones(root.Hijo(i)->maximas, false);
      CCoor3D<int>* f[4] = {p(-900, -900, -900, -1), p(900, -900, -900, -2), p(0, 900, -900, -3), p(0, 0, 900, -4)};
      CTetraedro frame(f[0], f[1], f[2], f[3]);
      File(root, frame);
      support::Random random(7);
      CSetTetraedros::CBalance balance;
      for (int n = 1; n <= 600; ++n) {
        const auto at = [&] { return random.between(-spread / 2, spread / 2); };
        const int x = at(), y = at();
        CCoor3D<int>* q = p(x, y - 100, at() - 200, n);
        unsigned a = 0, b = 0, c = 0;
        answers[way].push_back(way == 0 ? StepByStep(q)
                                        : root.InsertaPunto(q, *root.DameHijo(*q), root.inicio, a, b, c, balance));
      }
      EXPECT_EQ(balance.porBusqueda, 0U);
      portraits[way] = Portrait(root);
    }
    EXPECT_EQ(answers[0], answers[1]);
    EXPECT_EQ(portraits[0], portraits[1]);
    EXPECT_GT(portraits[0].size(), 10000U);
  }
}

TEST_F(CSetTetraedrosTest, AConstructedMeshRefusesACoplanarPointAndStaysAsItWas) {
  File(root, CTetraedro(p(0, 0, 0, 1), p(100, 0, 0, 2), p(0, 100, 0, 3), p(0, 0, 100, 4)));
  CCoor3D<int>* q = p(20, 20, 0, 5);
  unsigned a = 0, b = 0, c = 0;
  CSetTetraedros::CBalance balance;
  EXPECT_EQ(root.InsertaPunto(q, root, root.Primero(), a, b, c, balance), 5);
  EXPECT_EQ(root.Cantidad(), 1U);
  EXPECT_FALSE(root.Primero()->Borrado());
  EXPECT_EQ(balance.creados + balance.condenados, 0U);
}

TEST_F(CSetTetraedrosTest, ACavityWhoseEdgesMeetTwiceTakesTheLongWay) {
  // Two tetrahedra that share an edge and no face, linked as though they did: their boundary has four faces at it.
  CTetraedro one(p(0, 0, -50, 1), p(0, 0, 50, 2), p(60, 10, 0, 3), p(60, -10, 0, 4));
  File(root, one);
  CTetraedro* first = root.Primero();
  CTetraedro two(first->P1(), first->P2(), p(-60, 10, 0, 5), p(-60, -10, 0, 6));
  File(root, two);
  CTetraedro* second = root.ultimo;
  first->SetVecino234(second, 2, 2, 2, false);
  second->SetVecino234(first, 2, 2, 2, false);
  unsigned a = 0, b = 0, c = 0;
  CSetTetraedros::CBalance balance;
  EXPECT_EQ(root.InsertaPunto(p(1, 1, 1, 7), root, first, a, b, c, balance), 0);
  EXPECT_EQ(balance.porBusqueda, 1U);
  EXPECT_EQ(a, 2U);
  EXPECT_EQ(root.Cantidad(), 8U);
}

TEST_F(CSetTetraedrosTest, ATetrahedronTakenOutLeavesTheCursorsOnItsNeighboursInTheList) {
  FileMany(root, 3, 5, 5, 5);
  CTetraedro *first = root.Primero(), *second = first->Sig(), *third = second->Sig();
  EXPECT_EQ(root.actual, third);
  root.Borra(third, false);
  EXPECT_EQ(root.actual, second);
  EXPECT_EQ(root.inicio, second);
  EXPECT_EQ(root.ultimo, second);
  delete third;
  root.actual = root.inicio = first;
  root.Borra(first, false);
  EXPECT_EQ(root.actual, second);
  delete first;
  root.Borra(second, false);
  EXPECT_EQ(root.inicio, nullptr);
  EXPECT_EQ(root.Cantidad(), 0U);
  delete second;
}

TEST_F(CSetTetraedrosTest, TheNeighboursOfOneTakenOutCanBeNoted) {
  MakeCube();
  CTetraedro* middle = root.Primero();
  root.VaciaPosiblesVecinos();
  middle->GetVecino124()->SetBorrado(true);
  root.Borra(middle, true);
  EXPECT_THAT(root.posiblesVecinos,
              ElementsAre(middle->GetVecino123(), middle->GetVecino134(), middle->GetVecino234()));
  root.VaciaPosiblesVecinos();
  delete middle;
}

TEST_F(CSetTetraedrosTest, ClosingCutsAllLinksAndTwiceDoesNothing) {
  MakeCube();
  root.posiblesVecinos = {root.Primero()};
  EXPECT_EQ(root.QuitaTetraedroActual(), 5U);
  EXPECT_TRUE(root.cerrado);
  EXPECT_EQ(root.inicio, nullptr);
  EXPECT_TRUE(root.posiblesVecinos.empty());
  for (CTetraedro* t = root.Primero(); t != nullptr; t = t->Sig()) EXPECT_EQ(t->CarasLimite(), 4);
  EXPECT_EQ(root.QuitaTetraedroActual(), 0U);
  EXPECT_EQ(root.CantidadTotal(), 5U);
}

TEST_F(CSetTetraedrosTest, ClosingAChildHandsTheStartToAnOpenAncestor) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  File(root, Small(0, 0, 0));
  CTetraedro* above = root.Primero();
  FileMany(*root.Hijo(5), 2, 500, 500, 500);
  root.inicio = root.Hijo(5)->Primero();
  root.Hijo(5)->QuitaTetraedroActual();
  EXPECT_EQ(root.inicio, above);
  EXPECT_EQ(root.GetActual(true), above);
  EXPECT_EQ(root.Hijo(5)->GetActual(true), above);
  root.QuitaTetraedroActual();
  EXPECT_EQ(root.Hijo(5)->GetActual(true), nullptr);
}

TEST_F(CSetTetraedrosTest, AMarkedStartGivesWayToAChilds) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  File(root, Small(0, 0, 0));
  FileMany(*root.Hijo(3), 1, 500, -500, -500);
  root.Primero()->SetBorrado(true);
  EXPECT_EQ(root.GetActual(true), root.Hijo(3)->Primero());
}

TEST_F(CSetTetraedrosTest, LevelsAreCountedFromTheRoot) {
  EXPECT_EQ(root.CantidadNiveles(), 1U);
  root.EstableceDivisiones(Box(-1000, 1000), true);
  EXPECT_EQ(root.CantidadNiveles(), 2U);
  EXPECT_EQ(root.Hijo(3)->CantidadNiveles(), 1U);
  Open planned(0);
  planned.EstableceDivisiones(1300U, Box(-1000, 1000));  // 162 a child: one level more
  EXPECT_EQ(planned.CantidadNiveles(), 3U);
  EXPECT_EQ(planned.Hijo(0)->Hijo(0)->centro, CCoor3D<int>(-750, 750, -750, 0));
}

TEST_F(CSetTetraedrosTest, ClearingAChildFreesItsOwnListOnly) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  CSetTetraedros& child = *root.Hijo(5);
  child.EstableceDivisiones(child.maximas, true);
  FileMany(child, 2, 500, 500, 500);
  FileMany(*child.Hijo(0), 3, 250, 750, 250);
  FileMany(root, 1, 0, 0, 0);
  child.clear();
  EXPECT_EQ(child.Cantidad(), 0U);
  EXPECT_EQ(root.CantidadTotal(), 4U);
}

TEST_F(CSetTetraedrosTest, ClearingARootFreesTheTreeButTheLastSetGatheredWithoutAListOfItsOwn) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  FileMany(*root.Hijo(5), 3, 500, 500, 500);
  FileMany(*root.Hijo(7), 2, 500, -500, 500);
  root.clear();
  EXPECT_EQ(root.CantidadTotal(), 2U);  // they wait for the destructor of their set
  FileMany(root, 1, 0, 0, 0);
  root.clear();
  EXPECT_EQ(root.CantidadTotal(), 0U);
  root.clear();  // nothing left to gather
  EXPECT_TRUE(root.TieneHijos());
}

TEST_F(CSetTetraedrosTest, WhereTheSystemRefusesWorkersATreeIsFreedAllTheSame) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  for (const EOperacion operation : {EOperacion::CreaSeccion, EOperacion::CreaEvento, EOperacion::CreaHilo}) {
    FileMany(root, 1, 0, 0, 0);
    FileMany(*root.Hijo(5), 3, 500, 500, 500);
    FileMany(*root.Hijo(7), 2, 500, -500, 500);
    FaultGuard guard;
    guard.Refuse(operation);
    EXPECT_NO_THROW(root.clear());
    EXPECT_EQ(root.CantidadTotal(), 0U);
  }
}

TEST_F(CSetTetraedrosTest, ACopyHasTheTreeAndNoneOfTheTetrahedra) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  FileMany(root, 2, 0, 0, 0);
  root.SetNumLista(7);
  CSetTetraedros copy(root);
  EXPECT_EQ(copy.Primero(), nullptr);
  EXPECT_EQ(copy.actual, nullptr);
  EXPECT_EQ(copy.Cantidad(), 2U);
  EXPECT_EQ(copy.GetNumLista(), 7U);
  EXPECT_EQ(copy.Hijo(3)->padre, &copy);
  EXPECT_EQ(copy.Hijo(3)->maximas, root.Hijo(3)->maximas);
}

TEST_F(CSetTetraedrosTest, IndicesRunOverTheChildrenFirstAndFilesOverTheOwnListFirst) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  FileMany(root, 1, 0, 0, 0);
  FileMany(*root.Hijo(1), 2, 500, 500, -500);
  EXPECT_EQ(root.Tetraedro(0), root.Hijo(1)->Primero());
  EXPECT_EQ(root.Tetraedro(2), root.Primero());
  EXPECT_EQ(root.Tetraedro(3), nullptr);
  EXPECT_EQ(root.GetTetraedroSegunID(0), root.Primero());
  EXPECT_EQ(root.GetTetraedroSegunID(2), root.Hijo(1)->Primero()->Sig());
  FileMany(*root.Hijo(2), 2, -500, -500, -500);
  EXPECT_EQ(root.GetTetraedroSegunID(3), nullptr);  // child 2 is asked for the third as well
  int next = 0;
  root.SetIdentificadores(next);
  EXPECT_EQ(next, 5);
  EXPECT_EQ(root.Primero()->GetIdentificador(), 0);
  EXPECT_EQ(root.Hijo(2)->Primero()->GetIdentificador(), 3);
}

TEST_F(CSetTetraedrosTest, ManyListsWalkedAtOnceComeInTheOrderOfFiles) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  for (unsigned i = 0; i < 8; ++i) root.Hijo(i)->EstableceDivisiones(root.Hijo(i)->maximas, i % 2 == 0);
  std::vector<CTetraedro*> expected;
  const auto list = [&](CSetTetraedros& set, int count) {
    FileMany(set, count, set.centro.x, set.centro.y, set.centro.z);
    for (CTetraedro* t = set.Primero(); t != nullptr; t = t->Sig()) expected.push_back(t);
  };
  list(root, 2);
  for (unsigned i = 0; i < 8; ++i) {
    list(*root.Hijo(i), i == 4 ? 20 : static_cast<int>(i) % 3);
    if (root.Hijo(i)->TieneHijos()) list(*root.Hijo(i)->Hijo(7), 3);
  }
  std::vector<CTetraedro*> all{nullptr};  // what is there stays
  root.RellenaVectorPunteros(all);
  expected.insert(expected.begin(), nullptr);
  EXPECT_EQ(all, expected);
  int next = 10;
  root.SetIdentificadores(next);
  EXPECT_EQ(next, 10 + static_cast<int>(expected.size()) - 1);
  for (std::size_t i = 1; i < expected.size(); ++i) {
    EXPECT_EQ(expected[i]->GetIdentificador(), 9 + static_cast<int>(i));
  }
}

TEST_F(CSetTetraedrosTest, SetsAreGatheredAfterTheirSubtree) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  FileMany(*root.Hijo(6), 1, -500, -500, 500);
  std::vector<CSetTetraedros*> full, all;
  root.RellenaVectorHijos(full, true);
  root.RellenaVectorHijos(all, false);
  EXPECT_THAT(full, ElementsAre(root.Hijo(6)));
  EXPECT_EQ(all.size(), 9U);
  EXPECT_EQ(all.back(), &root);
}

TEST_F(CSetTetraedrosTest, AnEdgeTakesItsTetrahedraWithIt) {
  MakeCube();
  std::vector<CTetraedro*> with;
  root.BuscaTetraedros(CCara(root.Primero()->P1(), root.Primero()->P2(), root.Primero()->P3(), nullptr, 2, 2, 2, false),
                       with);
  EXPECT_EQ(with.size(), 2U);
  CCoor3D<int> a(-10, -10, -10, 1), b(10, 10, -10, 4), outside(5000, 0, 0, 4);
  root.BorraContieneLado(a, outside);
  root.BorraContieneLado(a, a);
  EXPECT_EQ(root.Cantidad(), 5U);
  root.BorraContieneLado(a, b);
  EXPECT_EQ(root.Cantidad(), 2U);
  for (CTetraedro* t = root.Primero(); t != nullptr; t = t->Sig()) EXPECT_FALSE(t->ContieneLado(1, 4));
}

TEST_F(CSetTetraedrosTest, TheStarOfAPointIsFoundFromAnywhere) {
  MakeCube();
  std::vector<CTetraedro*> star;
  CCoor3D<int> outside(5000, 0, 0, 3);
  EXPECT_FALSE(root.GetTetraedrosDePunto(&outside, star));
  EXPECT_TRUE(star.empty());
  CCoor3D<int>* corner = root.Primero()->P1();
  EXPECT_TRUE(root.GetTetraedrosDePunto(corner, star));
  std::set<CTetraedro*> found(star.begin(), star.end());
  int holding = 0;
  for (CTetraedro* t : found) holding += t->P1() == corner ? 1 : 0;
  EXPECT_EQ(holding, 4);
}

TEST_F(CSetTetraedrosTest, CopiesReferToTheGivenPoints) {
  MakeCube();
  std::vector<CCoor3D<int>*> points;
  for (int i = 0; i < 7; ++i) {
    points.push_back(p((i & 1) != 0 ? 10 : -10, (i & 2) != 0 ? 10 : -10, (i & 4) != 0 ? 10 : -10, 8 - i));
  }
  std::vector<CTetraedro> copies;
  root.CopiaTetraedros(copies, points);
  ASSERT_EQ(copies.size(), 4U);  // all but the one with the eighth corner
  EXPECT_EQ(copies[0].N1(), 2);
  EXPECT_EQ(copies[0].N4(), 8);
  EXPECT_EQ(copies[0].CarasLimite(), 4);
}

TEST_F(CSetTetraedrosTest, TheTreeIsDrawnWithSixLinesASet) {
  root.EstableceDivisiones(Box(-1000, 1000), true);
  FileMany(root, 2, 0, 0, 0);
  CDibujo<int> drawing{CDataSemilla()};
  root.GraficoMaxMin(drawing, true);
  ASSERT_EQ(drawing.Cantidad(), 9U * 6);
  EXPECT_EQ(drawing[0].NPuntos(), 5);
  EXPECT_EQ(*drawing[0].PunteroAPunto(1), CCoor3D<int>(-1000, 1000, -1000, 0));
  EXPECT_EQ(drawing[1].PunteroAPunto(0)->z, 1000);
  EXPECT_EQ(drawing[5].NPuntos(), 2);
  EXPECT_EQ(*drawing[5].PunteroAPunto(1), CCoor3D<int>(1000, -1000, 1000, 0));
  EXPECT_TRUE(drawing[53].ComparaCodigo(L"LIMITE"));
}

TEST_F(CSetTetraedrosTest, ACheckedPointLeavesItsNumberOnAll) {
  MakeCube();
  root.ComprobarPuntoNuevo(CCoor3D<int>(0, 0, 0, 44));
  for (CTetraedro* t = root.Primero(); t != nullptr; t = t->Sig()) EXPECT_EQ(t->GetIdentificador(), 44);
  root.ComprobarVecinos();
}

TEST_F(CSetTetraedrosTest, BoxesAreComparedByTheirGreatestCornersFirst) {
  EXPECT_TRUE(Open::ComparaXMax(Box(0, 5), Box(0, 4)));
  EXPECT_FALSE(Open::ComparaXMax(Box(0, 4), Box(0, 5)));
  EXPECT_TRUE(Open::ComparaXMax(Box(0, 5), Box(0, 5)));
  EXPECT_TRUE(Open::ComparaXMax(Box(1, 5), Box(0, 5)));
  EXPECT_TRUE(Open::ComparaXMin(Box(0, 5), Box(1, 5)));
}

}  // namespace
