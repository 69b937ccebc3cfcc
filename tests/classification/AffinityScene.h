#pragma once

#include <algorithm>
#include <optional>
#include <set>
#include <vector>

#include "model/threads/Codigos.h"
#include "support/PlainAffinity.h"
#include "support/PlanarRun.h"
#include "support/Random.h"

namespace Meseta47::test {

using support::AffinityCell;
using support::AffinityPoint;
using support::AffinityRule;

/// One set of points with classes and intensities, in scaled units.
inline CDibujo<int> AffinityCloud(std::vector<AffinityPoint> const& points, short kind = 1) {
  std::vector<CCoor3D<int>> stored;
  for (AffinityPoint const& p : points) {
    stored.emplace_back(p.x, p.y, p.z, 0);
    stored.back().clasificacion = static_cast<unsigned char>(p.cls);
    stored.back().intensidad = static_cast<unsigned short>(p.intensity);
  }
  CSetPuntos<int> set(L"cloud");
  set.CLinea<int>::Asigna(std::move(stored));
  CDibujo<int> drawing(CDataSemilla(0, 0, 0, 0));
  drawing.tipoNube = kind;
  drawing.Inserta(std::move(set));
  return drawing;
}

/// Points of a family with two classes among others: one in `sown` has the class that grows, one in ten stops it.
inline std::vector<AffinityPoint> Sown(std::vector<support::Point> const& places, int sown, std::uint64_t seed) {
  support::Random random(seed);
  std::vector<AffinityPoint> points;
  for (support::Point const& p : places) {
    const int cls = random.between(1, sown) == 1 ? 2 : random.between(1, 10) == 1 ? 6 : random.between(0, 1) * 254 + 1;
    points.push_back({p.x, p.y, p.z, random.between(0, 400), cls});
  }
  return points;
}

/// The ranges of a rule as the library takes them.
class Ranges {
 public:
  explicit Ranges(AffinityRule const& rule)
      : heights_(of(rule.heights)),
        intensities_(of(rule.intensities)),
        squares_(of(rule.squares)),
        slopes_(of(rule.slopes)),
        rule_(rule) {}
  [[nodiscard]] CRango const* Heights() const { return heights_ ? &*heights_ : nullptr; }
  [[nodiscard]] CRango const* Intensities() const { return intensities_ ? &*intensities_ : nullptr; }
  [[nodiscard]] CRango const* Squares() const { return squares_ ? &*squares_ : nullptr; }
  [[nodiscard]] CRango const* Slopes() const { return slopes_ ? &*slopes_ : nullptr; }
  [[nodiscard]] CReglasAfinidad Rules() const {
    return {.crece = static_cast<unsigned char>(rule_.grow),
            .barrera = static_cast<unsigned char>(rule_.barrier),
            .alturas = Heights(),
            .intensidades = Intensities(),
            .distancias = Squares(),
            .pendientes = Slopes()};
  }

 private:
  static std::optional<CRango> of(AffinityRule::Limits const& limits) {
    if (!limits) return std::nullopt;
    CRango range(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0);
    range.SetValorMin((*limits)[0]);
    range.SetValorMax((*limits)[1]);
    return range;
  }
  std::optional<CRango> heights_, intensities_, squares_, slopes_;
  AffinityRule rule_;
};

/// One run of the growth, and what it answered.
struct Growing {
  AffinityRule rule{};
  CDataTriangulacion data{};
  unsigned changed = 0;
  unsigned rounds = 0;
  unsigned* iteration = nullptr;
  int show = 1;
  int* progress = nullptr;
  std::vector<CDibujo<int>*> others{};
  std::vector<CPosicionEntidad> const* selection = nullptr;

