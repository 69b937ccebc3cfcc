#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/geometry/Signo.h"

namespace Meseta47 {

// What joining lines end to end comes down to, however the lines are held.

/// How a line leaves a node, in plan.
struct CSalida {
  std::int64_t dx, dy;
  std::uint32_t cual;

  /// 0 on the side from west, included, over south to east; 1 on the other; a line without direction comes first.
  [[nodiscard]] int Mitad() const { return dx == 0 && dy == 0 ? -1 : (dy < 0 || (dy == 0 && dx < 0) ? 0 : 1); }

  /// Counter-clockwise from the west.
  [[nodiscard]] int ComparaGiro(CSalida const& o) const {
    if (Mitad() != o.Mitad()) return Mitad() < o.Mitad() ? -1 : 1;
    const double giro = ProductoVectorial(dx, dy, o.dx, o.dy);
    return giro > 0 ? -1 : (giro < 0 ? 1 : 0);
  }
};

/// Where more than two lines meet, each goes on into its neighbour in the order of their directions, so that what comes
/// out touches at the node without crossing there. Of the ways to do that, the straightest:
///
///      0   1             4 lines: 0-1 and 2-3, or 1-2 and 3-0
///       \ /              5 lines: one of them ends here, and the other four go on two by two
///    ----*----
///       / \              .
///      3   2
///
class CNudo {
 public:
  /// The lines in the order of their turn; those of one direction in an order of the caller's.
  explicit CNudo(std::vector<CSalida> const& porGiro) : salidas(porGiro), coseno(porGiro.size()) {
    for (std::size_t i = 0; i < coseno.size(); ++i) coseno[i] = Coseno(salidas[i], Siguiente(i + 1));
  }

  /// Calls `une` with the two lines of each pair.
  template <class Une>
  void Empareja(Une const& une) const {
    const std::size_t n = salidas.size(), primera = n % 2 == 0 ? PrimeraPareja() : (LaQueSobra() + 1) % n;
    for (std::size_t i = 0; i + 1 < n; i += 2) une(Siguiente(primera + i).cual, Siguiente(primera + i + 1).cual);
  }

 private:
  [[nodiscard]] CSalida const& Siguiente(std::size_t i) const { return salidas[i % salidas.size()]; }

  /// Cosine of the angle between two lines that leave a node: -1 where one goes straight on as the other.
  static double Coseno(CSalida const& a, CSalida const& b) {
    const double ax = static_cast<double>(a.dx), ay = static_cast<double>(a.dy);
    const double bx = static_cast<double>(b.dx), by = static_cast<double>(b.dy);
    const double largos = std::sqrt(ax * ax + ay * ay) * std::sqrt(bx * bx + by * by);
    return largos == 0 ? 1 : (ax * bx + ay * by) / largos;
  }

  /// Of an even number of lines: 0 when the pairs 0-1, 2-3 ... go straighter than 1-2, 3-4 ..., else 1.
  [[nodiscard]] std::size_t PrimeraPareja() const {
    double suma[2] = {0, 0};
    for (std::size_t i = 0; i < coseno.size(); ++i) suma[i % 2] += coseno[i];
    return suma[1] < suma[0] ? 1 : 0;
  }

  /// Of an odd number of lines: the one without which the others pair straightest. From leaving s out to leaving s + 2
  /// out, one pair changes: (s + 1, s + 2) becomes (s, s + 1).
  [[nodiscard]] std::size_t LaQueSobra() const {
    const std::size_t n = coseno.size();
    double suma = 0;
    for (std::size_t i = 1; i < n; i += 2) suma += coseno[i];
    double menor = suma;
    std::size_t mejor = 0;
    for (std::size_t s = 0, vez = 1; vez < n; ++vez) {
      suma += coseno[s] - coseno[(s + 1) % n];
      s = (s + 2) % n;
      if (suma < menor) {
        menor = suma;
        mejor = s;
      }
    }
    return mejor;
  }

  std::vector<CSalida> const& salidas;
  std::vector<double> coseno;  ///< between each line and the next one
};

/// Where a ring begins so that its list of places, the last one not repeated, comes first among all its turns. O(n): of
/// two candidates, each mismatch discards a whole run (Y. Shiloach, Fast canonization of circular strings, 1981).
template <class Lugar>
[[nodiscard]] std::size_t PrimerGiro(std::vector<Lugar> const& anillo) {
  const std::size_t n = anillo.size();
  std::size_t i = 0, j = 1, k = 0;
  while (i < n && j < n && k < n) {
    Lugar const &a = anillo[(i + k) % n], &b = anillo[(j + k) % n];
    if (a == b) {
      ++k;
      continue;
    }
    (b < a ? i : j) += k + 1;
    if (i == j) ++j;
    k = 0;
  }
  return std::min(i, j);
}

}  // namespace Meseta47
