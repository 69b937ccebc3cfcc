// The runs: a mesh that is kept, and a surface of faces without long edges.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "model/terrain/CModeloDigital.h"
#include "support/FaultGuard.h"
#include "support/SpaceFamilies.h"
#include "support/SpaceRun.h"

using namespace Meseta47;
using namespace Meseta47::support;
using namespace Meseta47::test;
using testing::AnyOf;
using testing::ElementsAre;

namespace {

const std::vector<Point> kCube{{0, 0, 0},   {100, 0, 0},   {0, 100, 0},   {100, 100, 0},
                               {0, 0, 100}, {100, 0, 100}, {0, 100, 100}, {100, 100, 100}};

/// Two cubes so far apart that every face between them has a long side, and that the frame stands far from both.
std::vector<Point> TwoCubes() {
  std::vector<Point> points = kCube;
  for (Point const& p : kCube) points.push_back({p.x + 1000, p.y + 3, p.z + 7});
  return points;
}

std::vector<Point> Cloud(std::size_t n) { return alongACurve(spaceFamily(SpaceFamily::Random, n, 9)); }

std::vector<Point> PlacesOf(CTIN const& tin) {
  std::vector<Point> places;
  for (CPuntoTIN const& p : tin.puntos) places.push_back({p.x, p.y, p.z});
  return places;
}

TEST(Run3D, AKeptMeshStandsOnPointsOfItsOwnInAscendingOrder) {
  const QuietApp app;
  for (const bool empty : {false, true}) {
    CDibujo<int> drawing = DrawingOf(Cloud(800));
    OpenTriangulation3D t;
    ASSERT_EQ(t.Run(drawing, empty), kHecho);
    EXPECT_EQ(drawing.Cantidad(), empty ? 0U : 1U);
    drawing.Clear();
    ASSERT_EQ(t.puntos.size(), 800U);
    EXPECT_EQ(t.CantidadPuntos(), 800U);
    SpaceMesh mesh;
    for (unsigned i = 0; i < 800; ++i) {
      CPuntoTIN const& p = *t.Punto(i);
      EXPECT_EQ(p.num, static_cast<int>(i) + 1);
      if (i != 0) {
        EXPECT_TRUE(*t.Punto(i - 1) < p);
      }
      mesh.points.push_back({p.x, p.y, p.z});
    }
    for (unsigned i = 0; i < 8; ++i) mesh.corners.push_back({t.Esquina(i).x, t.Esquina(i).y, t.Esquina(i).z});
    t.RecorreMalla([&](CTriangulacion3D::CCuatro const& four) { mesh.tetrahedra.push_back(four); });
    EXPECT_EQ(cubeTilingFaults(mesh, inspect(mesh)), "");
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    t.ActualizaCantidades();
    EXPECT_EQ(t.cantidades[0], mesh.tetrahedra.size());
  }
}

TEST(Run3D, OfTwoPointsAtOnePlaceBothAreInTheSetAndTheFirstHoldsTetrahedra) {
  const QuietApp app;
  std::vector<Point> points = Cloud(100);
  points.push_back(points[40]);
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D t;
  ASSERT_EQ(t.Run(drawing, false), kHecho);
  EXPECT_EQ(t.puntos.size(), 101U);
  std::set<std::int32_t> used;
  t.RecorreMalla([&](CTriangulacion3D::CCuatro const& four) { used.insert(four.begin(), four.end()); });
  EXPECT_EQ(used.size(), 100U + 8);
  int twins = 0;
  for (unsigned i = 1; i < 101; ++i) {
    if (!(*t.Punto(i) == *t.Punto(i - 1))) continue;
    ++twins;
    EXPECT_EQ(t.Punto(i)->num, t.Punto(i - 1)->num + 1);
    EXPECT_TRUE(used.contains(t.Punto(i - 1)->num));
    EXPECT_FALSE(used.contains(t.Punto(i)->num));
  }
  EXPECT_EQ(twins, 1);
}

TEST(Run3D, ASurfaceIsTheHullWhereNoSideIsTooLongAndTheModelKnowsItsPoints) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(kCube);
  OpenTriangulation3D t;
  CTIN tin(0, 0, drawing.semilla);
  std::vector<CPosicionEntidad> positions;
  ASSERT_EQ(t.Run(drawing, tin, 0, false, &positions, false), kHecho);
  EXPECT_EQ(tin.Cantidad(), 12U);
  EXPECT_EQ(tin.estado, 1);
  EXPECT_TRUE(tin.EstaEnlazado());
  EXPECT_EQ(tin.longitudMaxima, 0);
  EXPECT_EQ(t.longitudLimite2, 2147483647.0);
  std::vector<Point> sorted = kCube;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(PlacesOf(tin), sorted);
  ASSERT_EQ(positions.size(), 8U);
  for (unsigned i = 0; i < 8; ++i) {
    EXPECT_EQ(positions[i].entidad, 0);
    EXPECT_EQ(*drawing[0].PunteroAPunto(positions[i].punto), *tin.Punto(i));
  }
  EXPECT_EQ(t.CantidadTetraedros(), 0U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_EQ(drawing.Cantidad(), 1U);
}

TEST(Run3D, FacesWithALongSideAreLeftOutAndThoseInsideUnlessAllAreAskedFor) {
  const QuietApp app;
  const std::vector<Point> points = TwoCubes();
  for (const bool all : {false, true}) {
    CDibujo<int> drawing = DrawingOf(points);
    OpenTriangulation3D t;
    CTIN tin(0, 0, drawing.semilla);
    ASSERT_EQ(t.Run(drawing, tin, 2.0, true, nullptr, all), kHecho);  // 200 units: beyond the cubes' diagonals
    EXPECT_EQ(t.longitudLimite2, 40'000.0);
    EXPECT_EQ(tin.longitudMaxima, 200);
    EXPECT_EQ(drawing.Cantidad(), 0U);
    if (all) {
      EXPECT_GT(tin.Cantidad(), 24U);
    } else {
      EXPECT_EQ(tin.Cantidad(), 24U);
    }
    for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) {
      std::set<bool> right;
      for (const std::uint32_t v : tin.Vertices(i)) right.insert(tin.Punto(v)->x > 500);
      EXPECT_EQ(right.size(), 1U);
    }
  }
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D t;
  CTIN tin(0, 0, drawing.semilla);
  ASSERT_EQ(t.Run(drawing, tin, 0.5, false, nullptr, false), kHecho);  // below every side
  EXPECT_EQ(tin.Cantidad(), 0U);
}

TEST(Run3D, HoweverLongSidesMayBeTheFrameIsBeyondAndTheHullIsLeft) {
  const QuietApp app;
  for (const double longest : {1e5, 1e9, 1e15, 1e300}) {
    CDibujo<int> drawing = DrawingOf(kCube);
    OpenTriangulation3D t;
    CTIN tin(0, 0, drawing.semilla);
    ASSERT_EQ(t.Run(drawing, tin, longest, false, nullptr, false), kHecho);
    EXPECT_EQ(tin.Cantidad(), 12U) << longest;
  }
}

TEST(Run3D, PositionsTellOfEachPointOfTheModelWhereItCameFrom) {
  const QuietApp app;
  const std::vector<Point> points = Cloud(300);
  CDibujo<int> drawing{CDataSemilla()};
  for (const auto& [from, to] : {std::pair{0, 120}, {120, 121}, {121, 300}}) {
    CSetPuntos<int> set(L"part");
    for (int i = from; i < to; ++i) {
      Point const& p = points[static_cast<std::size_t>(i)];
      set.Inserta(CCoor3D<int>(p.x, p.y, p.z, 0), tipoAero3{.rojo = static_cast<std::uint8_t>(i)});
    }
    drawing.Inserta(std::move(set));
  }
  OpenTriangulation3D t;
  CTIN tin(0, 0, drawing.semilla);
  std::vector<CPosicionEntidad> positions;
  ASSERT_EQ(t.Run(drawing, tin, 0, false, &positions, false), kHecho);
  ASSERT_EQ(positions.size(), 300U);
  std::set<std::pair<int, int>> all;
  for (unsigned i = 0; i < 300; ++i) {
    CLinea<int> const& entity = drawing[static_cast<unsigned>(positions[i].entidad)];
    EXPECT_EQ(*entity.PunteroAPunto(positions[i].punto), *tin.Punto(i));
    EXPECT_EQ(CSetPuntos<int>::De(entity)->Info(static_cast<unsigned>(positions[i].punto)), tin.Punto(i)->aero);
    all.emplace(positions[i].entidad, positions[i].punto);
  }
  EXPECT_EQ(all.size(), 300U);
}

/// A kept mesh, and the surfaces of it.
class KeptMesh {
 public:
  explicit KeptMesh(std::vector<Point> const& points) {
    CDibujo<int> drawing = DrawingOf(points);
    EXPECT_EQ(t.Run(drawing, true), kHecho);
  }
  CTIN surface(int limit) {
    CTIN tin(0, 0, t.Semilla());
    EXPECT_EQ(t.GenerarMDT(tin, limit), kHecho);
    EXPECT_EQ(tin.estado, 1);
    EXPECT_EQ(tin.puntos.size(), t.CantidadPuntos());
    return tin;
  }
  QuietApp app;
  OpenTriangulation3D t;
};

TEST(Run3D, OfAKeptMeshASurfaceHasEachSharedFaceOnce) { EXPECT_EQ(KeptMesh(TwoCubes()).surface(200).Cantidad(), 24U); }

TEST(Run3D, ALimitAboveEveryEdgeLeavesNoSurfaceOfAKeptMesh) {
  EXPECT_EQ(KeptMesh(TwoCubes()).surface(100'000).Cantidad(), 0U);  // those to the frame are short too: all is inside
}

TEST(Run3D, ALimitBelowEveryEdgeLeavesNoSurfaceOfAKeptMesh) {
  EXPECT_EQ(KeptMesh(TwoCubes()).surface(50).Cantidad(), 0U);
}

TEST(Run3D, AnEdgeOfTheVeryLimitIsLongInAKeptMesh) {
  KeptMesh mesh(TwoCubes());
  EXPECT_EQ(mesh.surface(141).Cantidad(), 0U);   // the diagonals of the sides have 141.4
  EXPECT_GT(mesh.surface(142).Cantidad(), 23U);  // and are short from there on
  KeptMesh straight({{0, 0, 0}, {30, 0, 0}, {0, 40, 0}, {0, 0, 900}});
  EXPECT_EQ(straight.surface(50).Cantidad(), 0U);  // the side of 3, 4 and 5
  EXPECT_EQ(straight.surface(51).Cantidad(), 1U);
}

TEST(Run3D, AFaceWithACornerOfTheFrameIsNoFaceOfAModel) {
  KeptMesh mesh(kCube);
  constexpr int kLimit = 150;
  int shortFaces = 0;
  mesh.t.RecorreMalla([&](CTriangulacion3D::CCuatro const& four) {
    if (four[0] > 0 || four[1] < 0) return;
    const CPuntoTIN corner = mesh.t.Esquina(static_cast<unsigned>(-1 - four[0]));
    CPuntoTIN const &a = *mesh.t.Punto(static_cast<unsigned>(four[1] - 1)),
                    &b = *mesh.t.Punto(static_cast<unsigned>(four[2] - 1));
    const bool isShort =
        corner.Distancia(a, 1) < kLimit && corner.Distancia(b, 1) < kLimit && a.Distancia(b, 1) < kLimit;
    shortFaces += isShort ? 1 : 0;
  });
  EXPECT_GT(shortFaces, 0);
  const CTIN tin = mesh.surface(kLimit);
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) {
    for (const std::uint32_t v : tin.Vertices(i)) EXPECT_LT(v, 8U);
  }
}

TEST(Run3D, ASurfaceOfAKeptMeshCanBeCancelledAndNothingIsExportedThen) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(TwoCubes());
  OpenTriangulation3D t;
  ASSERT_EQ(t.Run(drawing, false), kHecho);
  const CString ply = app.folder.Path() + L"/m.ply";
  for (const int at : {1, 2, 40}) {
    app.steps.clear();
    app.cancelAt = at;
    CTIN tin(0, 0, drawing.semilla);
    EXPECT_EQ(t.GenerarMDT(tin, 200), kCancelado) << at;
    app.steps.clear();
    app.closed.clear();
    EXPECT_EQ(t.Exportar(ply, CDataExportarMDT(FORMATO_PLY)), kCancelado);
    EXPECT_TRUE(app.closed.empty());
    EXPECT_EQ(BytesOf(ply), "");
  }
}

TEST(Run3D, ASurfaceIsExportedForTheLimitOfTheObject) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(TwoCubes());
  OpenTriangulation3D t;
  ASSERT_EQ(t.Run(drawing, false), kHecho);
  const CString mesh = app.folder.Path() + L"/m.tin3d", ply = app.folder.Path() + L"/m.ply",
                native = app.folder.Path() + L"/m.urd", xml = app.folder.Path() + L"/m.xml";
  ASSERT_EQ(t.Write(mesh, 1), kHecho);
  std::string bytes = BytesOf(mesh);
  const std::int32_t limit = 200;
  std::copy_n(reinterpret_cast<char const*>(&limit), sizeof limit, bytes.begin() + 40);
  {
    CFile file(mesh, CFile::modeWrite | CFile::modeCreate);
    ASSERT_TRUE(file.Write(bytes.data(), bytes.size()));
  }
  ASSERT_EQ(t.Read(mesh, false), kHecho);
  EXPECT_EQ(t.Exportar(ply, CDataExportarMDT(FORMATO_PLY)), kHecho);
  EXPECT_NE(BytesOf(ply).find("element face 24"), std::string::npos);
  EXPECT_EQ(t.Exportar(xml, CDataExportarMDT(FORMATO_LANDXML)), kHecho);
  EXPECT_NE(BytesOf(xml).find("LandXML"), std::string::npos);
  EXPECT_EQ(t.Exportar(native, CDataExportarMDT(FORMATO_NATIVO)), kHecho);
  CModeloDigital model(new CTIN(0, 0, CDataSemilla()));
  EXPECT_EQ(model.Read(native), kHecho);
  EXPECT_EQ(model.Tin().Cantidad(), 24U);
  EXPECT_EQ(t.Exportar(app.folder.Path() + L"/nowhere/m.ply", CDataExportarMDT(FORMATO_PLY)), kFicheroInaccesible);
  EXPECT_EQ(t.Exportar(ply, CDataExportarMDT(77)), kFicheroInconsistente);
}