  int Once(CDibujo<int>& drawing) {
    const Ranges ranges(rule);
    CTriangulacion2D triangulation(0, drawing.semilla, data, 7);
    const CInfoClasificacion grows(static_cast<unsigned char>(rule.grow), 0.0, L""),
        stops(static_cast<unsigned char>(rule.barrier), 0.0, L"");
    return triangulation.RunPuntosPorAfinidad(drawing, changed, ranges.Heights(), ranges.Intensities(),
                                              ranges.Squares(), ranges.Slopes(), grows, stops,
                                              others.empty() ? nullptr : &others, selection, iteration, show, progress);
  }
  int ToRest(CDibujo<int>& drawing) {
    const Ranges ranges(rule);
    CTriangulacion2D triangulation(0, drawing.semilla, data, 7);
    return triangulation.RunAfinidadCompleta(drawing, ranges.Rules(), changed, rounds,
                                             others.empty() ? nullptr : &others, selection);
  }
};

/// The mesh of a cloud, for whoever grows a class over it by other means: closed cells as a worker would find them,
/// with the numbers that the linking gave.
struct LinkedCells {
  std::vector<AffinityCell> cells;
  std::vector<support::Triangle> triangles;  ///< all of them
  std::vector<AffinityPoint> points;         ///< by number less 1
  std::vector<std::size_t> numberOf;         ///< of each point of the cloud; 0 for none

  /// The classes of the points of the cloud, from those of the numbers.
  [[nodiscard]] std::vector<int> ClassesOf(std::vector<AffinityPoint> const& grown,
                                           std::vector<AffinityPoint> const& cloud) const {
    std::vector<int> classes;
    for (std::size_t i = 0; i < cloud.size(); ++i) {
      classes.push_back(numberOf[i] == 0 ? cloud[i].cls : grown[numberOf[i] - 1].cls);
    }
    return classes;
  }
};

/// A cell as it stands, without those in it that have been looked at before.
inline AffinityCell CellOf(CSetTriangulos2D const& set, std::set<CSetTriangulos2D const*>& seen) {
  AffinityCell cell;
  if (!seen.insert(&set).second) return cell;
  const auto number = [](CCoor3D<int> const* p) { return p == nullptr ? 0 : p->num; };
  for (CTriangulo2D const* t = set.primero; t != nullptr; t = t->Sig()) {
    cell.own.push_back({number(t->P1()), number(t->P2()), number(t->P3())});
  }
  for (int i = 0; set.hijos != nullptr && i < 4; ++i) cell.children.push_back(CellOf(set.hijos[i], seen));
  return cell;
}
inline void AllOf(AffinityCell const& cell, std::vector<support::Triangle>& triangles) {
  triangles.insert(triangles.end(), cell.own.begin(), cell.own.end());
  for (AffinityCell const& child : cell.children) AllOf(child, triangles);
}

/// Links a cloud with nobody to empty the cells.
inline LinkedCells Link(std::vector<AffinityPoint> const& cloud) {
  constexpr unsigned kNobodyWorks = 5;
  LinkedCells linked;
  CDibujo<int> drawing = AffinityCloud(cloud);
  OpenTriangulation triangulation({}, drawing.semilla);
  EXPECT_EQ(triangulation.Link(drawing, nullptr, nullptr, 0, kNobodyWorks), kHecho);
  std::set<CSetTriangulos2D const*> seen;
  for (CSetTriangulos2D const* set : triangulation.setsCerrados.Entradas()) {
    linked.cells.push_back(CellOf(*set, seen));
    AllOf(linked.cells.back(), linked.triangles);
  }
  linked.points.resize(cloud.size());
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    const auto number = static_cast<std::size_t>(drawing[0].Punto(static_cast<int>(i)).num);
    linked.numberOf.push_back(number);
    if (number != 0) linked.points[number - 1] = cloud[i];
  }
  triangulation.BorraFicheroTemporal();
  return linked;
}

inline std::vector<int> ClassesIn(CDibujo<int> const& drawing, unsigned entity = 0) {
  std::vector<int> classes;
  for (CCoor3D<int> const& p : drawing[entity].Puntos()) classes.push_back(p.clasificacion);
  return classes;
}

}  // namespace Meseta47::test
