// Closing sets, and emptying them into a file or a model.
#include <gmock/gmock.h>
#include <tuple>

#include "model/drawing/CDibujo.h"
#include "model/terrain/CTIN.h"
#include "model/threads/Codigos.h"
#include "planar/CSetTriangulos2D.h"
#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"
#include "support/SetScene.h"

namespace Meseta47 {
namespace {

using test::At;
using test::Box;
using test::ListOf;
using test::Numbered;
using test::OpenOf;
using testing::ElementsAre;
using testing::IsEmpty;

using Numbers = std::tuple<int, int, int>;

class CSetTriangulos2DClosing : public test::SetScene {};

TEST_F(CSetTriangulos2DClosing, ClosingCutsTheSubtreeOffFromTheLivingMesh) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* living = FileSmall(root, 499, 10);
  CTriangulo2D* closed = FileSmall(root, 10, 10);
  CTriangulo2D* other = FileSmall(root, 30, 10);
  closed->SetVecino12(living);
  living->SetVecino31(closed);
  closed->SetVecino23(other);
  other->SetVecino12(closed);
  EXPECT_EQ(root.hijos[2].QuitaTrianguloActual(), 2U);
  EXPECT_TRUE(root.hijos[2].cerrado);
  EXPECT_EQ(living->LadosLimite(), 3);
  EXPECT_EQ(closed->LadosLimite(), 3);
  EXPECT_EQ(other->LadosLimite(), 3);
  EXPECT_THAT(OpenOf(root), ElementsAre(living)) << "its triangles leave the open list";
  EXPECT_EQ(root.hijos[2].actual, nullptr);
  EXPECT_EQ(root.hijos[2].inicio, nullptr);
  EXPECT_THAT(ListOf(root.hijos[2]), ElementsAre(closed, other)) << "they wait for the worker";
}

TEST_F(CSetTriangulos2DClosing, ClosingClosesTheChildren) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 499, 10);
  FileSmall(root, 10, 10);
  FileSmall(root, 600, 600);
  EXPECT_EQ(root.QuitaTrianguloActual(), 3U);
  for (unsigned i = 0; i < 4; ++i) EXPECT_TRUE(root.hijos[i].cerrado);
  EXPECT_THAT(root.Abiertos(), IsEmpty());
  EXPECT_EQ(root.inicio, nullptr);
}

TEST_F(CSetTriangulos2DClosing, ASetIsClosedOnce) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  EXPECT_EQ(root.hijos[2].QuitaTrianguloActual(), 1U);
  CTriangulo2D other = Small(30, 30);
  t->SetVecino12(&other);
  EXPECT_EQ(root.hijos[2].QuitaTrianguloActual(), 0U);
  EXPECT_EQ(t->GetVecino12(), &other) << "a second closing touches nothing";
  t->SetVecino12(nullptr);
}

TEST_F(CSetTriangulos2DClosing, AStartThatIsClosedAwayIsReplacedByTheCursorOfAnAncestor) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CSetTriangulos2D& child = root.hijos[2];
  child.EstableceDivisiones(child.maximas, true);
  CTriangulo2D* inRoot = FileSmall(root, 499, 10);
  CTriangulo2D* inChild = FileSmall(root, 249, 10);
  CTriangulo2D* inGrandchild = FileSmall(root, 10, 10);
  root.inicio = inGrandchild;
  child.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, inChild);
  child.QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, inRoot);
  root.QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, nullptr);
}

TEST_F(CSetTriangulos2DClosing, WithoutAnAncestorsCursorTheStartIsLost) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  FileSmall(root, 600, 10);
  root.inicio = t;
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, nullptr) << "a sibling is not asked";
}

TEST_F(CSetTriangulos2DClosing, AStartInAnotherSetStays) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  CTriangulo2D* elsewhere = FileSmall(root, 600, 10);
  root.inicio = elsewhere;
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, elsewhere);
}

// --- into a file

