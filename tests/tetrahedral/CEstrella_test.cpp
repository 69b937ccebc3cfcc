#include "tetrahedral/CEstrella.h"

#include <gtest/gtest.h>

using namespace Meseta47;

namespace {

struct Scene {
  CCoor3D<int> a{0, 0, 0, 1}, b{10, 0, 0, 2}, c{0, 10, 0, 3}, d{0, 0, 10, 4}, inside{2, 2, 2, 5};
  CTetraedro behind{&a, &b, &c, &d}, side{&a, &b, &c, &d}, start{&a, &b, &c, &d};
};

TEST(CEstrella, ATetrahedronThatIsNotLinkedBackIsAskedForAllItsNeighbours) {
  Scene s;
  s.start.SetVecino123(&s.side, 2, 2, 2, false);
  s.side.SetVecino234(&s.behind, 2, 2, 2, false);
  CEstrella star;
  ASSERT_TRUE(star.Crece(s.inside, &s.start, CEstrella::Marca(1)));
  ASSERT_EQ(star.Condenados(), 3U);
  EXPECT_EQ(star.Condenado(2), &s.behind);
}

TEST(CEstrella, TheFaceThatATetrahedronWasReachedAcrossIsNoBoundary) {
  Scene s;
  s.start.SetVecino234(&s.side, 2, 2, 2, false);
  s.side.SetVecino123(&s.start, 2, 2, 2, false);
  CEstrella star;
  ASSERT_TRUE(star.Crece(s.inside, &s.start, CEstrella::Marca(1)));
  EXPECT_EQ(star.Condenados(), 2U);
  EXPECT_EQ(star.Cantidad(), 6U);
  EXPECT_EQ(star.Esferas(), 1U);
}

}  // namespace
