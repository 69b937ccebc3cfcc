#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include "classification/CBusquedaSuelo.h"
#include "classification/SearchScene.h"

namespace Meseta47::test {

/// Land in centimetres, flown over at random.
class Land {
 public:
  using Height = std::function<double(double x, double y)>;  ///< all in metres

  explicit Land(std::uint64_t seed) : random(seed) {}

  /// So many points a square metre over a box, at the heights of `z` and 5 cm of noise.
  Land& Fly(double x0, double y0, double x1, double y1, double density, Height const& z, unsigned char clase = 1) {
    const auto n = static_cast<std::size_t>((x1 - x0) * (y1 - y0) * density);
    for (std::size_t i = 0; i < n; ++i) {
      const double x = x0 + (x1 - x0) * random.unit(), y = y0 + (y1 - y0) * random.unit();
      Put(x, y, z(x, y) + 0.05 * random.unit(), clase);
    }
    return *this;
  }
  Land& Put(double x, double y, double z, unsigned char clase = 1) {
    points.push_back({static_cast<int>(std::lround(100 * x)), static_cast<int>(std::lround(100 * y)),
                      static_cast<int>(std::lround(100 * z)), clase});
    return *this;
  }

  std::vector<ClassedPoint> points;
  support::Random random;
};

inline const CDataSemilla kCentimetres{2, 0, 0, 0};

/// A search for ground, and what it answered.
struct GroundSearch {
  CDataTriangulacion data;
  CDataSuelo how;
  double metres = 1;
  CResumenSuelo summary{};

  int Run(CDibujo<int>& drawing) {
    CBusquedaSuelo search(drawing.semilla, data, metres, metres);
    const int code = search.Busca(drawing, how);
    summary = search.Resumen();
    return code;
  }
  /// The classes of the points, in their order; none where the search did not end well.
  std::vector<int> Classes(std::vector<ClassedPoint> const& points) {
    CDibujo<int> drawing = Cloud(points, kCentimetres);
    return Run(drawing) == kHecho ? ClassesOf(drawing) : std::vector<int>();
  }
};

/// Of the points that `which` chooses, the share that has the class.
template <class Which>
double Share(std::vector<ClassedPoint> const& points, std::vector<int> const& classes, int clase, Which const& which) {
  double all = 0, hit = 0;
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (!which(points[i])) continue;
    all += 1;
    hit += classes[i] == clase ? 1 : 0;
  }
  return all == 0 ? -1 : hit / all;
}

}  // namespace Meseta47::test
