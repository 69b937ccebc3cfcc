// Points taken out of finished meshes: what is left is proved, and compared with the mesh made without them.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <set>

#include "support/FaultGuard.h"
#include "support/Random.h"
#include "support/SpaceFamilies.h"
#include "support/SpaceRun.h"

using namespace Meseta47;
using namespace Meseta47::support;
using namespace Meseta47::test;

namespace {

using Indices = std::vector<unsigned>;

/// A kept mesh of a cloud. Its points stand in ascending order, those of one place together.
class Kept {
 public:
  explicit Kept(std::vector<Point> const& points) {
    CDibujo<int> drawing = DrawingOf(points);
    EXPECT_EQ(t.Run(drawing, true), kHecho);
  }

  [[nodiscard]] unsigned count() const { return static_cast<unsigned>(t.puntos.size()); }
  [[nodiscard]] Point at(unsigned i) {
    CPuntoTIN const& p = *t.Punto(i);
    return {p.x, p.y, p.z};
  }
  /// Indices of the points that tetrahedra have, in random order.
  [[nodiscard]] Indices vertices(std::uint64_t seed) const {
    std::set<unsigned> used;
    t.RecorreMalla([&used](CTriangulacion3D::CCuatro const& four) {
      for (const std::int32_t n : four) {
        if (n > 0) used.insert(static_cast<unsigned>(n) - 1);
      }
    });
    Indices all(used.begin(), used.end());
    Random random(seed);
    random.shuffle(all);
    return all;
  }
  /// The mesh in terms of the points that are left, in their order.
  [[nodiscard]] SpaceMesh left() {
    SpaceMesh mesh;
    std::vector<std::int32_t> place(count() + 1, 0);
    for (unsigned i = 0; i < count(); ++i) {
      if (t.Punto(i)->num <= 0) continue;
      mesh.points.push_back(at(i));
      place[i + 1] = static_cast<std::int32_t>(mesh.points.size());
    }
    for (unsigned i = 0; i < 8; ++i) mesh.corners.push_back({t.Esquina(i).x, t.Esquina(i).y, t.Esquina(i).z});
    t.RecorreMalla([&](CTriangulacion3D::CCuatro const& four) {
      Tetrahedron named{};
      std::transform(four.begin(), four.end(), named.begin(),
                     [&](std::int32_t n) { return n > 0 ? place[static_cast<std::size_t>(n)] : n; });
      mesh.tetrahedra.push_back(named);
    });
    return mesh;
  }
  /// Everything that keeps it from being a Delaunay mesh of what is left, links included.
  [[nodiscard]] std::string faults() {
    const SpaceMesh mesh = left();
    std::string text = cubeTilingFaults(mesh, inspect(mesh));
    std::vector<CTetraedro*> all;
    t.setRaiz.RellenaVectorPunteros(all);
    int open = 0;
    for (CTetraedro const* each : all) {
      for (CTetraedro const* v :
           {each->GetVecino123(), each->GetVecino124(), each->GetVecino134(), each->GetVecino234()}) {
        open += v == nullptr ? 1 : 0;
        const auto back = v == nullptr || v->GetVecino123() == each || v->GetVecino124() == each ||
                          v->GetVecino134() == each || v->GetVecino234() == each;
        if (!back) text += "a neighbour does not point back\n";
      }
      if (each->Borrado()) text += "a mark is left\n";
    }
    if (open != 12) text += std::to_string(open) + " free faces, and not the frame's 12\n";
    return text;
  }
  /// Its tetrahedra by the places of their vertices, in whatever order.
  [[nodiscard]] std::set<std::vector<std::array<int, 3>>> shape() {
    std::set<std::vector<std::array<int, 3>>> all;
    const SpaceMesh mesh = left();
    for (Tetrahedron const& four : mesh.tetrahedra) {
      std::vector<std::array<int, 3>> places;
      for (const std::int32_t n : four) places.push_back({mesh.at(n).x, mesh.at(n).y, mesh.at(n).z});
      std::sort(places.begin(), places.end());
      all.insert(places);
    }
    return all;
  }

