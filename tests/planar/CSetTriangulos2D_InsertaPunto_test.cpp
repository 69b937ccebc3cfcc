// A point into the mesh in one step, held against the long way: cavity, sides, pairs taken out, triangles filed one by
// one.
#include <gmock/gmock.h>
#include <sstream>

#include "planar/CSetTriangulos2D.h"
#include "support/Families.h"
#include "support/PlanarScene.h"

namespace Meseta47 {
namespace {

using test::Box;
using test::Numbered;
using testing::IsEmpty;

/// A frame from -1200 to 1200, and points to put into it.
class Mesh {
 public:
  Mesh() {
    for (int i = 0; i < 4; ++i) corners[static_cast<std::size_t>(i)].num = -1 - i;
    root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
    root.Inserta(CTriangulo2D(&corners[0], &corners[1], &corners[2]));
    root.Inserta(CTriangulo2D(&corners[0], &corners[2], &corners[3]));
  }

  int InOneStep(CCoor3D<int>& p, int tolerance = 0) {
    CSetTriangulos2D* near = &root;
    for (int child = near->BuscaHijo(p); child >= 0; child = near->BuscaHijo(p)) near = &near->hijos[child];
    return root.InsertaPunto(&p, *near, Start(), {tolerance}, a, b, balance);
  }

  int TheLongWay(CCoor3D<int>& p, int tolerance = 0) {
    CSetLados2D sides;
    const int answer = root.Implicados(&p, sides, a, b, Start(), tolerance);
    if (answer != 0) return answer;
    balance.condenados += sides.lados.size() / 3;
    sides.BorraDuplicados();
    for (CLado2D const& side : sides.lados) root.Inserta(CTriangulo2D(&p, side.P1(), side.P2()));
    balance.creados += sides.lados.size();
    return answer;
  }

  /// Every list in its order, with every link, and the counters.
  [[nodiscard]] std::string Picture() const {
    std::ostringstream out;
    Draw(out, root);
    out << a << ' ' << b << ' ' << balance.creados << ' ' << balance.condenados;
    return out.str();
  }

  std::vector<CCoor3D<int>> corners = Numbered({{-1200, -1200}, {-1200, 1200}, {1200, 1200}, {1200, -1200}});
  CSetTriangulos2D root{0};
  CSetTriangulos2D::CBalance balance;
  unsigned a = 0, b = 0;

 private:
  CTriangulo2D* Start() { return root.GetActual(true); }

