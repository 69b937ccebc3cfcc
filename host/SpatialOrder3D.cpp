#include "host/SpatialOrder3D.h"

#include <algorithm>

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

/// The place of a cell on the curve (Skilling, "Programming the Hilbert curve", AIP Conference Proceedings 707, 2004).
std::uint64_t curvePlace(std::uint32_t x, std::uint32_t y, std::uint32_t z) {
  std::uint32_t c[3] = {x, y, z};
  for (std::uint32_t q = 1U << (kBits - 1); q > 1; q >>= 1) {
    const std::uint32_t mask = q - 1;
    for (std::uint32_t& axis : c) {
      // Branch-free: the bit is unpredictable. Set: turn the first axis over; else exchange it with this one.
      const std::uint32_t set = (axis & q) != 0 ? ~0U : 0U;
      const std::uint32_t swapped = (c[0] ^ axis) & mask & ~set;
      c[0] ^= (mask & set) | swapped;
      axis ^= swapped;
    }
  }
  c[1] ^= c[0];
  c[2] ^= c[1];
  std::uint32_t turn = 0;
  for (std::uint32_t q = 1U << (kBits - 1); q > 1; q >>= 1) turn ^= (c[2] & q) != 0 ? q - 1 : 0;
  std::uint64_t place = 0;
  for (unsigned bit = kBits; bit-- > 0;) {
    for (const std::uint32_t axis : c) place = place << 1 | (((axis ^ turn) >> bit) & 1);
  }
  return place;
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
    for (std::size_t i = from; i < to; ++i) {
      Point const& p = points[i];
      const std::uint64_t place =
          curvePlace(column(p.x, box.Minimo.x, box.Maximo.x), column(p.y, box.Minimo.y, box.Maximo.y),
                     column(p.z, box.Minimo.z, box.Maximo.z));
      items[i] = {static_cast<std::uint32_t>(place & 0x3FFFFF), static_cast<std::uint32_t>(place >> 22),
                  static_cast<std::uint32_t>(i)};
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
