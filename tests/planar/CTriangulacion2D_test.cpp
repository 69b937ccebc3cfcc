// The object itself: life, levels of messages, what a copy shares, and the check of a new triangle.
#include <gmock/gmock.h>
#include <system_error>

#include "planar/PhaseScenes.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using support::Point;
using test::DrawingAt;
using test::DrawingOf;
using test::ListeningApp;
using test::OpenTriangulation;
using test::QuietApp;
using test::Scatter;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

CNivelMensajes Level(int value) { return static_cast<CNivelMensajes>(value); }

TEST(CTriangulacion2D, ANewObjectReportsAtTheNormalLevelAndHasCountedNothing) {
  const OpenTriangulation t;
  EXPECT_EQ(t.Mensajes(), 3);
  EXPECT_EQ(t.cantidadPuntos, 0U);
  EXPECT_EQ(t.duplicados, 0U);
  EXPECT_EQ(t.reservado, 0);
  EXPECT_EQ(t.paramCurvaB, 0);
  EXPECT_EQ(t.paramPicoA, 0);
  EXPECT_EQ(t.paramPicoB, 0);
  EXPECT_FALSE(t.ficheroTemporal.EstaAbierto());
  EXPECT_TRUE(t.maximas.EstanVacias(true));
}

TEST(CTriangulacion2D, TheFirstArgumentSelectsNothingAndTheOthersAreCopied) {
  CDataTriangulacion data;
  data.zMin = 7;
  const CDataSemilla seed(3, 1, 2, 3);
  for (const int first : {0, 1, -5}) {
    const CTriangulacion2D t(first, seed, data, 9);
    EXPECT_EQ(t.Data().zMin, 7);
    EXPECT_EQ(t.Semilla().precision, 3);
    EXPECT_EQ(t.Semilla().origen[1], 2);
    EXPECT_EQ(t.Precision(), 1'000);
  }
  data.zMin = 8;
  EXPECT_EQ(CTriangulacion2D(0, seed, 9).Data().zMin, CDataTriangulacion().zMin);
}

TEST(CTriangulacion2D, PrecisionIsTenToTheExponentWhateverItsSign) {
  EXPECT_EQ(CTriangulacion2D(0, CDataSemilla(0, 0, 0, 0), 1).Precision(), 1);
  EXPECT_DOUBLE_EQ(CTriangulacion2D(0, CDataSemilla(-1, 0, 0, 0), 1).Precision(), 0.1);
}

TEST(CTriangulacion2D, ALevelOfFourOrMoreIsNone) {
  OpenTriangulation t;
  EXPECT_EQ(t.Mensajes(Level(2)), 3);
  EXPECT_EQ(t.Mensajes(Level(7)), 2);
  EXPECT_EQ(t.Mensajes(), 0);
  EXPECT_EQ(t.Mensajes(Level(3)), 0);
  EXPECT_EQ(t.Mensajes(Level(4)), 3);
  EXPECT_EQ(t.Mensajes(), 0);
}

TEST(CTriangulacion2D, AtLevelNoneNoProgressCallOfAnyKindIsMadeAndNothingCancels) {
  ListeningApp app;
  app.cancelAt = 1;
  CDibujo<int> drawing = DrawingOf(Scatter(50));
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  t.Mensajes(Level(0));
  EXPECT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  CDibujo<int> added = DrawingAt({{5, 5, 0}});
  EXPECT_EQ(t.RunActualiza(drawing, model, 0, added, 1, nullptr, false, nullptr), kHecho);
  EXPECT_EQ(t.Run(model, nullptr), kHecho);
  EXPECT_THAT(app.steps, IsEmpty());
  EXPECT_THAT(app.phases, IsEmpty());
  EXPECT_THAT(app.closed, IsEmpty());
  EXPECT_THAT(app.messages, IsEmpty());
}

TEST(CTriangulacion2D, ClearLeavesTheDuplicatesTheSeedsAndTheDivisions) {
  const QuietApp app;
  OpenTriangulation t;
  CDibujo<int> drawing = DrawingOf(Scatter(300));
  ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
  t.duplicados = 5;
  t.reservado = 6;
  t.Mensajes(Level(1));
  const std::size_t seeds = t.primerosPuntos.size();
  t.Clear();
  EXPECT_EQ(t.duplicados, 5U);
  EXPECT_EQ(t.cantidadPuntos, 0U);
  EXPECT_EQ(t.reservado, 0);
  EXPECT_EQ(t.Mensajes(), 3);
  EXPECT_TRUE(t.maximas.EstanVacias(true));
  EXPECT_THAT(t.primerosPuntos, SizeIs(seeds));
  EXPECT_NE(t.divisiones.hijos, nullptr);
}

TEST(CTriangulacion2D, ACopySharesTheDivisionsAndTheFiguresAndStartsEmptyOtherwise) {
  const QuietApp app;
  CDataTriangulacion data;
  data.pendienteMax = 30;
  OpenTriangulation original(data, CDataSemilla(3, 0, 0, 0), 7);
  CDibujo<int> drawing = DrawingOf(Scatter(300));
  ASSERT_EQ(original.Link(drawing), kHecho);
  original.Mensajes(Level(2));
  original.duplicados = 4;
  original.reservado = 5;
  original.paramCurvaA = 6;
  original.paramCurvaB = 7;
  original.paramPicoA = 8;
  original.paramPicoB = 9.5;

  OpenTriangulation copy(original, 11);
  EXPECT_EQ(copy.divisiones.hijos, original.divisiones.hijos);
  EXPECT_EQ(copy.divisiones.centro, original.divisiones.centro);
  EXPECT_EQ(copy.Mensajes(), 2);
  EXPECT_EQ(copy.cantidadPuntos, 300U);
  EXPECT_EQ(copy.duplicados, 4U);
  EXPECT_EQ(copy.reservado, 5);
  EXPECT_EQ(copy.paramCurvaA, 0);
  EXPECT_EQ(copy.paramCurvaB, 7);
  EXPECT_EQ(copy.paramPicoA, 8);
  EXPECT_EQ(copy.paramPicoB, 9.5);
  EXPECT_EQ(copy.Precision(), 1'000);
  EXPECT_EQ(copy.Data().pendienteMax, 30);
  EXPECT_EQ(test::PlanOf(copy.maximas), test::PlanOf(original.maximas));
  EXPECT_EQ(copy.identificador, 11U);
  EXPECT_EQ(copy.setRaiz.Cantidad(), 0U);
  EXPECT_THAT(copy.primerosPuntos, IsEmpty());
  EXPECT_THAT(copy.setsCerrados.Entradas(), IsEmpty());
  EXPECT_FALSE(copy.ficheroTemporal.EstaAbierto());
  EXPECT_FALSE(copy.hiloSalva.EstaEnMarcha());
  original.BorraFicheroTemporal();
}

TEST(CTriangulacion2D, ARefusedCriticalSectionIsAnErrorOfTheSystem) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaSeccion);
  EXPECT_THROW(OpenTriangulation(), std::system_error);
}

