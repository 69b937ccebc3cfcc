#pragma once

#include <algorithm>
#include <cmath>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// Axis-aligned box. One that has received nothing is empty: its least values are greater than its greatest ones.
template <class T>
class CMaximas {
 public:
  CCoor3D<T> Maximo;  ///< greatest x, y and z
  CCoor3D<T> Minimo;  ///< least x, y and z

  CMaximas() { Borra(); }
  CMaximas(CMaximas const&) = default;
  CMaximas& operator=(CMaximas const&) = default;
  virtual ~CMaximas() = default;

  template <class U>
  requires(!std::is_same_v<T, U>) explicit CMaximas(CMaximas<U> const& m) {
    Borra();
    if (!m.EstanVacias(true)) {
      Maximo = CCoor3D<T>(m.Maximo);
      Minimo = CCoor3D<T>(m.Minimo);
    }
  }

  /// Makes the box empty.
  void Borra() {
    constexpr T kMayor = std::numeric_limits<T>::max();
    constexpr T kMenor = std::numeric_limits<T>::lowest();
    Maximo = CCoor3D<T>(kMenor, kMenor, kMenor, 0);
    Minimo = CCoor3D<T>(kMayor, kMayor, kMayor, 0);
  }

  /// Grows the box to hold the point, or the other box; an empty box changes nothing.
  void Nuevo(CCoor3D<T> const& p) {
    Maximo.x = std::max(Maximo.x, p.x);
    Maximo.y = std::max(Maximo.y, p.y);
    Maximo.z = std::max(Maximo.z, p.z);
    Minimo.x = std::min(Minimo.x, p.x);
    Minimo.y = std::min(Minimo.y, p.y);
    Minimo.z = std::min(Minimo.z, p.z);
  }
  void Nuevo(CMaximas const& m) {
    Nuevo2(m.Maximo.x, m.Minimo.x, Maximo.x, Minimo.x);
    Nuevo2(m.Maximo.y, m.Minimo.y, Maximo.y, Minimo.y);
    Nuevo2(m.Maximo.z, m.Minimo.z, Maximo.z, Minimo.z);
  }

  /// Centre of the box: the exact mean of its limits, halves rounded towards minus infinity for integers. In plan, with
  /// z 0, unless `conZ` is set.
  [[nodiscard]] CCoor3D<T> Centro(bool conZ) const {
    return CCoor3D<T>(Media(Minimo.x, Maximo.x), Media(Minimo.y, Maximo.y), conZ ? Media(Minimo.z, Maximo.z) : T(0), 0);
  }

  /// Whether the point lies in the box, limits included. The height counts only where the box has one: the cells of a
  /// plan division have none. The integer selects nothing.
  [[nodiscard]] bool Dentro(CCoor3D<T> const& p, int) const {
    return p.x >= Minimo.x && p.x <= Maximo.x && p.y >= Minimo.y && p.y <= Maximo.y &&
           (Minimo.z > Maximo.z || (p.z >= Minimo.z && p.z <= Maximo.z));
  }
  /// Whether the other box lies wholly in this one; an empty box lies in none.
  [[nodiscard]] bool Dentro(CMaximas const& m, int modo) const {
    if (m.EstanVacias(true)) return false;
    if (m.Minimo.z > m.Maximo.z || Minimo.z > Maximo.z) {
      return m.Minimo.x >= Minimo.x && m.Maximo.x <= Maximo.x && m.Minimo.y >= Minimo.y && m.Maximo.y <= Maximo.y;
    }
    return Dentro(m.Maximo, modo) && Dentro(m.Minimo, modo);
  }

  /// Whether the box is empty in plan.
  [[nodiscard]] bool EstanVacias(bool) const { return Minimo.x > Maximo.x || Minimo.y > Maximo.y; }

  /// Widths, formed in doubles; 0 on an axis where the box is empty.
  [[nodiscard]] double Ancho() const { return Anchura(Minimo.x, Maximo.x); }
  [[nodiscard]] double Alto() const { return Anchura(Minimo.y, Maximo.y); }
  [[nodiscard]] double Altura() const { return Anchura(Minimo.z, Maximo.z); }

  [[nodiscard]] bool operator==(CMaximas const& m) const { return Maximo == m.Maximo && Minimo == m.Minimo; }
  [[nodiscard]] bool operator!=(CMaximas const& m) const { return !(*this == m); }
  /// Order of the least corners, then of the greatest ones.
  [[nodiscard]] bool operator<(CMaximas const& m) const {
    if (Minimo != m.Minimo) return (Minimo < m.Minimo) != 0;
    return (Maximo < m.Maximo) != 0;
  }

  [[nodiscard]] CMaximas operator*(double factor) const {
    CMaximas r(*this);
    if (!EstanVacias(true)) {
      r.Maximo = Maximo * factor;
      r.Minimo = Minimo * factor;
    }
    return r;
  }

  /// Binary form: `Maximo`, then `Minimo`, each as a coordinate writes itself: 24 bytes. False when the disk refuses,
  /// or on a short read, with nothing changed.
  bool Write(CFile* fichero, CDataSemilla const& semilla, int a, CTipoFichero tipo) const {
    return Maximo.Write(fichero, semilla, a, tipo, 0, 3) && Minimo.Write(fichero, semilla, a, tipo, 0, 3);
  }
  bool Read(CFile* fichero, double factor, CTipoFichero tipo) {
    CMaximas leida;
    if (!leida.Maximo.Read(fichero, factor, tipo) || !leida.Minimo.Read(fichero, factor, tipo)) return false;
    *this = leida;
    return true;
  }

 private:
  static void Nuevo2(T mayor, T menor, T& miMayor, T& miMenor) {
    if (menor > mayor) return;
    miMayor = std::max(miMayor, mayor);
    miMenor = std::min(miMenor, menor);
  }
  static T Media(T a, T b) {
    if constexpr (std::is_same_v<T, int>) {
      return static_cast<int>((static_cast<std::int64_t>(a) + b) >> 1);
    } else {
      return a + (b - a) / 2;
    }
  }
  static double Anchura(T menor, T mayor) {
    return mayor < menor ? 0.0 : static_cast<double>(mayor) - static_cast<double>(menor);
  }
};

URDIMBRE_INSTANCIA_DE(CMaximas<int>);
URDIMBRE_INSTANCIA_DE(CMaximas<double>);

}  // namespace Meseta47
