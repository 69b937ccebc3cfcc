#include "host/SpatialOrder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include "model/geometry/CMaximas.h"
#include "model/geometry/Hilbert.h"
#include "model/storage/Reservado.h"
#include "model/storage/VectorCrudo.h"
#include "planar/CReparto2D.h"
#include "platform/Procesadores.h"
#include "run/CCeldas.h"

namespace Meseta47::host {

namespace {

constexpr unsigned kLevels = 16;  // cells of the curve a side: 2^16, finer than any division of a run
constexpr unsigned kDigit = 11;   // bits a pass of the sort: three passes for 32-bit keys
constexpr unsigned kPasses = 3;
constexpr std::size_t kWorthAThread = 100000;

struct Item {
  std::uint32_t key, index;
};

/// Runs work(part, parts) for each part, which must not throw, on a thread of its own. The part of a thread that the
/// system refuses is done here.
template <class F>
void inParallel(unsigned parts, F const& work) {
  std::vector<std::jthread> threads;
  threads.reserve(parts);
  for (unsigned part = 1; part < parts; ++part) {
    try {
      threads.emplace_back([&work, part, parts] { work(part, parts); });
    } catch (std::system_error const&) {
      work(part, parts);
    }
  }
  work(0U, parts);
}

constexpr std::size_t kLanes = 8;  // points whose cells are found together: whole registers of any processor

using Lanes = std::array<std::uint32_t, kLanes>;

/// Which of 2^16 columns each value falls in, when an interval is halved 16 times as a run halves its cells: at the
/// mean rounded down, the mean itself going up. Values come as distances from the lower end of the interval, which is
/// `width` wide. No jump depends on a value, so that all of them go through the steps together.
void columns(Lanes& values, std::uint32_t width) {
  for (std::uint32_t& value : values) {
    std::uint32_t above = value, wide = width, column = 0;
    for (unsigned level = 0; level < kLevels; ++level) {
      const std::uint32_t half = wide >> 1;
      const std::uint32_t upper = above >= half ? ~0U : 0U;
      above -= half & upper;
      wide = half + (wide & upper & 1);
      column = column * 2 - upper;
    }
    value = column;
  }
}

/// From `low` up to `value`; 32-bit integers have no greater distance than that holds.
std::uint32_t distance(int low, int value) {
  return static_cast<std::uint32_t>(value) - static_cast<std::uint32_t>(low);
}

/// The places on the curve of the cells of up to kLanes points.
template <class Point>
Lanes curveKeys(std::span<Point const> points, CMaximas<int> const& box) {
  Lanes x{}, y{}, keys{};
  for (std::size_t i = 0; i < points.size(); ++i) {
    x[i] = distance(box.Minimo.x, points[i].x);
    y[i] = distance(box.Minimo.y, points[i].y);
  }
  columns(x, distance(box.Minimo.x, box.Maximo.x));
  columns(y, distance(box.Minimo.y, box.Maximo.y));
  static_assert(kLevels == 16);
  for (std::size_t i = 0; i < points.size(); ++i) keys[i] = Hilbert16(x[i], y[i]);
  return keys;
}

/// One stable pass of a radix sort: each thread counts and moves its own stretch, and the counts give it its places.
void sortPass(VectorCrudo<Item> const& from, VectorCrudo<Item>& to, unsigned shift, unsigned parts) {
  constexpr std::size_t kBins = std::size_t{1} << kDigit;
  std::vector<std::array<std::size_t, kBins>> places(parts);
  const auto bin = [shift](Item const& item) { return item.key >> shift & (kBins - 1); };
  const auto stretch = [&](unsigned part) { return from.size() * part / parts; };
  inParallel(parts, [&](unsigned part, unsigned) {
    places[part].fill(0);
    for (std::size_t i = stretch(part); i < stretch(part + 1); ++i) ++places[part][bin(from[i])];
  });
  std::size_t place = 0;
  for (std::size_t b = 0; b < kBins; ++b) {
    for (auto& counts : places) place += std::exchange(counts[b], place);
  }
  inParallel(parts, [&](unsigned part, unsigned) {
    for (std::size_t i = stretch(part); i < stretch(part + 1); ++i) to[places[part][bin(from[i])]++] = from[i];
  });
}

/// The points of each cell by x, then y; those of one place as they come. They are few as a rule.
template <class Point>
void orderTies(VectorCrudo<Item>& items, std::vector<Point> const& points) {
  const auto before = [&points](Item const& a, Item const& b) {
    Point const &p = points[a.index], &q = points[b.index];
    return std::tuple(p.x, p.y, a.index) < std::tuple(q.x, q.y, b.index);
  };
  for (auto i = items.begin(), j = i; i != items.end(); i = j) {
    for (j = i + 1; j != items.end() && j->key == i->key;) ++j;
    if (j - i > 1) std::sort(i, j, before);
  }
}

unsigned partsFor(std::size_t n) {
  return static_cast<unsigned>(std::clamp<std::size_t>(n / kWorthAThread, 1, NumeroProcesadores()));
}

template <class Point>
CMaximas<int> boxOf(std::vector<Point> const& points) {
  const unsigned parts = partsFor(points.size());
  std::vector<CMaximas<int>> boxes(parts);
  inParallel(parts, [&](unsigned part, unsigned) {
    CMaximas<int> box;
    for (std::size_t i = points.size() * part / parts; i < points.size() * (part + 1) / parts; ++i) {
      box.Nuevo(CCoor3D<int>(points[i].x, points[i].y, 0, 0));
    }
    boxes[part] = box;
  });
  CMaximas<int> all;
  for (CMaximas<int> const& box : boxes) all.Nuevo(box);
  return all;
}

/// Indices in a row.
using Run = std::span<std::uint32_t const>;

/// Takes so many indices from the front of runs.
std::uint32_t* takeFrom(std::span<Run> runs, std::size_t count, std::uint32_t* to) {
  for (Run& run : runs) {
    const std::size_t taken = std::min(count, run.size());
    to = std::copy_n(run.begin(), taken, to);
    run = run.subspan(taken);
    count -= taken;
  }
  return to;
}

}  // namespace

template <class Point>
std::vector<std::uint32_t> hilbertOrder(std::vector<Point> const& points, Ties ties) {
  const std::size_t n = points.size();
  const unsigned parts = partsFor(n);
  const CMaximas<int> box = boxOf(points);
  std::vector<std::uint32_t> order(n);  // first, so that what is freed here is one piece and serves whoever asks next
  VectorCrudo<Item> items(n), other(n);
  inParallel(parts, [&](unsigned part, unsigned) {
    const std::size_t end = n * (part + 1) / parts;
    for (std::size_t i = n * part / parts; i < end; i += kLanes) {
      const std::size_t count = std::min(kLanes, end - i);
      const Lanes keys = curveKeys(std::span<Point const>(points).subspan(i, count), box);
      for (std::size_t k = 0; k < count; ++k) items[i + k] = {keys[k], static_cast<std::uint32_t>(i + k)};
    }
  });
  for (unsigned pass = 0; pass < kPasses; ++pass) {
    sortPass(items, other, pass * kDigit, parts);
    items.swap(other);
  }
  if (ties == Ties::byPosition) orderTies(items, points);
  inParallel(parts, [&](unsigned part, unsigned) {
    for (std::size_t i = n * part / parts; i < n * (part + 1) / parts; ++i) order[i] = items[i].index;
  });
  return order;
}

template <class Point>
void alternateHalves(std::vector<std::uint32_t>& order, std::vector<Point> const& points, std::size_t stretch) {
  const CMaximas<int> box = boxOf(points);
  const CCoor3D<int> centre = CCeldas<2>::Centro(box);
  const auto position = [&points](std::uint32_t i) { return CCoor3D<int>(points[i].x, points[i].y, 0, 0); };
  const auto quadrant = [&](std::uint32_t i) { return CCeldas<2>::Hijo(position(i), centre); };
  // The curve has done with a quadrant when it leaves it, so four searches by halves find where each of them ends.
  std::vector<Run> runs;
  std::uint64_t inQuadrant[4] = {};
  for (Run rest(order); !rest.empty(); rest = rest.subspan(runs.back().size())) {
    const auto here = [&, its = quadrant(rest.front())](std::uint32_t i) { return quadrant(i) == its; };
    runs.push_back(rest.first(static_cast<std::size_t>(std::ranges::partition_point(rest, here) - rest.begin())));
    inQuadrant[quadrant(rest.front())] = runs.back().size();
  }
  if (!CReparto2D::VaPorDos(order.size(), inQuadrant, box)) return;
  const CReparto2D halves = CReparto2D::Para(inQuadrant, centre);
  std::vector<Run> ofHalf[2];
  for (Run const& run : runs) ofHalf[halves.Mitad(position(run.front()))].push_back(run);
  std::vector<std::uint32_t> inTurns(order.size());
  std::uint32_t* const end = inTurns.data() + inTurns.size();
  for (std::uint32_t* to = inTurns.data(); to != end;) {
    for (std::vector<Run>& half : ofHalf) to = takeFrom(half, stretch, to);
  }
  order.swap(inTurns);
}

bool jumpsAbout(std::vector<ScaledPoint> const& points) {
  constexpr std::size_t kEvery = 37;  // a prime: no pattern of a scanner has its period
  constexpr double kFar = 0.05;
  CMaximas<int> box;
  double way = 0;
  std::size_t steps = 0;
  for (std::size_t i = 0; i + 1 < points.size(); i += kEvery, ++steps) {
    ScaledPoint const &a = points[i], &b = points[i + 1];
    box.Nuevo(CCoor3D<int>(a.x, a.y, 0, 0));
    way += std::hypot(static_cast<double>(b.x) - a.x, static_cast<double>(b.y) - a.y);
  }
  return steps > 0 && way > kFar * static_cast<double>(steps) * std::max(box.Ancho(), box.Alto());
}

template <class To, class From>
std::vector<To> inOrder(std::vector<From> const& items, std::vector<std::uint32_t> const& order) {
  std::vector<To> ordered = Reservado<To>(items.size());
  ordered.resize(items.size());
  const unsigned parts = partsFor(items.size());
  inParallel(parts, [&](unsigned part, unsigned) {
    for (std::size_t i = items.size() * part / parts; i < items.size() * (part + 1) / parts; ++i) {
      ordered[i] = static_cast<To>(items[order[i]]);
    }
  });
  return ordered;
}

template std::vector<std::uint32_t> hilbertOrder(std::vector<CCoor3D<int>> const&, Ties);
template std::vector<std::uint32_t> hilbertOrder(std::vector<ScaledPoint> const&, Ties);
template void alternateHalves(std::vector<std::uint32_t>&, std::vector<CCoor3D<int>> const&, std::size_t);
template void alternateHalves(std::vector<std::uint32_t>&, std::vector<ScaledPoint> const&, std::size_t);
template std::vector<CCoor3D<int>> inOrder(std::vector<CCoor3D<int>> const&, std::vector<std::uint32_t> const&);
template std::vector<CCoor3D<int>> inOrder(std::vector<ScaledPoint> const&, std::vector<std::uint32_t> const&);
template std::vector<std::uint32_t> inOrder(std::vector<std::uint32_t> const&, std::vector<std::uint32_t> const&);
template std::vector<std::array<std::uint8_t, 3>> inOrder(std::vector<std::array<std::uint8_t, 3>> const&,
                                                          std::vector<std::uint32_t> const&);

}  // namespace Meseta47::host
