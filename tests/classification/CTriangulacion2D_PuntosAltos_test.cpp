// The search of high points as its callers see it: classes, counts, codes and progress.
#include <gmock/gmock.h>

#include "classification/SearchScene.h"
#include "model/Codigos.h"

namespace Meseta47 {
namespace {

using test::Changing;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::ListeningApp;
using test::QuietApp;
using testing::Each;
using testing::ElementsAre;

const CInfoClasificacion kBuilding(6, 0.0, L"");

/// A search in a drawing in metres, and what it answered.
struct Search {
  CDataSemilla seed{0, 0, 0, 0};
  CDataTriangulacion data;
  double distance = 2, height = 5;
  CInfoClasificacion info = kBuilding;
  int onePass = 0;
  unsigned changed = 12345;
  std::vector<CDibujo<int>*> others{};
  std::vector<CPosicionEntidad> const* selection = nullptr;

  int Run(CDibujo<int>& drawing) {
    CTriangulacion2D triangulation(0, seed, data, 7);
    return triangulation.RunPuntosAltos(drawing, distance, height, info, onePass, changed,
                                        others.empty() ? nullptr : &others, selection);
  }
};

/// Six points on the ground around the origin, four metres off, and far corners that keep them off the frame.
const std::vector<ClassedPoint> kGround{{4, 0, 0},  {2, 3, 0},   {-2, 3, 0},   {-4, 0, 0},    {-2, -3, 0},
                                        {2, -3, 0}, {40, 41, 0}, {-40, 43, 0}, {-41, -40, 0}, {42, -43, 0}};

std::vector<ClassedPoint> With(std::vector<ClassedPoint> ground, std::vector<ClassedPoint> const& more) {
  ground.insert(ground.end(), more.begin(), more.end());
  return ground;
}

TEST(RunPuntosAltos, APoleOverTheGroundTakesTheClass) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9}}));
  Search search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 6));
  EXPECT_EQ(search.changed, 1U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

}  // namespace
}  // namespace Meseta47
