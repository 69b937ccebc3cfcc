// Contour lines of a drawing: from points to joined lines, and every way out.
#include <gmock/gmock.h>

#include "support/PlanarRun.h"
#include "support/PlanarScene.h"

namespace Meseta47 {
namespace {

using support::Point;
using test::DrawingOf;
using test::ListeningApp;
using test::OpenTriangulation;
using test::QuietApp;
using testing::ElementsAre;
using testing::IsEmpty;

using Path = std::vector<Point>;

constexpr double kAnySide = 1'000'000;
const CDataSemilla kWholeUnits(0, 0, 0, 0);  ///< a scaled unit is a unit of the drawing

std::vector<Path> Paths(CDibujo<int> const& drawing) {
  std::vector<Path> paths;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    EXPECT_EQ(drawing[i].GetCodigo(), CString(L"nuevo"));
    Path path;
    for (CCoor3D<int> const& p : drawing[i].Puntos()) path.push_back({p.x, p.y, p.z});
    paths.push_back(path);
  }
  return paths;
}

std::vector<Path> Contours(std::vector<Point> const& points, double interval, double maxSide = kAnySide) {
  CDibujo<int> drawing = DrawingOf(points), contours;
  drawing.semilla = kWholeUnits;
  OpenTriangulation triangulation;
  EXPECT_EQ(triangulation.Curvado(drawing, contours, maxSide, interval, nullptr), kHecho);
  return Paths(contours);
}

/// A pyramid on a square: its foot at one height, its top at another.
std::vector<Point> Pyramid(int foot, int top) {
  return {{0, 0, foot}, {100, 0, foot}, {100, 100, foot}, {0, 100, foot}, {50, 50, top}};
}

TEST(Curvado, AHillGivesARingAtEveryLevel) {
  const QuietApp app;
  EXPECT_THAT(Contours(Pyramid(5, 25), 10),
              ElementsAre(Path{{12, 12, 10}, {12, 88, 10}, {88, 88, 10}, {88, 12, 10}, {12, 12, 10}},
                          Path{{38, 38, 20}, {38, 62, 20}, {62, 62, 20}, {62, 38, 20}, {38, 38, 20}}));
}

}  // namespace
}  // namespace Meseta47
