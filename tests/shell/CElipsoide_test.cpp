#include "shell/CElipsoide.h"

#include <gtest/gtest.h>

using Meseta47::elipsoides;

TEST(CElipsoide, TheUsersOwnStandsFirstAndTheOthersAreNumberedFromOne) {
  ASSERT_EQ(elipsoides.size(), 28U);
  EXPECT_EQ(elipsoides[0].Codigo(), -1);
  EXPECT_EQ(elipsoides[0].Nombre(), L"Definido por el usuario");
  EXPECT_EQ(elipsoides[0].Semieje(), 0.0);
  EXPECT_EQ(elipsoides[0].Excentricidad2(), 0.0);
  for (std::size_t i = 1; i < elipsoides.size(); ++i) EXPECT_EQ(elipsoides[i].Codigo(), static_cast<int>(i));
}

TEST(CElipsoide, RowsOfTheTableHoldTheirFigures) {
  EXPECT_EQ(elipsoides[17].Nombre(), L"GRS 1980");
  EXPECT_EQ(elipsoides[17].Semieje(), 6378137.0);
  EXPECT_EQ(elipsoides[17].Excentricidad2(), 0.00669438);
  EXPECT_EQ(elipsoides[20].Nombre(), L"Internacional (Hayford)");
  EXPECT_EQ(elipsoides[20].Semieje(), 6378388.0);
  EXPECT_EQ(elipsoides[20].Excentricidad2(), 0.00672267);
  EXPECT_EQ(elipsoides[27].Nombre(), L"Xi'an-80");
  EXPECT_EQ(elipsoides[27].Semieje(), 6378140.0);
}

TEST(CElipsoide, EveryNamedOneIsFlattenedLikeTheEarth) {
  for (std::size_t i = 1; i < elipsoides.size(); ++i) {
    SCOPED_TRACE(elipsoides[i].Nombre().Utf8());
    EXPECT_NEAR(elipsoides[i].Semieje(), 6378000.0, 1000.0);
    EXPECT_NEAR(elipsoides[i].Excentricidad2(), 0.0067, 0.00011);
  }
}
