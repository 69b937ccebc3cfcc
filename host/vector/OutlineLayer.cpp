#include "host/vector/OutlineLayer.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>

#include "host/Failure.h"
#include "model/drawing/CIndiceAnillos.h"

namespace Meseta47::host {

namespace {

constexpr char kLayer[] = "outline";

using Indices = std::vector<std::uint32_t>;

CLinea<int> closedLine(CTIN const& tin, Indices const& ring) {
  CLinea<int> line;
  line.Reserva(ring.size() + 1);
  for (const std::uint32_t i : ring) line << tin.puntos[i];
  line << tin.puntos[ring.front()];
  return line;
}

/// An outer ring, ready to be asked what lies in it once somebody asks.
class Outer {
 public:
  Outer(CTIN const& tin, std::size_t ring) : tin_(tin), ring_(ring) {
    const CLinea<int> line = closedLine(tin, tin.Limite()[ring]);
    twiceArea_ = std::abs(line.DobleArea());
    box_ = line.maximas;
  }

  [[nodiscard]] std::size_t ring() const { return ring_; }
  [[nodiscard]] double twiceArea() const { return twiceArea_; }
  [[nodiscard]] CMaximas<int> const& box() const { return box_; }

  /// Whether it surrounds a hole. Rings do not cross, and a hole has at most one vertex on the ring round it: the first
  /// that does not lie on the ring decides.
  bool surrounds(Indices const& hole) {
    if (!sides_) sides_ = std::make_unique<CAnillo>(closedLine(tin_, tin_.Limite()[ring_]));
    for (const std::uint32_t i : hole) {
      const auto place = sides_->Lugar(tin_.puntos[i].x, tin_.puntos[i].y);
      if (place != CAnillo::ELugar::EnElBorde) return place == CAnillo::ELugar::Dentro;
    }
    return false;
  }

 private:
  CTIN const& tin_;
  std::size_t ring_;
  double twiceArea_;
  CMaximas<int> box_;
  std::unique_ptr<CAnillo> sides_;
};

/// The outer rings by their boxes: a tree of halves, split at the middle of their centres along one axis and the other
/// in turn. Node i has the halves 2i + 1 and 2i + 2.
class OuterRings {
 public:
  explicit OuterRings(CTIN const& tin) : tin_(tin) {
    auto const& rings = tin.Limite();
    for (std::size_t i = 0; i < rings.size(); ++i) {
      if (!tin.EsHueco(i)) outers_.emplace_back(tin, i);
    }
    for (Outer& outer : outers_) order_.push_back(&outer);
    if (!order_.empty()) build(0, order_, true);
  }

  [[nodiscard]] std::vector<Outer> const& all() const { return outers_; }

  /// Place among all() of the smallest ring round a hole.
  std::size_t smallestAround(Indices const& hole) {
    std::vector<Outer*> candidates;
    if (!order_.empty()) find(0, order_, tin_.puntos[hole.front()], candidates);
    std::sort(candidates.begin(), candidates.end(), [](Outer const* a, Outer const* b) {
      return a->twiceArea() != b->twiceArea() ? a->twiceArea() < b->twiceArea() : a->ring() < b->ring();
    });
    for (Outer* outer : candidates) {
      if (outer->surrounds(hole)) return static_cast<std::size_t>(outer - outers_.data());
    }
    throw Failure("a hole of the outline lies in no polygon of it: the model is damaged");
  }

 private:
  using Part = std::span<Outer*>;

  static std::int64_t twiceCentre(Outer const& outer, bool alongX) {
    CMaximas<int> const& box = outer.box();
    return alongX ? std::int64_t{box.Minimo.x} + box.Maximo.x : std::int64_t{box.Minimo.y} + box.Maximo.y;
  }

  void build(std::size_t node, Part part, bool alongX) {
    if (boxes_.size() <= node) boxes_.resize(node + 1);
    for (Outer const* outer : part) boxes_[node].Nuevo(outer->box());
    if (part.size() == 1) return;
    const std::size_t half = part.size() / 2;
    std::nth_element(part.begin(), part.begin() + static_cast<std::ptrdiff_t>(half), part.end(),
                     [&](auto* a, auto* b) { return twiceCentre(*a, alongX) < twiceCentre(*b, alongX); });
    build(2 * node + 1, part.first(half), !alongX);
    build(2 * node + 2, part.subspan(half), !alongX);
  }

  void find(std::size_t node, Part part, CPuntoTIN const& p, std::vector<Outer*>& found) const {
    CMaximas<int> const& box = boxes_[node];
    if (p.x < box.Minimo.x || p.x > box.Maximo.x || p.y < box.Minimo.y || p.y > box.Maximo.y) return;
    if (part.size() == 1) return found.push_back(part.front());
    const std::size_t half = part.size() / 2;
    find(2 * node + 1, part.first(half), p, found);
    find(2 * node + 2, part.subspan(half), p, found);
  }

  CTIN const& tin_;
  std::vector<Outer> outers_;
  std::vector<Outer*> order_;
  std::vector<CMaximas<int>> boxes_;
};

Ring realRing(CTIN const& tin, Indices const& indices) {
  const double unit = tin.semilla.Precision();
  double const* const origin = tin.semilla.origen;
  Ring ring;
  ring.reserve(indices.size() + 1);
  for (const std::uint32_t i : indices) {
    CPuntoTIN const& p = tin.puntos[i];
    ring.push_back({p.x / unit + origin[0], p.y / unit + origin[1], p.z / unit + origin[2]});
  }
  ring.push_back(ring.front());
  return ring;
}

}  // namespace

std::vector<OutlinePolygon> nestRings(CTIN const& tin) {
  OuterRings outers(tin);
  std::vector<OutlinePolygon> polygons;
  for (Outer const& outer : outers.all()) polygons.push_back({outer.ring(), {}});
  auto const& rings = tin.Limite();
  for (std::size_t i = 0; i < rings.size(); ++i) {
    if (tin.EsHueco(i)) polygons[outers.smallestAround(rings[i])].holes.push_back(i);
  }
  return polygons;
}

VectorLayer outlineLayer(int decimals) { return {kLayer, true, decimals, {{"AREA", false}, {"HOLES", true}}}; }

std::size_t addOutline(CTIN const& tin, VectorOutput& output) {
  auto const& rings = tin.Limite();
  const double unit = tin.semilla.Precision();
  const auto twiceArea = [&](std::size_t ring) { return std::abs(closedLine(tin, rings[ring]).DobleArea()); };
  const std::vector<OutlinePolygon> polygons = nestRings(tin);
  for (OutlinePolygon const& polygon : polygons) {
    double area = twiceArea(polygon.outer);
    std::vector<Ring> shape{realRing(tin, rings[polygon.outer])};
    for (const std::size_t hole : polygon.holes) {
      area -= twiceArea(hole);
      shape.push_back(realRing(tin, rings[hole]));
    }
    const std::array<double, 2> values{area / 2 / unit / unit, static_cast<double>(polygon.holes.size())};
    output.addPolygon(shape, values, kLayer);
  }
  return polygons.size();
}

}  // namespace Meseta47::host
