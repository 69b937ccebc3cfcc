#include "support/Predicates.h"

#include <cmath>

namespace Meseta47::support {

namespace {

struct Offset {
  Int128 x;
  Int128 y;
};

Offset offset(Point const& from, Point const& to) { return {std::int64_t{to.x} - from.x, std::int64_t{to.y} - from.y}; }

Int128 cross(Offset const& u, Offset const& v) { return u.x * v.y - u.y * v.x; }

Int128 squaredLength(Offset const& u) { return u.x * u.x + u.y * u.y; }

double length(Point const& a, Point const& b) { return std::sqrt(static_cast<double>(squaredLength(offset(a, b)))); }

}  // namespace

Int128 twiceArea(Point const& a, Point const& b, Point const& c) { return cross(offset(a, b), offset(a, c)); }

int orientation(Point const& a, Point const& b, Point const& c) { return sign(twiceArea(a, b, c)); }

Int256 inCircleDeterminant(Point const& a, Point const& b, Point const& c, Point const& d) {
  const Offset da = offset(d, a);
  const Offset db = offset(d, b);
  const Offset dc = offset(d, c);
  return product(squaredLength(da), cross(db, dc)) + product(squaredLength(db), cross(dc, da)) +
         product(squaredLength(dc), cross(da, db));
}

int inCircle(Point const& a, Point const& b, Point const& c, Point const& d) {
  return orientation(a, b, c) * sign(inCircleDeterminant(a, b, c, d));
}

double depthInCircle(Point const& a, Point const& b, Point const& c, Point const& d) {
  // depth = -power / (2 R) with power = -determinant / (twice area) and 2 R = (product of the sides) / (twice area):
  // the area cancels out.
  const double determinant = approximate(inCircleDeterminant(a, b, c, d));
  return orientation(a, b, c) * determinant / (length(a, b) * length(b, c) * length(c, a));
}

}  // namespace Meseta47::support
