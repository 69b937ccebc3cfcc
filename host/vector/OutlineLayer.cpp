#include "host/vector/OutlineLayer.h"

#include <algorithm>
#include <cmath>
#include <cpl_conv.h>
#include <cpl_quad_tree.h>
#include <memory>

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

CPLRectObj rectangle(CMaximas<int> const& box) {
  return {static_cast<double>(box.Minimo.x), static_cast<double>(box.Minimo.y), static_cast<double>(box.Maximo.x),
          static_cast<double>(box.Maximo.y)};
}

void boxOf(void const* outer, CPLRectObj* box) { *box = rectangle(static_cast<Outer const*>(outer)->box()); }

/// The outer rings by their boxes.
class OuterRings {
 public:
  explicit OuterRings(CTIN const& tin) : tin_(tin) {
    auto const& rings = tin.Limite();
    for (std::size_t i = 0; i < rings.size(); ++i) {
      if (!tin.EsHueco(i)) outers_.emplace_back(tin, i);
    }
    CMaximas<int> all;
    for (Outer const& outer : outers_) all.Nuevo(outer.box());
    const CPLRectObj limits = rectangle(all);
    tree_.reset(CPLQuadTreeCreate(&limits, boxOf));
    for (Outer& outer : outers_) CPLQuadTreeInsert(tree_.get(), &outer);
  }

  [[nodiscard]] std::vector<Outer> const& all() const { return outers_; }

  /// Place among all() of the smallest ring round a hole.
  std::size_t smallestAround(Indices const& hole) {
    CPuntoTIN const& p = tin_.puntos[hole.front()];
    const auto x = static_cast<double>(p.x), y = static_cast<double>(p.y);
    const CPLRectObj at{x, y, x, y};
    int count = 0;
    const std::unique_ptr<void*, void (*)(void*)> found(CPLQuadTreeSearch(tree_.get(), &at, &count), CPLFree);
    std::vector<Outer*> candidates;
    for (int i = 0; i < count; ++i) candidates.push_back(static_cast<Outer*>(found.get()[i]));
    std::sort(candidates.begin(), candidates.end(), [](Outer const* a, Outer const* b) {
      return a->twiceArea() != b->twiceArea() ? a->twiceArea() < b->twiceArea() : a->ring() < b->ring();
    });
    for (Outer* outer : candidates) {
      if (outer->surrounds(hole)) return static_cast<std::size_t>(outer - outers_.data());
    }
    throw Failure("a hole of the outline lies in no polygon of it: the model is damaged");
  }

 private:
  CTIN const& tin_;
  std::vector<Outer> outers_;
  std::unique_ptr<CPLQuadTree, void (*)(CPLQuadTree*)> tree_{nullptr, CPLQuadTreeDestroy};
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
