#include "host/SpatialOrder3D.h"

#include <algorithm>
#include <array>

#include "model/geometry/CMaximas.h"
#include "model/storage/OrdenaPorCifras.h"
#include "model/threads/Reparto.h"

namespace Meseta47::host {

namespace {

constexpr unsigned kBits = 15;  // of each axis: a hundred times finer than the cells of most runs
constexpr std::size_t kAhead = 32;
constexpr std::size_t kBlock = 1 << 14;

struct Item {
  std::uint32_t low, high;  // of the place on the curve
  std::uint32_t index;
};

constexpr std::size_t kLanes = 8;  // points whose places are found together: whole registers of any processor

/// Of several points, on one axis.
using Column = std::array<std::uint32_t, kLanes>;

/// Bit i goes to place 3 i, of 15 bits.
std::uint64_t spread(std::uint64_t bits) {
  bits = (bits | bits << 16) & 0xFF0000FF;
  bits = (bits | bits << 8) & 0x00F00F00F00F;
  bits = (bits | bits << 4) & 0x0C30C30C30C3;
  return (bits | bits << 2) & 0x249249249249;
}

/// The places of cells on the curve (Skilling, "Programming the Hilbert curve", AIP Conference Proceedings 707, 2004).
/// No jump depends on a coordinate, so that all points go through the steps together.
std::array<std::uint64_t, kLanes> curvePlaces(Column x, Column y, Column z) {
  // A bit that is set turns the first axis over; else what is below it is exchanged with the other.
  const auto turnOver = [](Column& first, Column& axis, std::uint32_t q) {
    for (std::size_t i = 0; i < kLanes; ++i) {
      const std::uint32_t set = 0U - static_cast<std::uint32_t>((axis[i] & q) != 0);
      const std::uint32_t swapped = (first[i] ^ axis[i]) & (q - 1) & ~set;
      first[i] ^= ((q - 1) & set) | swapped;
      axis[i] ^= swapped;
    }
  };
  for (std::uint32_t q = 1U << (kBits - 1); q > 1; q >>= 1) {
    for (std::uint32_t& first : x) first ^= (q - 1) & (0U - static_cast<std::uint32_t>((first & q) != 0));
    turnOver(x, y, q);
    turnOver(x, z, q);
  }
  for (std::size_t i = 0; i < kLanes; ++i) {
    y[i] ^= x[i];
    z[i] ^= y[i];
  }
  Column turn{};
  for (std::uint32_t q = 1U << (kBits - 1); q > 1; q >>= 1) {
    for (std::size_t i = 0; i < kLanes; ++i) turn[i] ^= (q - 1) & (0U - static_cast<std::uint32_t>((z[i] & q) != 0));
  }
  std::array<std::uint64_t, kLanes> places;
  for (std::size_t i = 0; i < kLanes; ++i) {
    places[i] = spread(x[i] ^ turn[i]) << 2 | spread(y[i] ^ turn[i]) << 1 | spread(z[i] ^ turn[i]);
  }
  return places;
}

}  // namespace

template <class Point>
std::vector<std::uint32_t> spaceOrder(std::vector<Point> const& points) {
  const std::size_t n = points.size();
  CMaximas<int> box;
  for (Point const& p : points) box.Nuevo(CCoor3D<int>(p.x, p.y, p.z, 0));
  std::vector<std::uint32_t> order(n);  // first, so that what is freed here is one piece and serves whoever asks next
  // The run's own box: three times as wide as the greatest extent, around the extents.
  const double wide = std::max({box.Ancho(), box.Alto(), box.Altura()});
  const auto column = [wide](int value, int least, int greatest) {
    const double width = static_cast<double>(greatest) - least + 2 * wide + 1;
    return static_cast<std::uint32_t>((static_cast<double>(value) - least + wide) / width * (1U << kBits));
  };
  VectorCrudo<Item> items(n), other(n);
  Reparte(n, kBlock, [&](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; i += kLanes) {
      const std::size_t count = std::min(kLanes, to - i);
      Column x{}, y{}, z{};
      for (std::size_t k = 0; k < count; ++k) {
        Point const& p = points[i + k];
        x[k] = column(p.x, box.Minimo.x, box.Maximo.x);
        y[k] = column(p.y, box.Minimo.y, box.Maximo.y);
        z[k] = column(p.z, box.Minimo.z, box.Maximo.z);
      }
      const auto places = curvePlaces(x, y, z);
      for (std::size_t k = 0; k < count; ++k) {
        items[i + k] = {static_cast<std::uint32_t>(places[k] & 0x3FFFFF), static_cast<std::uint32_t>(places[k] >> 22),
                        static_cast<std::uint32_t>(i + k)};
      }
    }
  });
  OrdenaPorCifras(items, other, 22, [](Item const& item) { return item.low; });
  OrdenaPorCifras(items, other, 3 * kBits - 22, [](Item const& item) { return item.high; });
  std::size_t next = 0;
  for (std::size_t i = 0; i < n; i += kAhead) order[next++] = items[i].index;
  for (std::size_t i = 0; i < n; ++i) {
    if (i % kAhead != 0) order[next++] = items[i].index;
  }
  return order;
}

template std::vector<std::uint32_t> spaceOrder(std::vector<CCoor3D<int>> const&);
template std::vector<std::uint32_t> spaceOrder(std::vector<ScaledPoint> const&);

}  // namespace Meseta47::host