class CSetTriangulos2DSpill : public CSetTriangulos2DClosing {
 protected:
  /// The records that a set writes.
  std::vector<Numbers> Saved(CSetTriangulos2D& set) const {
    CFile file(folder.Path("spill"), CFile::modeCreate | CFile::modeReadWrite);
    EXPECT_TRUE(set.Salva(&file));
    EXPECT_TRUE(file.Close());
    const std::string bytes = BytesOf(folder.Path("spill"));
    EXPECT_EQ(bytes.size() % 12, 0U);
    std::vector<Numbers> records;
    const auto at = [&bytes](std::size_t i) {
      std::uint32_t value = 0;
      for (std::size_t b = 4; b-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i + b]);
      return static_cast<int>(value);
    };
    for (std::size_t i = 0; i < bytes.size(); i += 12) records.emplace_back(at(i), at(i + 4), at(i + 8));
    return records;
  }

  ScratchFolder folder;
};

/// A child set that is open, with a triangle that has a living neighbour elsewhere.
class AnOpenSet : public CSetTriangulos2DSpill {
 protected:
  AnOpenSet() {
    root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
    living = FileSmall(root, 499, 10);
    inside = FileSmall(root, 10, 10);
    inside->SetVecino12(living);
    living->SetVecino31(inside);
    root.inicio = inside;
  }
  void ExpectNothingPointsInside() const {
    EXPECT_EQ(living->LadosLimite(), 3);
    EXPECT_THAT(OpenOf(root), ElementsAre(living));
    EXPECT_EQ(root.inicio, living);
    EXPECT_EQ(root.hijos[2].cantidad, 0U);
    EXPECT_FALSE(root.hijos[2].cerrado);
  }
  CTriangulo2D *living = nullptr, *inside = nullptr;
};

TEST_F(AnOpenSet, IsCutOffFromTheLivingMeshBeforeItIsWritten) {
  EXPECT_THAT(Saved(root.hijos[2]), ElementsAre(Numbers(4, 5, 6)));
  ExpectNothingPointsInside();
}

TEST_F(AnOpenSet, IsCutOffFromTheLivingMeshBeforeItIsContoured) {
  CDibujo<int> contours;
  root.hijos[2].Curva(contours, 10, 1e9);
  ExpectNothingPointsInside();
}

TEST_F(AnOpenSet, IsCutOffFromTheLivingMeshBeforeItIsCleared) {
  root.hijos[2].clear();
  ExpectNothingPointsInside();
}

TEST_F(AnOpenSet, IsCutOffWithItsChildren) {
  root.hijos[2].EstableceDivisiones(root.hijos[2].maximas, true);
  CTriangulo2D* deep = FileSmall(root, 30, 30);
  deep->SetVecino12(living);
  living->SetVecino12(deep);
  EXPECT_THAT(Saved(root.hijos[2]), ElementsAre(Numbers(4, 5, 6), Numbers(7, 8, 9)));
  ExpectNothingPointsInside();
}

TEST_F(CSetTriangulos2DSpill, TheOwnListComesFirstThenTheChildrenInOrder) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 600, 10);   // 1 2 3, child 3
  FileSmall(root, 10, 10);    // 4 5 6, child 2
  FileSmall(root, 499, 10);   // 7 8 9, own
  FileSmall(root, 10, 600);   // 10 11 12, child 0
  FileSmall(root, 600, 600);  // 13 14 15, child 1
  FileSmall(root, 20, 600);   // 16 17 18, child 0
  FileSmall(root, 10, 499);   // 19 20 21, own
  root.QuitaTrianguloActual();
  EXPECT_THAT(Saved(root), ElementsAre(Numbers(7, 8, 9), Numbers(19, 20, 21), Numbers(10, 11, 12), Numbers(16, 17, 18),
                                       Numbers(13, 14, 15), Numbers(4, 5, 6), Numbers(1, 2, 3)));
}

