// A cell's box and list without a mesh: pebbles in the place of triangles, made in a pool of their own.
#include "run/CSetEnArbol.h"

#include <cmath>
#include <gmock/gmock.h>
#include <vector>

#include "model/storage/CDeReserva_Define.h"

namespace Meseta47 {
namespace {

class Heap;

struct Pebble : CDeReserva<Pebble> {
  explicit Pebble(int name) : number(name) {}
  [[nodiscard]] Pebble* Sig() const { return sig; }
  [[nodiscard]] Pebble* Ant() const { return ant; }
  void SetSig(Pebble* p) { sig = p; }
  void SetAnt(Pebble* p) { ant = p; }
  [[nodiscard]] Heap* GetSet() const { return set; }
  void BorraMisVecinos() { ++partings; }

  int number;
  int partings = 0;
  Pebble *sig = nullptr, *ant = nullptr;
  Heap* set = nullptr;
};

class Heap : public CSetEnArbol<Heap, Pebble, 2> {
 public:
  ~Heap() { Pebble::DestruyeLista(primero); }
  using CSetEnArbol::AnexaALista;
  using CSetEnArbol::BuscaDesdeActual;
  using CSetEnArbol::CCorte;
  using CSetEnArbol::CreaHijos;
  using CSetEnArbol::PonCentro;
  using CSetEnArbol::QuitaDeLista;
  using CSetEnArbol::SueltaInicio;
  using CSetEnArbol::SueltaVecinosDeLista;

  std::vector<Pebble*> Fill(int count) {
    std::vector<Pebble*> made;
    for (int i = 0; i < count; ++i) {
      made.push_back(new Pebble(i));
      AnexaALista(made.back());
    }
    return made;
  }
  [[nodiscard]] std::vector<int> Forward() const {
    std::vector<int> numbers;
    for (Pebble const* p = primero; p != nullptr; p = p->Sig()) numbers.push_back(p->number);
    return numbers;
  }
  [[nodiscard]] std::vector<int> Backward() const {
    std::vector<int> numbers;
    for (Pebble const* p = ultimo; p != nullptr; p = p->Ant()) numbers.push_back(p->number);
    return numbers;
  }
};

using testing::ElementsAre;

TEST(SetEnArbol, KeepsItsElementsInOrderOfArrivalBothWays) {
  Heap heap;
  const auto pebbles = heap.Fill(3);
  EXPECT_THAT(heap.Forward(), ElementsAre(0, 1, 2));
  EXPECT_THAT(heap.Backward(), ElementsAre(2, 1, 0));
  EXPECT_EQ(heap.cantidad, 3U);
  EXPECT_EQ(heap.inicio, pebbles[2]) << "a walk starts at the newest";
  EXPECT_EQ(pebbles[0]->GetSet(), &heap);
}

TEST(SetEnArbol, LosesAnElementFromEitherEndAndFromTheMiddle) {
  Heap heap;
  const auto pebbles = heap.Fill(5);
  for (const int which : {0, 4, 2}) {
    heap.QuitaDeLista(pebbles[static_cast<std::size_t>(which)], heap.inicio);
    delete pebbles[static_cast<std::size_t>(which)];
  }
  EXPECT_THAT(heap.Forward(), ElementsAre(1, 3));
  EXPECT_THAT(heap.Backward(), ElementsAre(3, 1));
  EXPECT_EQ(heap.cantidad, 2U);
}

TEST(SetEnArbol, TheStartOfTheRootGoesUpwardWhenItsCellLosesTheLastElement) {
  Heap root;
  root.CreaHijos();
  const auto above = root.Fill(1);
  const auto below = root.hijos[2].Fill(1);
  root.inicio = below[0];
  root.hijos[2].QuitaDeLista(below[0], root.inicio);
  delete below[0];
  EXPECT_EQ(root.inicio, above[0]);
  delete[] root.hijos;
}

TEST(SetEnArbol, ACellThatIsAboutToCloseLeavesTheStartToTheNearestOpenOneAbove) {
  Heap root;
  root.CreaHijos();
  Heap& closed = root.hijos[1];
  closed.CreaHijos();
  const auto top = root.Fill(1), middle = closed.Fill(1), bottom = closed.hijos[3].Fill(1);
  root.inicio = bottom[0];
  closed.cerrado = true;
  closed.hijos[3].SueltaInicio(root.inicio);
  EXPECT_EQ(root.inicio, top[0]) << "not the one of the closed cell between";
  EXPECT_EQ(closed.hijos[3].inicio, nullptr);
  delete[] closed.hijos;
  delete[] root.hijos;
}

TEST(SetEnArbol, EveryElementIsPartedFromItsNeighboursOnce) {
  for (const int count : {0, 1, 2, 7}) {
    Heap heap;
    const auto pebbles = heap.Fill(count);
    heap.SueltaVecinosDeLista();
    for (Pebble const* p : pebbles) EXPECT_EQ(p->partings, 1) << p->number << " of " << count;
  }
}

TEST(SetEnArbol, TheSearchGoesBothWaysFromTheOneTouchedLastTheNextOnesFirst) {
  Heap heap;
  heap.Fill(5);
  heap.actual = heap.primero->Sig()->Sig();
  std::vector<int> asked;
  const auto ask = [&asked](Pebble const* p) {
    asked.push_back(p->number);
    return false;
  };
  EXPECT_EQ(heap.BuscaDesdeActual(0, ask), nullptr);
  EXPECT_THAT(asked, ElementsAre(2, 3, 1, 4, 0));
  asked.clear();
  heap.actual = nullptr;
  heap.centro.x = 10;
  static_cast<void>(heap.BuscaDesdeActual(9, ask));
  EXPECT_THAT(asked, ElementsAre(0, 1, 2, 3, 4)) << "left of the centre from the first";
  asked.clear();
  static_cast<void>(heap.BuscaDesdeActual(10, ask));
  EXPECT_THAT(asked, ElementsAre(4, 3, 2, 1, 0));
}

TEST(SetEnArbol, TheLimitsOfABoxInDoublesLieWhereItsRoundedCornersCrossTheCentre) {
  for (const int centre : {-3, -2, 0, 1, 2, 1'000'001}) {
    const Heap::CCorte cut = Heap::CCorte::En(centre);
    EXPECT_LT(std::nearbyint(cut.bajo), centre);
    EXPECT_GE(std::nearbyint(std::nextafter(cut.bajo, HUGE_VAL)), centre);
    EXPECT_GT(std::nearbyint(cut.alto), centre);
    EXPECT_LE(std::nearbyint(std::nextafter(cut.alto, -HUGE_VAL)), centre);
  }
}

TEST(DeReserva, WhatDerivesFromAnElementAndIsLargerComesFromTheUsualHeap) {
  struct Boulder : Pebble {
    using Pebble::Pebble;
    double weight[40] = {};
  };
  auto* boulder = new Boulder(1);
  auto* pebble = new Pebble(2);
  boulder->weight[39] = 1;
  delete boulder;  // a sanitizer would see a slot of the wrong pool
  delete pebble;
}

}  // namespace
}  // namespace Meseta47
