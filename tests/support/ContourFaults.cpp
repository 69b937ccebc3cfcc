#include "support/ContourFaults.h"

#include <algorithm>
#include <cmath>

#include "support/BoxTree.h"
#include "support/Predicates.h"
#include "support/SideTable.h"

namespace Meseta47::support {

namespace {

std::string text(Point const& p) { return toText(p) + " at " + std::to_string(p.z); }
std::string text(ContourPiece const& piece) { return text(piece.a) + " to " + toText(piece.b); }

/// A place in doubles, relative to a point near by.
struct Place {
  double x, y;
};

Place operator-(Place p, Place q) { return {p.x - q.x, p.y - q.y}; }
double dot(Place p, Place q) { return p.x * q.x + p.y * q.y; }

double distance(Place p, Place a, Place b) {
  const Place side = b - a;
  const double length2 = dot(side, side);
  const double t = length2 == 0 ? 0 : std::clamp(dot(p - a, side) / length2, 0.0, 1.0);
  const Place away = p - Place{a.x + t * side.x, a.y + t * side.y};
  return std::sqrt(dot(away, away));
}

/// Between pieces that do not cross: one end of one of them is the nearest.
double distance(Place a, Place b, Place c, Place d) {
  return std::min({distance(a, c, d), distance(b, c, d), distance(c, a, b), distance(d, a, b)});
}

bool between(Point const& p, Point const& a, Point const& b) {
  return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
         p.y <= std::max(a.y, b.y);
}

bool meet(ContourPiece const& s, ContourPiece const& t) {
  const int sa = orientation(s.a, s.b, t.a), sb = orientation(s.a, s.b, t.b);
  const int ta = orientation(t.a, t.b, s.a), tb = orientation(t.a, t.b, s.b);
  if (sa * sb < 0 && ta * tb < 0) return true;
  return (sa == 0 && between(t.a, s.a, s.b)) || (sb == 0 && between(t.b, s.a, s.b)) ||
         (ta == 0 && between(s.a, t.a, t.b)) || (tb == 0 && between(s.b, t.a, t.b));
}

GivenPiece const& givenAs(PlainContours const& plain, ContourPiece const& piece) {
  return *std::lower_bound(plain.given.begin(), plain.given.end(), piece,
                           [](GivenPiece const& g, ContourPiece const& p) { return g.piece < p; });
}

/// Distance of two pieces before rounding.
double trueDistance(GivenPiece const& s, GivenPiece const& t) {
  Point const& o = s.piece.a;
  const auto place = [&](Point const& p, double movedX, double movedY) {
    return Place{static_cast<double>(p.x) - o.x - movedX, static_cast<double>(p.y) - o.y - movedY};
  };
  return distance(place(s.piece.a, s.movedAx, s.movedAy), place(s.piece.b, s.movedBx, s.movedBy),
                  place(t.piece.a, t.movedAx, t.movedAy), place(t.piece.b, t.movedBx, t.movedBy));
}

/// Points with as many entries as pieces end there.
std::vector<Point> endsOf(std::vector<ContourPiece> const& pieces) {
  std::vector<Point> ends;
  for (ContourPiece const& piece : pieces) ends.insert(ends.end(), {piece.a, piece.b});
  std::sort(ends.begin(), ends.end());
  return ends;
}

/// Ends of pieces that more than one triangle gave, where a line may end; those of shores end on the outline alone.
std::vector<Point> endsOfRepeated(PlainContours const& plain) {
  if (plain.shore) return {};
  std::vector<ContourPiece> repeated;
  for (std::size_t i = 1; i < plain.given.size(); ++i) {
    if (plain.given[i].piece == plain.given[i - 1].piece) repeated.push_back(plain.given[i].piece);
  }
  return endsOf(repeated);
}

std::size_t countOf(std::vector<Point> const& sorted, Point const& p) {
  const auto [first, last] = std::equal_range(sorted.begin(), sorted.end(), p);
  return static_cast<std::size_t>(last - first);
}

}  // namespace

std::vector<ContourPiece> piecesOf(std::vector<ContourLine> const& lines) {
  std::vector<ContourPiece> pieces;
  for (ContourLine const& line : lines) {
    for (std::size_t i = 1; i < line.size(); ++i) pieces.push_back(pieceBetween(line[i - 1], line[i]));
  }
  std::sort(pieces.begin(), pieces.end());
  return pieces;
}

std::string levelFaults(std::vector<ContourLine> const& lines, std::int32_t interval) {
  for (ContourLine const& line : lines) {
    if (line.size() < 2) return "a line of " + std::to_string(line.size()) + " points";
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line[i].z % interval != 0) return text(line[i]) + " is not on a level";
      if (line[i].z != line[0].z) return "a line from " + text(line[0]) + " goes on to " + text(line[i]);
      if (i > 0 && line[i] == line[i - 1]) return "a line has " + text(line[i]) + " twice in a row";
    }
  }
  return "";
}

