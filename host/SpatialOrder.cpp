#include "host/SpatialOrder.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <thread>
#include <utility>

#include "model/CMaximas.h"
#include "model/Hilbert.h"
#include "platform/Procesadores.h"

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

/// Which of 2^16 columns the value falls in, when the interval is halved 16 times as a run halves its cells: at the
/// mean rounded down, the mean itself going up.
std::uint32_t column(int value, int low, int high) {
  std::int64_t lo = low, hi = high;
  std::uint32_t result = 0;
  for (unsigned level = 0; level < kLevels; ++level) {
    const std::int64_t middle = (lo + hi) >> 1;
    const bool upper = value >= middle;
    result = result << 1 | (upper ? 1U : 0U);
    (upper ? lo : hi) = middle;
  }
  return result;
}

std::uint32_t curveKey(CCoor3D<int> const& p, CMaximas<int> const& box) {
  const std::uint32_t x = column(p.x, box.Minimo.x, box.Maximo.x), y = column(p.y, box.Minimo.y, box.Maximo.y);
  return static_cast<std::uint32_t>(Hilbert(x << (32 - kLevels), y << (32 - kLevels)) >> 32);
}

/// One stable pass of a radix sort: each thread counts and moves its own stretch, and the counts give it its places.
void sortPass(std::vector<Item> const& from, std::vector<Item>& to, unsigned shift, unsigned parts) {
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

unsigned partsFor(std::size_t n) {
  return static_cast<unsigned>(std::clamp<std::size_t>(n / kWorthAThread, 1, NumeroProcesadores()));
}

}  // namespace

std::vector<std::uint32_t> hilbertOrder(std::vector<CCoor3D<int>> const& points) {
  const std::size_t n = points.size();
  const unsigned parts = partsFor(n);
  CMaximas<int> box;
  for (CCoor3D<int> const& p : points) box.Nuevo(p);
  std::vector<Item> items(n), other(n);
  inParallel(parts, [&](unsigned part, unsigned) {
    for (std::size_t i = n * part / parts; i < n * (part + 1) / parts; ++i) {
      items[i] = {curveKey(points[i], box), static_cast<std::uint32_t>(i)};
    }
  });
  for (unsigned pass = 0; pass < kPasses; ++pass) {
    sortPass(items, other, pass * kDigit, parts);
    items.swap(other);
  }
  std::vector<std::uint32_t> order(n);
  std::transform(items.begin(), items.end(), order.begin(), [](Item const& item) { return item.index; });
  return order;
}

template <class T>
void applyOrder(std::vector<T>& items, std::vector<std::uint32_t> const& order) {
  std::vector<T> ordered(items.size());
  const unsigned parts = partsFor(items.size());
  inParallel(parts, [&](unsigned part, unsigned) {
    for (std::size_t i = items.size() * part / parts; i < items.size() * (part + 1) / parts; ++i) {
      ordered[i] = items[order[i]];
    }
  });
  items.swap(ordered);
}

template void applyOrder(std::vector<CCoor3D<int>>& items, std::vector<std::uint32_t> const& order);
template void applyOrder(std::vector<std::uint32_t>& items, std::vector<std::uint32_t> const& order);

}  // namespace Meseta47::host