TEST(Run3D, WithoutAChosenPointRunsAnswerTooFew) {
  const QuietApp app;
  CDibujo<int> none{CDataSemilla()};
  OpenTriangulation3D t;
  CTIN tin(0, 0, CDataSemilla());
  EXPECT_EQ(t.Run(none, true), kPocosPuntos);
  EXPECT_EQ(t.Run(none, tin, 5, true, nullptr, false), kPocosPuntos);
}

TEST(Run3D, PhasesAreAnnouncedAndClosedAndVerticesOnlyCountedInDetail) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(kCube);
  OpenTriangulation3D t;
  ASSERT_EQ(t.Run(drawing, false), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U, 19021U, 19029U));
  EXPECT_EQ(app.closed.size(), 1U);
  const std::size_t plain = app.steps.size();
  app.steps.clear();
  t.Mensajes(MENSAJES_DETALLE);
  ASSERT_EQ(t.Run(drawing, false), kHecho);
  EXPECT_EQ(app.steps.size(), plain + t.CantidadTetraedros());
  t.Mensajes(MENSAJES_NINGUNO);
  app.steps.clear();
  ASSERT_EQ(t.Run(drawing, false), kHecho);
  EXPECT_TRUE(app.steps.empty());
  CTIN tin(0, 0, drawing.semilla);
  t.Mensajes(MENSAJES_NORMALES);
  app.phases.clear();
  ASSERT_EQ(t.Run(drawing, tin, 9, false, nullptr, false), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U, 19021U, 19029U));
}

