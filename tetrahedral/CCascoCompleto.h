#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// Fills what the frame eats of a convex hull: from the tetrahedra that touch the frame, those that stand in their
/// place in the mesh of the points alone, as if the frame had never been there.
///
/// A tetrahedron without a corner of the frame has an empty sphere and belongs to both meshes. What is missing lies
/// between those and the hull, and no point lies inside it, so all its vertices are on its border: vertices of
/// tetrahedra with a corner. The mesh of these vertices alone, with one vertex at infinity in the place of the frame,
/// has the missing tetrahedra; they are what can be reached from infinity without crossing a face of a tetrahedron that
/// is there already. Where points lie on one sphere, the one with the greatest number counts as inside, then the one
/// before it and so on, which is what inserting them in the order of their numbers comes to: so both meshes agree on
/// every face.
///
/// Exact. Costs O(n log n) on the vertices around the gap as a rule: about the points of the hull's surface for a solid
/// cloud, nearly all for a cloud of surfaces, at 400 bytes each.
class URDIMBRE_API CCascoCompleto {
 public:
  using CCuatro = std::array<std::int32_t, 4>;

  /// Point `i` of the mesh has the number `i + 1`; null where no tetrahedron has it. The points must stay.
  explicit CCascoCompleto(std::vector<CCoor3D<int> const*> const& losPuntos) : puntos(losPuntos) {}

  /// A tetrahedron with a corner of the frame, numbers ascending.
  void Anade(CCuatro const& numeros);
  /// Calls `recibe` with the numbers, ascending, of each tetrahedron that is missing. `sigue()` is asked now and then;
  /// its false ends the work, and is the answer. When all points lie on one plane there is none.
  bool Completa(std::function<void(CCuatro const&)> const& recibe, std::function<bool()> const& sigue = {});

 private:
  using CCara = std::array<std::int32_t, 3>;  ///< ascending
  static constexpr std::int32_t kInfinito = 0;

  /// Turns like the first of all; across from vertex `i` lies the neighbour `n[i]`. One of the vertices may be the one
  /// at infinity: then the others are a face of the hull, seen from outside.
  struct CCelda {
    std::int32_t v[4];
    std::int32_t n[4];
    std::uint32_t marca = 0;
  };
  /// A face of the star around a new point: the edge across from it, to find the face's other side by.
  struct CLado {
    std::int32_t a, b;
    std::int32_t celda;
    int cara;
  };

  [[nodiscard]] CCoor3D<int> const& P(std::int32_t numero) const {
    return *puntos[static_cast<std::size_t>(numero) - 1];
  }
  [[nodiscard]] static int Infinito(CCelda const& c);
  /// Sign of the volume of the cell with vertex `i` replaced.
  [[nodiscard]] int Giro(CCelda const& c, int i, std::int32_t por) const;
  [[nodiscard]] bool EnConflicto(CCelda const& c, std::int32_t p) const;
  [[nodiscard]] std::int32_t Localiza(std::int32_t p) const;
  [[nodiscard]] bool Empieza();
  void Inserta(std::int32_t p);
  void Enlaza();
  std::int32_t Nueva(CCelda const& c);
  void Recorre(std::function<void(CCuatro const&)> const& recibe);

  std::vector<CCoor3D<int> const*> const& puntos;
  std::vector<std::int32_t> vertices;  ///< of the gap
  std::vector<CCara> caras;            ///< of tetrahedra with one corner; those that come once have one without behind

  std::vector<CCelda> celdas;
  std::vector<std::int32_t> libres, conflicto, nuevas;
  std::vector<CLado> lados;
  std::int32_t ultima = 0;
  std::uint32_t marca = 0;
  std::int32_t primeros[4] = {};
};

}  // namespace Meseta47