  OpenTriangulation3D t;
};

/// The mesh of the points that are left, grown in the same frame: two points far out keep it.
std::set<std::vector<std::array<int, 3>>> ShapeWithout(Kept& mesh) { return Kept(mesh.left().points).shape(); }

/// A cloud whose frame does not depend on what is taken out of it: its extents are kept by points that stay.
std::vector<Point> Framed(std::vector<Point> points) {
  constexpr int kFar = 1'100'003;
  points.insert(points.end(), {{-kFar, -kFar + 77, -kFar + 31}, {kFar, kFar - 13, kFar - 57}});
  return points;
}
bool IsFar(Point const& p) { return std::abs(p.x) > 1'100'000; }

/// Those that are not the two that keep the frame.
Indices Inner(Kept& mesh, std::uint64_t seed) {
  Indices all = mesh.vertices(seed);
  std::erase_if(all, [&](unsigned i) { return IsFar(mesh.at(i)); });
  return all;
}

TEST(BorraPunto, RandomSetsLeaveTheMeshThatTheOthersHaveAlone) {
  const QuietApp app;
  for (const std::size_t count : {std::size_t{1}, std::size_t{2}, std::size_t{100}, std::size_t{300}}) {
    SCOPED_TRACE(count);
    Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 3000, 5)));
    Indices out = Inner(mesh, count);
    out.resize(count);
    ASSERT_TRUE(mesh.t.BorraPunto(out));
    EXPECT_EQ(mesh.faults(), "");
    EXPECT_TRUE(mesh.shape() == ShapeWithout(mesh));
    EXPECT_EQ(mesh.t.CantidadPuntos(), 3002U);
    EXPECT_TRUE(mesh.t.EsModificadoPuntos());
    for (const unsigned i : out) EXPECT_EQ(mesh.t.Punto(i)->num, -static_cast<int>(i) - 1);
    EXPECT_EQ(app.TemporaryFiles(), 0U);
  }
}

TEST(BorraPunto, OneAfterTheOtherComesToTheSameAsAllAtOnce) {
  const QuietApp app;
  const std::vector<Point> points = Framed(spaceFamily(SpaceFamily::Random, 500, 6));
  Kept together(points), one(points);
  Indices out = Inner(together, 3);
  out.resize(60);
  for (const unsigned i : out) ASSERT_TRUE(one.t.BorraPunto(i));
  ASSERT_TRUE(together.t.BorraPunto(out));
  EXPECT_EQ(one.faults(), "");
  EXPECT_TRUE(one.shape() == together.shape());
}

TEST(BorraPunto, NeighboursTogetherAndAWholeClusterGo) {
  const QuietApp app;
  for (const int radius : {60'000, 200'000, 500'000}) {
    SCOPED_TRACE(radius);
    Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 2500, 7)));
    Indices out = Inner(mesh, 1);
    const Point middle = mesh.at(out[0]);
    std::erase_if(out, [&](unsigned i) {
      const Point p = mesh.at(i);
      return std::hypot(p.x - middle.x, p.y - middle.y, p.z - middle.z) > radius;
    });
    ASSERT_FALSE(out.empty());
    ASSERT_TRUE(mesh.t.BorraPunto(out));
    EXPECT_EQ(mesh.faults(), "");
    EXPECT_TRUE(mesh.shape() == ShapeWithout(mesh));
  }
}

TEST(BorraPunto, ACrowdOfPointsInOneSpotGoesAsAWhole) {
  const QuietApp app;
  std::vector<Point> points = Framed(spaceFamily(SpaceFamily::Random, 1500, 12));
  for (Point const& p : spaceFamily(SpaceFamily::Random, 400, 13)) {
    points.push_back({p.x / 500 + 300'000, p.y / 500 - 200'000, p.z / 500 + 100'000});
  }
  Kept mesh(points);
  Indices out = Inner(mesh, 1);
  std::erase_if(out, [&](unsigned i) {
    const Point p = mesh.at(i);
    return std::hypot(p.x - 300'000.0, p.y + 200'000.0, p.z - 100'000.0) > 5000;
  });
  ASSERT_GE(out.size(), 400U);
  ASSERT_TRUE(mesh.t.BorraPunto(out));
  EXPECT_EQ(mesh.faults(), "");
  EXPECT_TRUE(mesh.shape() == ShapeWithout(mesh));
}

TEST(BorraPunto, WithoutPointsThatSeeTheFrameTheMeshIsThatOfTheOthers) {
  const QuietApp app;
  Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 1500, 14)));
  std::set<unsigned> seeing;
  mesh.t.RecorreMalla([&](CTriangulacion3D::CCuatro const& four) {
    if (four[0] > 0) return;  // numbers ascend
    for (const std::int32_t n : four) {
      if (n > 0 && !IsFar(mesh.at(static_cast<unsigned>(n) - 1))) seeing.insert(static_cast<unsigned>(n) - 1);
    }
  });
  ASSERT_GT(seeing.size(), 30U);
  Indices out(seeing.begin(), seeing.end());
  ASSERT_TRUE(mesh.t.BorraPunto(out));
  EXPECT_EQ(mesh.faults(), "");
  EXPECT_TRUE(mesh.shape() == ShapeWithout(mesh));
}