TEST(CTriangulacion2D, ASecondRunOfOneObjectDoesWhatANewOneDoes) {
  const QuietApp app;
  CDibujo<int> first = DrawingOf(Scatter(700)), second = DrawingOf(Scatter(250));
  CTIN again(0, 0, CDataSemilla()), fresh(0, 0, CDataSemilla());
  OpenTriangulation t, other;
  ASSERT_EQ(t.Run(first, again, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  ASSERT_EQ(t.Run(second, again, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  ASSERT_EQ(other.Run(second, fresh, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  EXPECT_EQ(test::Described(again), test::Described(fresh));
  EXPECT_EQ(t.Resumen().enlazados, other.Resumen().enlazados);
  EXPECT_EQ(t.Resumen().examinados, other.Resumen().examinados);
}

class CompruebaTriangulo : public testing::Test {
 protected:
  CompruebaTriangulo() {
    t.EstableceDivisiones(400, test::Box(0, 0, 1'000, 1'000));
    for (CCoor3D<int>* p : {&a, &b, &c}) List(*p);
  }
  /// The listed copy of a point, in the leaf that it falls in.
  CCoor3DIntLista* List(CCoor3D<int> const& p) { return t.divisiones.Hijo(p)->lista.Inserta(p); }

  ListeningApp app;
  OpenTriangulation t;
  CCoor3D<int> a{0, 0, 0, 1}, b{0, 100, 0, 2}, c{100, 0, 0, 3};
};

TEST_F(CompruebaTriangulo, WithoutListedPointsEveryTriangleIsDelaunay) {
  t.divisiones.clear();
  CTriangulo2D triangle(&a, &b, &c);
  EXPECT_TRUE(t.CompruebaTrianguloNuevo(triangle, nullptr));
}

TEST_F(CompruebaTriangulo, APointInTheCircleIsShownWithTheVerticesNumbers) {
  List(CCoor3D<int>(40, 30, 0, 4));
  CTriangulo2D triangle(&a, &b, &c);
  EXPECT_FALSE(t.CompruebaTrianguloNuevo(triangle, nullptr));
  ASSERT_THAT(app.boxes, SizeIs(1));
  EXPECT_THAT(app.boxes[0].Utf8(), testing::EndsWith(" 1 2 3\n"));
  EXPECT_THAT(app.boxes[0].Utf8(), testing::StartsWith("error punto dentro "));
}

TEST_F(CompruebaTriangulo, AMissingVertexIsShownAsZero) {
  List(CCoor3D<int>(40, 30, 0, 4));
  CTriangulo2D triangle(&a, &b, &c);
  triangle.SetPuntos(&a, &b, nullptr, false);  // the circle stays
  EXPECT_FALSE(t.CompruebaTrianguloNuevo(triangle, nullptr));
  ASSERT_THAT(app.boxes, SizeIs(1));
  EXPECT_THAT(app.boxes[0].Utf8(), testing::EndsWith(" 1 2 0\n"));
}

TEST_F(CompruebaTriangulo, TheListEndsAtTheNewPointItself) {
  t.divisiones.clear();
  CCoor3DIntLista* p = List(CCoor3D<int>(600, 30, 0, 4));  // the last leaf to be walked
  List(CCoor3D<int>(40, 30, 0, 5));
  CTriangulo2D triangle(&a, &b, &c);
  EXPECT_FALSE(t.CompruebaTrianguloNuevo(triangle, p));
  t.divisiones.clear();
  p = List(CCoor3D<int>(40, 600, 0, 4));  // the first one
  List(CCoor3D<int>(40, 30, 0, 5));
  EXPECT_TRUE(t.CompruebaTrianguloNuevo(triangle, p)) << "points listed after the new one are not looked at";
}

TEST_F(CompruebaTriangulo, ListedVerticesOfTheTriangleAreSkipped) {
  t.divisiones.clear();
  CCoor3DIntLista *la = List(a), *lb = List(b), *lc = List(c);
  CTriangulo2D triangle(la, lb, lc);
  EXPECT_TRUE(t.CompruebaTrianguloNuevo(triangle, nullptr));
  EXPECT_THAT(app.boxes, IsEmpty());
}

TEST(CTriangulacion2D, WalkingTheDivisionsChangesNothing) {
  const QuietApp app;
  OpenTriangulation t;
  CDibujo<int> drawing = DrawingOf(Scatter(900));
  ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
  const unsigned levels = t.divisiones.CantidadNiveles();
  t.ImprimeLista(t.divisiones);
  EXPECT_EQ(t.divisiones.CantidadNiveles(), levels);
  EXPECT_EQ(t.cantidadPuntos, 900U);
}

}  // namespace
}  // namespace Meseta47
