#include "tetrahedral/CCara.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/SpaceScenes.h"

using namespace Meseta47;
using namespace Meseta47::test;
using testing::ElementsAre;

namespace {

TEST(CCara, ADefaultFaceKnowsNothingOfItsEdgesAndIsToBeWritten) {
  const CCara f;
  EXPECT_EQ(f.P1(), nullptr);
  EXPECT_EQ(f.P3(), nullptr);
  EXPECT_EQ(f.Tetra(), nullptr);
  EXPECT_EQ(f.D12(), 2);
  EXPECT_EQ(f.D13(), 2);
  EXPECT_EQ(f.D23(), 2);
  EXPECT_FALSE(f.Grabado());
}

TEST(CCara, EachStateKeepsTwoBitsOfItsOwn) {
  Points p;
  int far = 0;
  const CCara f(p(0, 0, 0, 1), p(1, 0, 0, 2), p(0, 1, 0, 3), &far, 5, 6, 3, true);
  EXPECT_EQ(f.D12(), 1);
  EXPECT_EQ(f.D13(), 2);
  EXPECT_EQ(f.D23(), 3);
  EXPECT_TRUE(f.Grabado());
  EXPECT_EQ(f.Tetra(), &far);
  EXPECT_EQ(Named(f), "1 2 3");
}

TEST(CCara, FacesAreEqualByPointObjectsInTheirPlacesAndByNothingElse) {
  Points p;
  CCoor3D<int>*a = p(0, 0, 0, 1), *b = p(1, 0, 0, 2), *c = p(0, 1, 0, 3), *twin = p(0, 0, 0, 1);
  const CCara f(a, b, c, nullptr, 0, 0, 0, false);
  EXPECT_EQ(f, CCara(a, b, c, a, 1, 1, 1, true));
  EXPECT_FALSE(f == CCara(b, a, c, nullptr, 0, 0, 0, false));
  EXPECT_FALSE(f == CCara(twin, b, c, nullptr, 0, 0, 0, false));
}

TEST(CCara, OrderIsByTheNumbersOfTheFirstPlaceThatDiffers) {
  Points p;
  CCoor3D<int>*a = p(0, 0, 0, 1), *b = p(1, 0, 0, 2), *c = p(0, 1, 0, 3), *d = p(0, 0, 1, 4);
  const CCara abc(a, b, c, nullptr, 2, 2, 2, false), abd(a, b, d, nullptr, 2, 2, 2, false),
      acd(a, c, d, nullptr, 2, 2, 2, false);
  EXPECT_TRUE(abc < abd);
  EXPECT_TRUE(abd < acd);
  EXPECT_FALSE(acd < abc);
  EXPECT_FALSE(abc < abc);
}

/// Lists of faces by letters: each is a face of its own.
class CSetCarasTest : public testing::Test {
 protected:
  CSetCaras List(std::string const& letters) {
    CSetCaras list;
    for (const char letter : letters) {
      const int number = letter - 'a';
      list.push_back(CCara(a, b, tops[static_cast<std::size_t>(number)], nullptr, 2, 2, 2, false));
    }
    return list;
  }
  std::string Left(std::string const& letters) {
    CSetCaras list = List(letters);
    list.BorraDuplicadas();
    std::string left;
    for (CCara const& f : list) left.push_back(static_cast<char>('a' + f.N3() - 10));
    return left;
  }
  Points p;
  CCoor3D<int>*a = p(0, 0, 0, 1), *b = p(1, 0, 0, 2);
  std::vector<CCoor3D<int>*> tops{p(0, 1, 0, 10), p(0, 2, 0, 11), p(0, 3, 0, 12), p(0, 4, 0, 13)};
};

TEST_F(CSetCarasTest, AnEmptyListStaysEmptyAndALoneFaceGoes) {
  EXPECT_EQ(Left(""), "");
  EXPECT_EQ(Left("a"), "");
}
TEST_F(CSetCarasTest, TwoEqualFacesGoAndTwoDifferentOnesStaySorted) {
  EXPECT_EQ(Left("aa"), "");
  EXPECT_EQ(Left("ba"), "ab");
}
TEST_F(CSetCarasTest, APairGoesWhereverItStands) {
  EXPECT_EQ(Left("aab"), "b");
  EXPECT_EQ(Left("abb"), "a");
  EXPECT_EQ(Left("abbc"), "ac");
  EXPECT_EQ(Left("cabb"), "ac");
}
TEST_F(CSetCarasTest, OfThreeEqualFacesNoneStaysAtTheEndAndOneBeforeAnother) {
  EXPECT_EQ(Left("aaa"), "");
  EXPECT_EQ(Left("aaab"), "ab");
}
TEST_F(CSetCarasTest, FacesThatDifferInStatesOrTetrahedronAloneBothGo) {
  CSetCaras list = List("b");
  list.push_back(CCara(a, b, tops[0], nullptr, 0, 0, 0, false));
  list.push_back(CCara(a, b, tops[0], &list, 1, 1, 1, true));
  list.push_back(CCara(a, b, tops[2], nullptr, 1, 0, 2, true));
  list.BorraDuplicadas();
  EXPECT_THAT(Named(list), ElementsAre("1 2 11", "1 2 12"));
  EXPECT_EQ(list[1].D12(), 1);
  EXPECT_TRUE(list[1].Grabado());
}

}  // namespace
