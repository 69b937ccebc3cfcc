#include "support/PlanarFeeds.h"

#include <algorithm>
#include <cstdint>
#include <ostream>

#include "model/geometry/Hilbert.h"

namespace Meseta47::test {

namespace {

using support::Family;

constexpr std::uint64_t kShuffle = 20'260;  // any seed but 0, which leaves the natural order

char const* NameOf(Order order) {
  switch (order) {
    case Order::File:
      return "InFileOrder";
    case Order::Shuffled:
      return "Shuffled";
    case Order::Hilbert:
      return "Hilbert";
  }
  return "";
}

}  // namespace

void SortAlongHilbert(std::vector<support::Point>& points) {
  const auto place = [](support::Point const& p) {
    const auto shifted = [](std::int32_t v) { return static_cast<std::uint32_t>(v) ^ 0x80000000U; };
    return Hilbert(shifted(p.x), shifted(p.y));
  };
  std::stable_sort(points.begin(), points.end(),
                   [&](support::Point const& a, support::Point const& b) { return place(a) < place(b); });
}

std::string Feed::Name() const {
  return std::string(support::name(family)) + "_" + NameOf(order) + "_" + std::to_string(size);
}

std::vector<support::Point> Feed::Points() const {
  std::vector<support::Point> points = support::family(family, size, order == Order::Shuffled ? kShuffle : 0);
  if (order == Order::Hilbert) SortAlongHilbert(points);
  return points;
}

std::ostream& operator<<(std::ostream& out, Feed const& feed) { return out << feed.Name(); }

std::vector<Feed> EveryFeed(std::size_t size) {
  std::vector<Feed> feeds;
  for (const Family family : support::kAllFamilies) {
    for (const Order order : {Order::File, Order::Shuffled, Order::Hilbert}) feeds.push_back({family, order, size});
  }
  return feeds;
}

std::size_t LargestSize(Family family) {
  constexpr std::size_t kAll = 200'000, kFew = 10'000;
  switch (family) {
    case Family::HorizontalLine:
    case Family::VerticalLine:
    case Family::GeneralLine:
      return kFew;
    default:
      return kAll;
  }
}

}  // namespace Meseta47::test