TEST(Run3D, HowFarTheFacesHaveComeIsToldByTheirPlaceInTheFile) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(kCube);
  OpenTriangulation3D t;
  CTIN tin(0, 0, drawing.semilla);
  ASSERT_EQ(t.Run(drawing, tin, 9, false, nullptr, false), kHecho);
  constexpr unsigned kFaces = 12, kRecord = 12;
  std::vector<unsigned long long> places, expected;
  for (auto const& step : app.steps) {
    if (step.total == kFaces * kRecord) places.push_back(step.value);
  }
  for (unsigned i = 0; i <= kFaces; ++i) expected.push_back(i * kRecord);
  EXPECT_EQ(places, expected);
}

TEST(Run3D, CancelledAtAnyStepASurfaceLeavesNoFile) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Cloud(600));
  OpenTriangulation3D t;
  CTIN tin(0, 0, drawing.semilla);
  ASSERT_EQ(t.Run(drawing, tin, 1500, false, nullptr, false), kHecho);
  const int steps = static_cast<int>(app.steps.size());
  ASSERT_GT(steps, 1200);
  for (int at = 1; at <= steps; at += at < 5 || at > steps - 8 ? 1 : 67) {
    app.steps.clear();
    app.cancelAt = at;
    const int code = t.Run(drawing, tin, 1500, false, nullptr, false);
    EXPECT_EQ(app.TemporaryFiles(), 0U) << at;
    if (static_cast<int>(app.steps.size()) < at) continue;  // waiting for another thread took fewer reports this time
    EXPECT_EQ(code, kCancelado) << at;
  }
}