  static void Name(std::ostream& out, CTriangulo2D const* t) {
    if (t == nullptr) {
      out << " -";
    } else {
      out << " (" << t->N1() << ' ' << t->N2() << ' ' << t->N3() << ')';
    }
  }
  static void Draw(std::ostream& out, CSetTriangulos2D const& set) {
    out << set.nivel << ':' << set.cantidad << '\n';
    for (CTriangulo2D const* t = set.primero; t != nullptr; t = t->Sig()) {
      for (CTriangulo2D const* named :
           {t, static_cast<CTriangulo2D const*>(t->GetVecino12()), static_cast<CTriangulo2D const*>(t->GetVecino23()),
            static_cast<CTriangulo2D const*>(t->GetVecino31())}) {
        Name(out, named);
      }
      out << (t->GetSet() == &set ? "\n" : " in another set\n");
    }
    for (unsigned i = 0; set.hijos != nullptr && i < 4; ++i) Draw(out, set.hijos[i]);
  }
};

void ExpectTheSameBothWays(std::vector<support::Point> const& points, int tolerance) {
  std::vector<CCoor3D<int>> mine, theirs;
  for (support::Point const& p : points) mine.emplace_back(p.x, p.y, p.z, static_cast<int>(mine.size()) + 1);
  theirs = mine;
  Mesh quick, slow;
  for (std::size_t i = 0; i < mine.size(); ++i) {
    ASSERT_EQ(quick.InOneStep(mine[i], tolerance), slow.TheLongWay(theirs[i], tolerance)) << "point " << i + 1;
    ASSERT_EQ(mine[i].num, theirs[i].num);
    // Each picture costs as much as the mesh is large: the first steps, and then now and again.
    if (i < 50 || i % 97 == 0) {
      ASSERT_EQ(quick.Picture(), slow.Picture()) << "after point " << i + 1;
    }
  }
  EXPECT_EQ(quick.Picture(), slow.Picture());
}

/// Points of a family brought into the frame.
std::vector<support::Point> InFrame(support::Family family, std::size_t count) {
  std::vector<support::Point> points = support::family(family, count, 3);
  for (support::Point& p : points) {
    const auto fold = [](std::int64_t v) { return static_cast<int>((v % 1000 + 1000) % 1000 * 2 - 1000); };
    p.x = fold(p.x);
    p.y = fold(p.y);
  }
  return points;
}

class InsertaPunto : public testing::TestWithParam<support::Family> {};

TEST_P(InsertaPunto, LeavesTheListsLinksAndCountersOfTheLongWay) {
  ExpectTheSameBothWays(InFrame(GetParam(), 1500), 0);
}
TEST_P(InsertaPunto, RefusesWithAToleranceWhatTheLongWayRefuses) { ExpectTheSameBothWays(InFrame(GetParam(), 300), 3); }

INSTANTIATE_TEST_SUITE_P(EveryFamily, InsertaPunto, testing::ValuesIn(support::kAllFamilies),
                         [](testing::TestParamInfo<support::Family> const& f) { return support::name(f.param); });

TEST(CSetTriangulos2DInsertaPunto, TheFanIsLinkedToTheRimAndToItself) {
  Mesh mesh;
  CCoor3D<int> p(0, 300, 0, 1), q(700, 0, 0, 2);
  ASSERT_EQ(mesh.InOneStep(p), 0);
  ASSERT_EQ(mesh.InOneStep(q), 0);
  std::size_t free = 0;
  for (CTriangulo2D const* t = mesh.root.primero; t != nullptr; t = t->Sig()) {
    EXPECT_FALSE(t->Borrado());
    free += static_cast<std::size_t>(t->LadosLimite());
    for (CTriangulo2D* v : {t->GetVecino12(), t->GetVecino23(), t->GetVecino31()}) {
      if (v != nullptr) {
        EXPECT_TRUE(v->GetVecino12() == t || v->GetVecino23() == t || v->GetVecino31() == t);
      }
    }
  }
  EXPECT_EQ(free, 4U) << "the sides of the frame alone";
  EXPECT_EQ(mesh.root.Cantidad(), 6U);
  EXPECT_THAT(mesh.root.Abiertos(), IsEmpty());
}

TEST(CSetTriangulos2DInsertaPunto, ALargeBoundaryIsChainedLikeASmallOne) {
  std::vector<support::Point> points;
  for (int i = 0; i < 40; ++i) {  // a ring of points on one circle, as far as integers go, then its centre
    const double angle = i * 0.15708;
    points.push_back({static_cast<int>(900 * std::cos(angle)), static_cast<int>(900 * std::sin(angle)), 0});
  }
  points.push_back({1, 2, 0});
  ExpectTheSameBothWays(points, 0);
}

/// The n-th triangle and the neighbour across its first side forget each other.
void Unlink(CSetTriangulos2D& set, unsigned& n) {
  for (CTriangulo2D* t = set.primero; t != nullptr; t = t->Sig()) {
    if (n-- != 0) continue;
    if (CTriangulo2D* u = t->GetVecino12(); u != nullptr) {
      t->BorraVecino(u);
      u->BorraVecino(t);
    }
    return;
  }
  for (unsigned i = 0; set.hijos != nullptr && i < 4; ++i) {
    if (n != ~0U) Unlink(set.hijos[i], n);
  }
}

// Boundaries with a side inside them, or that meet a vertex twice: nothing but the long way is sure of these.
TEST(CSetTriangulos2DInsertaPunto, AMeshWithMissingLinksGrowsAsItDoesTheLongWay) {
  std::vector<CCoor3D<int>> mine, theirs;
  for (support::Point const& p : InFrame(support::Family::Uniform, 600)) {
    mine.emplace_back(p.x, p.y, p.z, static_cast<int>(mine.size()) + 1);
  }
  theirs = mine;
  Mesh quick, slow;
  for (std::size_t i = 0; i < mine.size(); ++i) {
    ASSERT_EQ(quick.InOneStep(mine[i]), slow.TheLongWay(theirs[i])) << "point " << i + 1;
    ASSERT_EQ(quick.Picture(), slow.Picture()) << "after point " << i + 1;
    for (Mesh* mesh : {&quick, &slow}) {
      auto n = static_cast<unsigned>(i * 7919 % (2 * i + 2));
      Unlink(mesh->root, n);
    }
  }
}

TEST(CSetTriangulos2DInsertaPunto, ADuplicateChangesNothing) {
  Mesh mesh;
  CCoor3D<int> p(10, 20, 5, 1), again(10, 20, 9, 2);
  ASSERT_EQ(mesh.InOneStep(p), 0);
  EXPECT_EQ(mesh.InOneStep(again), 3);
  EXPECT_EQ(again.num, 2);
  EXPECT_EQ(mesh.root.Cantidad(), 4U);
  EXPECT_EQ(mesh.balance.creados, 4U);
  EXPECT_EQ(mesh.balance.condenados, 2U);
}

}  // namespace
}  // namespace Meseta47