TEST(BorraPunto, PointsOfTheHullGoAndAtLastAllOfThem) {
  const QuietApp app;
  Kept mesh(spaceFamily(SpaceFamily::Random, 400, 8));
  Indices hull = mesh.vertices(2);
  std::sort(hull.begin(), hull.end());  // by x: a slice of the hull from its side
  hull.resize(80);
  ASSERT_TRUE(mesh.t.BorraPunto(hull));
  EXPECT_EQ(mesh.faults(), "");
  while (true) {
    Indices rest = mesh.vertices(4);
    if (rest.empty()) break;
    rest.resize((rest.size() + 2) / 3);
    ASSERT_TRUE(mesh.t.BorraPunto(rest));
    ASSERT_EQ(mesh.faults(), "");
  }
  EXPECT_EQ(mesh.t.CantidadTetraedros(), 6U);  // the frame as it was at first
}

class HardRemovals : public testing::TestWithParam<SpaceFamily> {};
INSTANTIATE_TEST_SUITE_P(Families, HardRemovals, testing::ValuesIn(kSpaceFamilies),
                         [](auto const& test) { return std::string(name(test.param)); });

// Points on one sphere, in one plane, on one line: what is left has many meshes, and must be one of them.
TEST_P(HardRemovals, WhatIsLeftIsADelaunayMeshOfWhatIsLeft) {
  const QuietApp app;
  for (const std::size_t size : {std::size_t{12}, std::size_t{700}}) {
    for (const unsigned share : {1U, 10U, 50U}) {
      SCOPED_TRACE(std::to_string(size) + ": " + std::to_string(share) + " %");
      Kept mesh(spaceFamily(GetParam(), size, 9));
      for (int round = 0; round < 3; ++round) {
        Indices out = mesh.vertices(static_cast<std::uint64_t>(round));
        if (out.size() < 3) break;
        out.resize(std::max<std::size_t>(1, out.size() * share / 100));
        ASSERT_TRUE(mesh.t.BorraPunto(out));
        // A point at the place of one that went is in no tetrahedron, before and after.
        std::set<std::array<int, 3>> gone;
        for (const unsigned i : out) gone.insert({mesh.at(i).x, mesh.at(i).y, mesh.at(i).z});
        for (unsigned i = 0; i < mesh.count(); ++i) {
          CPuntoTIN* p = mesh.t.Punto(i);
          if (gone.contains({p->x, p->y, p->z})) p->num = -std::abs(p->num);
        }
        ASSERT_EQ(mesh.faults(), "");
      }
    }
  }
}

TEST(BorraPunto, AMeshOfAFileLosesPointsAndIsWrittenAndReadAgain) {
  const QuietApp app;
  Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 800, 3)));
  const CString path = app.folder.Path() + L"/m.tin3d";
  for (const int version : {2, 1}) {
    Indices out = Inner(mesh, 5);
    out.resize(50);
    ASSERT_TRUE(mesh.t.BorraPunto(out));
    ASSERT_EQ(mesh.t.Write(path, version), kHecho);
    ASSERT_EQ(mesh.t.Read(path, false), kHecho);
    EXPECT_EQ(mesh.t.CantidadPuntos(), 802U);
    EXPECT_EQ(mesh.t.EsModificadoPuntos(), version == 2);  // bare points bear no marks
    EXPECT_FALSE(mesh.t.BorraPunto(out[0]));
  }
  EXPECT_TRUE(mesh.t.PuntoNuevo(CCoor3D<int>(70'000, 50'000, 30'000, 0), nullptr));
}

TEST(BorraPunto, APointThatIsInNoTetrahedronChangesNothing) {
  const QuietApp app;
  std::vector<Point> points = Framed(spaceFamily(SpaceFamily::Random, 200, 4));
  points.push_back(points[10]);
  Kept mesh(points);
  const auto before = mesh.shape();
  const Indices used = mesh.vertices(1);
  unsigned twin = 0;
  while (std::find(used.begin(), used.end(), twin) != used.end()) ++twin;
  EXPECT_FALSE(mesh.t.BorraPunto(twin));
  Indices both{used[0], twin};
  EXPECT_FALSE(mesh.t.BorraPunto(both));
  EXPECT_TRUE(mesh.shape() == before);
  EXPECT_FALSE(mesh.t.EsModificadoPuntos());
  EXPECT_TRUE(mesh.t.BorraPunto(used[0]));  // the failure before has left no trace
  EXPECT_EQ(mesh.faults(), "");
}

TEST(BorraPunto, TheSamePointTwiceIsTakenOutOnce) {
  const QuietApp app;
  Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 200, 4)));
  const Indices used = Inner(mesh, 1);
  Indices twice{used[0], used[1], used[0]};
  EXPECT_TRUE(mesh.t.BorraPunto(twice));
  EXPECT_EQ(mesh.faults(), "");
  const auto after = mesh.shape();
  EXPECT_FALSE(mesh.t.BorraPunto(used[0]));
  EXPECT_FALSE(mesh.t.BorraPunto(twice));
  EXPECT_TRUE(mesh.shape() == after);
}