TEST_F(CSetTriangulos2DSpill, NumbersStandInTheTrianglesOwnOrderWithItsSigns) {
  auto p = Numbered({{0, 0}, {0, 10}, {10, 0}});
  p[0].num = -1;
  p[1].num = 2'000'000'000;
  root.Inserta(CTriangulo2D(&p[2], &p[0], &p[1]));
  EXPECT_THAT(Saved(root), ElementsAre(Numbers(3, -1, 2'000'000'000)));
}

TEST_F(CSetTriangulos2DSpill, AMissingVertexIsWrittenAsZero) {
  FileSmall(root, 10, 10)->SetPunto3(nullptr);
  EXPECT_THAT(Saved(root), ElementsAre(Numbers(1, 2, 0)));
}

TEST_F(CSetTriangulos2DSpill, NothingIsLeftAndASecondTimeWritesNothing) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  FileSmall(root, 499, 10);
  root.QuitaTrianguloActual();
  EXPECT_EQ(Saved(root).size(), 2U);
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(root.primero, nullptr);
  EXPECT_EQ(root.ultimo, nullptr);
  EXPECT_EQ(root.cantidad, 0U);
  EXPECT_TRUE(root.cerrado);
  EXPECT_THAT(Saved(root), IsEmpty());
}

TEST_F(CSetTriangulos2DSpill, ARefusalOfTheDiskIsToldAndEverythingIsFreedAllTheSame) {
  FaultGuard guard;
  CFile file(folder.Path("spill"), CFile::modeCreate | CFile::modeReadWrite);
  guard.Refuse(EOperacion::Escribe);
  CSetTriangulos2D big(12);
  const CTriangulo2D t = Small(10, 10);
  for (int i = 0; i < 100'000; ++i) big.InsertaOrdenado(new CTriangulo2D(t), CMaximas<int>(), false);
  EXPECT_FALSE(big.Salva(&file));
  EXPECT_EQ(big.cantidad, 0U);
  EXPECT_EQ(big.primero, nullptr);
}

// --- into a model

TEST_F(CSetTriangulos2DClosing, ASetEmptiesIntoAModelWithoutFrameTrianglesAndLongOnes) {
  CTIN tin(0, 0, CDataSemilla());
  CSetPuntosMdt points(0, 0);
  for (At const& place : {At{0, 0}, At{0, 10}, At{10, 0}, At{40, 0}}) {
    CCoor3D<int> p(place.x, place.y, place.z, static_cast<int>(points.size()) + 1);
    points.push_back(CPuntoTIN(p), true);
  }
  tin.SetPuntosMdt(points);
  auto p = Numbered({{0, 0}, {0, 10}, {10, 0}, {40, 0}});
  CCoor3D<int> corner(-50, -50, 0, -1);
  root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), true);
  const CTriangulo2D kept(&p[2], &p[0], &p[1]), tooLong(&p[2], &p[1], &p[3]), atFrame(&p[0], &p[2], &corner);
  for (CTriangulo2D const& t : {kept, tooLong, atFrame}) root.Inserta(t);
  root.RellenaMDT(tin, 20, nullptr);
  EXPECT_EQ(root.Cantidad(), 0U);
  ASSERT_EQ(tin.Sort(nullptr, 0, false), kHecho);
  ASSERT_EQ(tin.Cantidad(), 1U);
  EXPECT_EQ(tin.Vertices(0), (Terna{0, 1, 2})) << "canonical: the smallest vertex first";
  root.clear();
}

TEST_F(CSetTriangulos2DClosing, ASideOfExactlyTheLimitGoesIntoTheModel) {
  CTIN tin(0, 0, CDataSemilla());
  CSetPuntosMdt points(0, 0);
  auto p = Numbered({{0, 0}, {0, 10}, {10, 0}});
  for (CCoor3D<int> const& q : p) points.push_back(CPuntoTIN(q), true);
  tin.SetPuntosMdt(points);
  p = Numbered({{0, 0}, {0, 6}, {8, 0}});  // 6, 8 and 10
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[2]));
  root.RellenaMDT(tin, 9, nullptr);
  EXPECT_EQ(tin.Cantidad(), 0U);
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[2]));
  root.RellenaMDT(tin, 10, nullptr);
  EXPECT_EQ(tin.Cantidad(), 1U);
  root.clear();
}

}  // namespace
}  // namespace Meseta47
