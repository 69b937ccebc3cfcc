#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "platform/CWinApp.h"

/// Surfaces made by hand, and what an independent count says of them.
namespace scenes {

using Meseta47::CDataSemilla;
using Meseta47::CLado;
using Meseta47::CPuntoTIN;
using Meseta47::CSetPuntosMdt;
using Meseta47::CTIN;
using Meseta47::CTriangulo;
using Meseta47::Terna;

__extension__ typedef __int128 Int128;

/// Settles the number of processors for the length of a block.
class Processors : public CWinApp {
 public:
  explicit Processors(unsigned count) { PonProcesadores(count); }
};

/// A program that listens to progress, and cancels at the n-th report.
class Listener : public CWinApp, public Meseta47::IPorcentaje {
 public:
  int reports = 0, cancelAt = 0;
  std::vector<unsigned> phases;
  bool beyondTotal = false;

  int Porcentaje(int, unsigned long long value, unsigned long long total, bool) override {
    beyondTotal = beyondTotal || value > total;
    return ++reports == cancelAt ? 0 : 1;
  }
  void Fase(int, unsigned message) override { phases.push_back(message); }
  void Cierra(int, int) override {}
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int, CString*, int) override {}
};

inline CPuntoTIN point(int x, int y, int z = 0, int number = 0) {
  return CPuntoTIN(Meseta47::CCoor3D<int>(x, y, z, number));
}

inline CTIN surface(std::vector<CPuntoTIN> const& points, CDataSemilla const& seed = {}) {
  CTIN tin(0, 0, seed);
  CSetPuntosMdt set(0, 0);
  for (CPuntoTIN const& p : points) set.push_back(p, false);
  tin.SetPuntosMdt(set);
  return tin;
}

inline bool insert(CTIN& tin, Terna const& t, bool unique = false) {
  CTriangulo triangle(tin.Punto(t[0]), tin.Punto(t[1]), tin.Punto(t[2]), -1, -1, -1);
  triangle.ColocaPuntos(true);
  return tin.Inserta(triangle, false, unique, false);
}

/// Points of a jittered grid in ascending order, and the triangles of its cells, each cut along one of its diagonals.
struct Grid {
  std::vector<CPuntoTIN> points;
  std::vector<Terna> triangles;

  Grid(int columns, int rows, unsigned seed, int step = 100) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> jitter(-step / 5, step / 5);  // below a quarter no triangle turns over
    CSetPuntosMdt set(0, 0);
    for (int i = 0, number = 0; i <= columns; ++i) {
      for (int j = 0; j <= rows; ++j) {
        set.push_back(point(i * step + jitter(random), j * step + jitter(random), jitter(random), ++number), false);
      }
    }
    set.sort(0, true);
    std::vector<std::uint32_t> index(set.size());
    for (unsigned i = 0; i < set.size(); ++i) index[static_cast<std::size_t>(set[i].num) - 1] = i;
    points.assign(set.begin(), set.end());
    const auto at = [&](int i, int j) { return index[static_cast<std::size_t>(i * (rows + 1) + j)]; };
    for (int i = 0; i < columns; ++i) {
      for (int j = 0; j < rows; ++j) {
        const std::uint32_t a = at(i, j), b = at(i + 1, j), c = at(i + 1, j + 1), d = at(i, j + 1);
        const bool diagonal = random() % 2 == 0;
        triangles.push_back(diagonal ? Terna{a, b, c} : Terna{a, b, d});
        triangles.push_back(diagonal ? Terna{a, c, d} : Terna{b, c, d});
      }
    }
  }
};

inline std::pair<std::uint32_t, std::uint32_t> side(std::uint32_t a, std::uint32_t b) {
  return {std::min(a, b), std::max(a, b)};
}

/// How many of the triangles each side bounds.
inline std::map<std::pair<std::uint32_t, std::uint32_t>, int> sideCounts(std::vector<Terna> const& triangles) {
  std::map<std::pair<std::uint32_t, std::uint32_t>, int> counts;
  for (Terna const& t : triangles) {
    for (std::size_t s = 0; s < 3; ++s) ++counts[side(t[s], t[(s + 1) % 3])];
  }
  return counts;
}