TEST(BorraPunto, IndicesBeyondTheSetAreRefusedAloneAndPassedOverInAList) {
  const QuietApp app;
  Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 200, 4)));
  const Indices used = Inner(mesh, 1);
  EXPECT_FALSE(mesh.t.BorraPunto(100'000U));
  Indices beyond{100'000}, none, some{100'000, used[3]};
  EXPECT_FALSE(mesh.t.BorraPunto(beyond));
  EXPECT_FALSE(mesh.t.BorraPunto(none));
  EXPECT_TRUE(mesh.t.BorraPunto(some));
  EXPECT_EQ(mesh.faults(), "");
  OpenTriangulation3D fresh;
  EXPECT_FALSE(fresh.BorraPunto(0U));
}

TEST(BorraPunto, ASmallRunThatFailsLeavesTheCavityOpenSaysSoAndTheMeshUsable) {
  const QuietApp app;
  Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 300, 4)));
  const Indices used = Inner(mesh, 1);
  {
    FaultGuard guard;
    guard.Refuse(EOperacion::CreaHilo);
    EXPECT_TRUE(mesh.t.BorraPunto(used[0]));
  }
  EXPECT_EQ(mesh.t.Resumen().huecos, 1U);
  EXPECT_NE(mesh.faults(), "");
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  int done = 0;
  for (std::size_t i = 1; i < 60; ++i) done += mesh.t.BorraPunto(used[i]) ? 1 : 0;
  EXPECT_GT(done, 10);  // far from the hole
}

TEST(BorraPunto, BytesDependNeitherOnThreadsNorOnTheRun) {
  std::set<std::string> all;
  for (const unsigned processors : {1U, 2U, 4U}) {
    const QuietApp app(processors);
    Kept mesh(spaceFamily(SpaceFamily::JitteredGrid, 1000, 4));
    Indices out = mesh.vertices(3);
    out.resize(120);
    ASSERT_TRUE(mesh.t.BorraPunto(out));
    const CString path = app.folder.Path() + L"/m.tin3d";
    ASSERT_EQ(mesh.t.Write(path, 2), kHecho);
    all.insert(BytesOf(path));
  }
  EXPECT_EQ(all.size(), 1U);
}

TEST(BorraPunto, PhasesAndCancellingAreThoseOfTheSmallRun) {
  ListeningApp app;
  Kept mesh(Framed(spaceFamily(SpaceFamily::Random, 300, 4)));
  const Indices used = Inner(mesh, 1);
  app.phases.clear();
  ASSERT_TRUE(mesh.t.BorraPunto(used[0]));
  EXPECT_THAT(app.PhaseMessages(), testing::ElementsAre(19020U, 19021U, 19029U));
  app.steps.clear();
  app.cancelAt = 3;
  EXPECT_TRUE(mesh.t.BorraPunto(used[1]));
  EXPECT_EQ(mesh.t.Resumen().huecos, 1U);
  mesh.t.Mensajes(MENSAJES_NINGUNO);
  app.phases.clear();
  static_cast<void>(mesh.t.BorraPunto(used[200]));
  EXPECT_TRUE(app.phases.empty());
}

}  // namespace
