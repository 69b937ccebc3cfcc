#include "host/laz/Copc.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/las/LasBytes.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kInfoBytes = 160;
constexpr std::size_t kEntryBytes = 32;
constexpr int kDeepest = 30;  // columns are 32-bit integers

struct Page {
  std::uint64_t place, bytes;
};

struct Entry {
  CopcNode node;
  std::uint64_t place;
  std::int32_t bytes, points;
};

Entry entryAt(std::uint8_t const* from) {
  Entry entry{};
  entry.node.level = load<std::int32_t>(from);
  for (std::size_t axis = 0; axis < 3; ++axis) entry.node.column[axis] = load<std::int32_t>(from + 4 + 4 * axis);
  entry.place = load<std::uint64_t>(from + 16);
  entry.bytes = load<std::int32_t>(from + 24);
  entry.points = load<std::int32_t>(from + 28);
  return entry;
}

/// Goes through the pages. Damage can make them lead in a ring: they never hold more bytes together than the file.
class Hierarchy {
 public:
  Hierarchy(ByteSource& source, LasHeader const& header) : source_(source), header_(header), budget_(source.size()) {}

  /// False when something does not fit.
  bool read(Page root) {
    pages_ = {root};
    while (!pages_.empty()) {
      const Page page = pages_.back();
      pages_.pop_back();
      if (!readPage(page)) return false;
    }
    return true;
  }

  [[nodiscard]] std::vector<CopcNode> nodes() && {
    std::sort(nodes_.begin(), nodes_.end(), [](auto& a, auto& b) { return a.chunk.place < b.chunk.place; });
    return std::move(nodes_);
  }

 private:
  bool readPage(Page page) {
    if (page.bytes > budget_ || page.place > source_.size() || page.bytes > source_.size() - page.place) return false;
    budget_ -= page.bytes;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(page.bytes / kEntryBytes * kEntryBytes));
    if (source_.read(page.place, bytes) < bytes.size()) return false;
    for (std::size_t at = 0; at < bytes.size(); at += kEntryBytes) {
      if (!take(entryAt(bytes.data() + at))) return false;
    }
    return true;
  }

  bool take(Entry entry) {
    if (entry.points == 0) return true;
    if (entry.bytes < 0 || entry.points < -1) return false;
    const auto bytes = static_cast<std::uint64_t>(entry.bytes);
    if (entry.points == -1) {
      if (bytes < kEntryBytes) return false;
      pages_.push_back({entry.place, bytes});
      return true;
    }
    const bool inFile = entry.place >= header_.offsetToPoints && entry.place <= source_.size() &&
                        bytes <= source_.size() - entry.place && bytes >= header_.recordLength;
    if (!inFile || entry.node.level < 0 || entry.node.level > kDeepest) return false;
    entry.node.chunk = {0, static_cast<std::uint64_t>(entry.points), entry.place, bytes};
    nodes_.push_back(entry.node);
    return true;
  }

  ByteSource& source_;
  LasHeader const& header_;
  std::uint64_t budget_;
  std::vector<Page> pages_;
  std::vector<CopcNode> nodes_;
};

}  // namespace

int Copc::levels() const {
  int deepest = -1;
  for (CopcNode const& node : nodes) deepest = std::max(deepest, node.level);
  return deepest + 1;
}

double Copc::spacingOf(int level) const { return std::ldexp(spacing, -level); }

bool Copc::touches(CopcNode const& node, Bounds const& box) const {
  const double side = std::ldexp(2 * halfSize, -node.level);
  const double slack = 1e-6 * side;  // what rounding moved over an edge still belongs to the cube
  const auto meets = [&](std::size_t axis, double min, double max) {
    const double from = centre[axis] - halfSize + side * node.column[axis];
    return from - slack <= max && from + side + slack >= min;
  };
  return meets(0, box.minX, box.maxX) && meets(1, box.minY, box.maxY);
}

int Copc::levelFor(double resolution) const {
  const int last = std::max(levels() - 1, 0);
  int level = 0;
  while (level < last && spacingOf(level) > resolution) ++level;
  return level;
}

std::optional<Copc> readCopc(ByteSource& source, LasHeader const& header, std::vector<LasVlr> const& vlrs) {
  const auto info = std::find_if(vlrs.begin(), vlrs.end(), [](LasVlr const& v) { return v.is("copc", 1); });
  if (!header.compressed || info == vlrs.end() || info->dataLength < kInfoBytes) return std::nullopt;
  std::array<std::uint8_t, kInfoBytes> bytes{};
  if (source.read(info->dataStart, bytes) < bytes.size()) return std::nullopt;
  Copc copc;
  for (std::size_t axis = 0; axis < 3; ++axis) copc.centre[axis] = load<double>(bytes.data() + 8 * axis);
  copc.halfSize = load<double>(bytes.data() + 24);
  copc.spacing = load<double>(bytes.data() + 32);
  if (!(copc.halfSize > 0 && copc.spacing > 0) || !std::isfinite(copc.halfSize + copc.spacing)) return std::nullopt;
  Hierarchy hierarchy(source, header);
  if (!hierarchy.read({load<std::uint64_t>(bytes.data() + 40), load<std::uint64_t>(bytes.data() + 48)})) {
    return std::nullopt;
  }
  copc.nodes = std::move(hierarchy).nodes();
  return copc;
}

}  // namespace Meseta47::host