/// The sides that a run hands to the outline: those of rejected triangles that occur once among them, and those of the
/// hull; with blanks where a pair was taken out.
inline std::vector<CLado> rejectedSides(std::vector<Terna> const& all, std::vector<Terna> const& rejected) {
  std::vector<CLado> sides{CLado(0, 0, -1, 0), CLado(0, 0, -1, 0)};
  for (auto const& [ends, count] : sideCounts(rejected)) {
    if (count == 1) sides.emplace_back(ends.first, ends.second, -1, 0);
  }
  for (auto const& [ends, count] : sideCounts(all)) {
    if (count == 1) sides.emplace_back(ends.first, ends.second, -1, 0);
  }
  return sides;
}

template <class Points>
Int128 twiceArea(Points const& points, std::vector<std::uint32_t> const& ring) {
  Int128 sum = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    auto const &a = points[ring[i]], &b = points[ring[(i + 1) % ring.size()]];
    sum += static_cast<Int128>(a.x) * b.y - static_cast<Int128>(b.x) * a.y;
  }
  return sum;
}

/// Positive whichever way the triangles run.
template <class Points>
Int128 twiceArea(Points const& points, std::vector<Terna> const& triangles) {
  Int128 sum = 0;
  for (Terna const& t : triangles) {
    const Int128 area = twiceArea(points, std::vector<std::uint32_t>{t[0], t[1], t[2]});
    sum += area < 0 ? -area : area;
  }
  return sum;
}

/// What is wrong with an outline; empty when nothing is.
inline std::string outlineFault(CTIN const& tin, std::vector<Terna> const& triangles) {
  std::set<std::pair<std::uint32_t, std::uint32_t>> boundary;
  for (auto const& [ends, count] : sideCounts(triangles)) {
    if (count == 1) boundary.insert(ends);
  }
  Int128 area = 0;
  for (std::size_t r = 0; r < tin.Limite().size(); ++r) {
    auto const& ring = tin.Limite()[r];
    const std::string here = "ring " + std::to_string(r);
    if (ring.size() < 3) return here + " has fewer than three points";
    if (std::set<std::uint32_t>(ring.begin(), ring.end()).size() != ring.size()) return here + " meets a point twice";
    if (*std::min_element(ring.begin(), ring.end()) != ring[0]) return here + " does not begin at its lowest index";
    for (std::size_t i = 0; i < ring.size(); ++i) {
      if (boundary.erase(side(ring[i], ring[(i + 1) % ring.size()])) == 0) return here + " has a side too many";
    }
    const Int128 ringArea = twiceArea(tin.puntos, ring);
    if (tin.EsHueco(r) != (ringArea < 0)) return here + " runs the wrong way for what it is";
    area += ringArea;
  }
  if (!std::is_sorted(tin.Limite().begin(), tin.Limite().end())) return "rings are out of order";
  if (!boundary.empty()) return std::to_string(boundary.size()) + " boundary sides are missing";
  return area == twiceArea(tin.puntos, triangles) ? "" : "the rings do not enclose the area of the triangles";
}

inline std::vector<Terna> sortedTriangles(CTIN const& tin) {
  std::vector<Terna> all;
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) all.push_back(tin.Vertices(i));
  return all;
}

inline std::vector<Terna> neighbours(CTIN const& tin) {
  std::vector<Terna> all;
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) all.push_back(tin.Vecinos(i));
  return all;
}

/// A grid with some triangles missing, with its outline, sorted and linked.
inline CTIN finished(Grid const& grid, std::function<bool(std::size_t)> const& keep, CDataSemilla const& seed = {}) {
  CTIN tin = surface(grid.points, seed);
  std::vector<Terna> rejected;
  for (std::size_t i = 0; i < grid.triangles.size(); ++i) {
    if (keep(i)) {
      insert(tin, grid.triangles[i]);
    } else {
      rejected.push_back(grid.triangles[i]);
    }
  }
  auto sides = rejectedSides(grid.triangles, rejected);
  tin.GenerarLimiteAPartirLados(sides, 1, 0);
  tin.Sort(nullptr, 0, true);
  return tin;
}

}  // namespace scenes
