#pragma once

#include <cstddef>
#include <vector>

#include "model/drawing/CInfoClasificacion.h"
#include "model/geometry/CCoor3D.h"
#include "model/geometry/CRango.h"

namespace Meseta47 {

/// Between which neighbours in a mesh a class grows. Classes are told apart by their number alone.
struct URDIMBRE_API CReglasAfinidad {
  unsigned char crece = 0;    ///< the class that grows
  unsigned char barrera = 0;  ///< the class that stops it: its points never change, nor do those of the first
  // Each null lets every pair pass, and so do the last two when no limit was set.
  CRango const* alturas = nullptr;       ///< difference of heights, scaled units
  CRango const* intensidades = nullptr;  ///< difference of intensities
  CRango const* distancias = nullptr;    ///< squared distance in plan, squared scaled units
  CRango const* pendientes = nullptr;    ///< rise over run from the point of the class to its neighbour

  [[nodiscard]] bool EsFija(unsigned char clase) const { return clase == crece || clase == barrera; }
  /// Whether the class goes from `n` to its neighbour `p`, as far as their places tell.
  [[nodiscard]] bool EnLugar(CCoor3D<int> const& n, CCoor3D<int> const& p) const {
    if (alturas != nullptr && alturas->EsValido(n.z, p.z) == 0) return false;
    if (distancias != nullptr && distancias->HayRango() != 0 && distancias->EsValido(n.Distancia2(p, 0)) == 0) {
      return false;
    }
    return pendientes == nullptr || pendientes->HayRango() == 0 || pendientes->EsValido(n.Pendiente(p)) != 0;
  }
  /// The same, as far as their intensities tell.
  [[nodiscard]] bool EnIntensidad(unsigned short n, unsigned short p) const {
    return intensidades == nullptr || intensidades->EsValido(n, p) != 0;
  }
};

/// The growth of a class while a mesh is linked: its rules, and the class of each point, by its number. One byte a
/// point, three with a range of intensities.
///
/// The inserting thread notes a point before it goes in; the worker changes the classes of points in closed sets, which
/// were noted before. So the two never touch one entry, and the tables have their full size before either begins.
class URDIMBRE_API CAfinidad {
 public:
  CReglasAfinidad reglas;
  unsigned* cambiados = nullptr;  ///< grows by one for each point that takes the class; null for none
  bool guarda = false;            ///< triangles that growth may still go through are written to the run's file

  /// Room for points 1 to `numeros`, all of class 0.
  void Prepara(std::size_t numeros) {
    clases.assign(numeros, 0);
    intensidad.assign(reglas.intensidades != nullptr ? numeros : 0, 0);
  }
  void Vacia() {
    std::vector<unsigned char>().swap(clases);
    std::vector<unsigned short>().swap(intensidad);
  }
  void Anota(CCoor3D<int> const& p) {
    clases[Indice(p)] = p.clasificacion;
    if (!intensidad.empty()) intensidad[Indice(p)] = p.intensidad;
  }

  // --- what growth asks for; the points have numbers from 1 to the last ---
  [[nodiscard]] unsigned char Clase(CCoor3D<int> const& p) const { return clases[Indice(p)]; }
  [[nodiscard]] bool SonAfines(CCoor3D<int> const& n, CCoor3D<int> const& p) const {
    return reglas.EnLugar(n, p) &&
           (intensidad.empty() || reglas.EnIntensidad(intensidad[Indice(n)], intensidad[Indice(p)]));
  }
  void Toma(CCoor3D<int> const& p) {
    clases[Indice(p)] = reglas.crece;
    if (cambiados != nullptr) ++*cambiados;
  }

 private:
  static std::size_t Indice(CCoor3D<int> const& p) { return static_cast<std::size_t>(p.num) - 1; }

  std::vector<unsigned char> clases;
  std::vector<unsigned short> intensidad;  ///< empty where the rules don't ask for it
};

/// Grows the class within one triangle, whose vertices `v` have numbers above 0, as far as a single look takes it: a
/// vertex that takes the class hands it on at once. `tabla` tells and takes the classes, as CAfinidad does. False when
/// nothing can change here any more.
template <class T>
bool CreceEnTriangulo(CReglasAfinidad const& reglas, T& tabla, CCoor3D<int> const* const (&v)[3], bool& cambio) {
  unsigned char c[3] = {tabla.Clase(*v[0]), tabla.Clase(*v[1]), tabla.Clase(*v[2])};
  const auto todasFijas = [&] { return reglas.EsFija(c[0]) && reglas.EsFija(c[1]) && reglas.EsFija(c[2]); };
  if (todasFijas()) return false;
  if (c[0] != reglas.crece && c[1] != reglas.crece && c[2] != reglas.crece) return true;
  for (unsigned p = 0; p < 3; ++p) {
    for (unsigned n = 0; n < 3; ++n) {
      if (n == p || reglas.EsFija(c[p]) || c[n] != reglas.crece || !tabla.SonAfines(*v[n], *v[p])) continue;
      c[p] = reglas.crece;
      tabla.Toma(*v[p]);
      cambio = true;
    }
  }
  return !todasFijas();
}

}  // namespace Meseta47