std::string pieceFaults(std::vector<ContourPiece> const& found, std::vector<ContourPiece> const& expected) {
  const auto [f, e] = std::mismatch(found.begin(), found.end(), expected.begin(), expected.end());
  if (f == found.end() && e == expected.end()) return "";
  const bool missing = f == found.end() || (e != expected.end() && *e < *f);
  return std::to_string(found.size()) + " pieces instead of " + std::to_string(expected.size()) +
         (missing ? ", missing " + text(*e) : ", too many " + text(*f));
}

std::string openEndFaults(std::vector<ContourLine> const& lines, PlainContours const& plain) {
  std::vector<Point> lineEnds;
  for (ContourLine const& line : lines) {
    if (line.front() != line.back()) lineEnds.insert(lineEnds.end(), {line.front(), line.back()});
  }
  std::sort(lineEnds.begin(), lineEnds.end());
  const std::vector<Point> pieceEnds = endsOf(plain.distinctPieces()), repeatedEnds = endsOfRepeated(plain);
  for (std::size_t i = 0; i < lineEnds.size(); ++i) {
    Point const& end = lineEnds[i];
    if (i > 0 && end == lineEnds[i - 1]) return "two lines end at " + text(end);
    if (countOf(pieceEnds, end) % 2 == 0) return "a line ends at " + text(end) + ", where it could go on";
    if (countOf(plain.onOutline, end) == 0 && countOf(repeatedEnds, end) == 0) {
      return "a line ends amid the surface, at " + text(end);
    }
  }
  return "";
}

std::string strayFaults(std::vector<ContourLine> const& lines, Mesh const& mesh, ContourRule const& rule) {
  const std::vector<Triangle> triangles = contoured(mesh, rule);
  const std::vector<SideUse> uses = sortedSides(triangles);
  std::vector<std::pair<Point, Point>> sides;
  std::vector<PlanBox> boxes;
  forEachSide(uses, [&](auto first, auto) {
    sides.emplace_back(mesh.at(startOf(triangles, first->half)), mesh.at(endOf(triangles, first->half)));
    boxes.push_back(boxOf(sides.back().first, sides.back().second).grown(1));
  });
  const BoxTree tree(std::move(boxes));
  for (ContourLine const& line : lines) {
    for (Point const& p : line) {
      bool near = false;
      tree.forEachTouching(boxOf(p, p), [&](std::uint32_t i) {
        const auto place = [&](Point const& q) {
          return Place{static_cast<double>(q.x) - p.x, static_cast<double>(q.y) - p.y};
        };
        near = distance({0, 0}, place(sides[i].first), place(sides[i].second)) <= 1;
        return !near;
      });
      if (!near) return text(p) + " lies on no side";
    }
  }
  return "";
}

Meetings meetings(std::vector<ContourLine> const& lines, PlainContours const& plain) {
  constexpr double kReach = 1.414213562373096;  // two diagonals of half a unit, and a few units of the last place
  const std::vector<ContourPiece> pieces = piecesOf(lines);
  std::vector<PlanBox> boxes;
  for (ContourPiece const& piece : pieces) boxes.push_back(boxOf(piece.a, piece.b));
  Meetings result;
  BoxTree(std::move(boxes)).forEachPair([&](std::uint32_t i, std::uint32_t j) {
    if (pieces[i].a.z == pieces[j].a.z || !meet(pieces[i], pieces[j])) return;
    ++result.pairs;
    if (trueDistance(givenAs(plain, pieces[i]), givenAs(plain, pieces[j])) <= kReach) return;
    if (result.tooFar++ == 0) result.first = text(pieces[i]) + " meets " + text(pieces[j]);
  });
  return result;
}

}  // namespace Meseta47::support