TEST(Run3D, EveryRefusalOfTheSystemIsACodeAndLeavesNoFile) {
  const QuietApp app(2);
  CDibujo<int> drawing = DrawingOf(Cloud(1500));
  OpenTriangulation3D t;
  CTIN tin(0, 0, drawing.semilla);
  ASSERT_EQ(t.Run(drawing, tin, 1500, false, nullptr, false), kHecho);
  const std::uint64_t faces = tin.Cantidad();
  EXPECT_GT(faces, 500U);
  int failures = 0;
  for (const EOperacion operation : kEveryOperation) {
    if (operation == EOperacion::CreaSeccion) continue;  // the one refusal that is an exception
    for (int nth = 1; nth < 40; ++nth) {
      int code = 0;
      bool met = false;
      CTIN made(0, 0, drawing.semilla);
      {
        FaultGuard guard;
        guard.RefuseOnce(operation, nth);
        code = t.Run(drawing, made, 1500, false, nullptr, false);
        met = guard.Asked(operation) >= nth;
      }
      if (!met) break;
      if (code == kHecho) {
        EXPECT_EQ(made.Cantidad(), faces);
      } else {
        ++failures;
        EXPECT_THAT(code, AnyOf(kFicheroInaccesible, kFicheroInconsistente));
      }
      EXPECT_EQ(app.TemporaryFiles(), 0U);
    }
  }
  EXPECT_GE(failures, 5);
}

}  // namespace
