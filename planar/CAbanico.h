#pragma once

#include <cstdint>
#include <vector>

#include "model/geometry/CCirculo.h"
#include "platform/Vectores.h"

namespace Meseta47 {

class CTriangulo2D;

/// The fan of triangles from a new point to the boundary of its cavity. The boundary is a ring of sides, in which a
/// side gives way to two when the triangle behind it is condemned. Once the ring stands, its corners are laid out one
/// after another, in columns of numbers, so that loops over them do several triangles in an instruction and no
/// branch depends on the data.
///
/// Kept from point to point by its owner: it allocates only for the largest fan so far.
class CAbanico {
 public:
  /// A side of the boundary.
  struct CLado {
    CCoor3D<int>* a;                  ///< where it begins, as the condemned triangle runs through it
    CTriangulo2D *condenado, *fuera;  ///< the triangles on either side; `fuera` is null where the mesh ends
    unsigned siguiente;               ///< the side that begins where this one ends
  };

  /// Frames in plan: each is a quadrant of the next one; the outermost repeats.
  struct CMarcos {
    static constexpr std::size_t kCuantos = 4;
    enum CCota : unsigned { MIN_X, MIN_Y, MENOS_MAX_X, MENOS_MAX_Y };  ///< of a box; greatest values negated
    /// The least that a box within the frame may have there.
    struct CLimite {
      CCota cota;
      double minimo[2];  ///< twice the same number
    };
    CLimite propios[kCuantos - 1][2];  ///< of each frame but the last, what the next one does not ask for
    CLimite ultimo[4];                 ///< of the last frame, all
  };

  /// With the wide form or without. By default as the processor allows.
  explicit CAbanico(bool enAncho = HayVectoresAnchos()) : ancho(enAncho) {}

  /// Room for `n` sides. What stands in the first ones stays.
  void Amplia(std::size_t n);
  CLado* Lados() { return lados.data(); }

  /// Lays out the ring of `n` sides, which begins with side 0. False when a corner lies on `p` in plan or comes twice.
  bool Dispone(CCoor3D<int> const& p, std::size_t n);
  /// Circles and index bits of the triangles. After `Dispone`.
  void Calcula(CCoor3D<int> const& p);
  /// Counts the frames that each circle leaves. After `Calcula`.
  void Situa(CMarcos const& marcos);

  // Of the triangle from the point to the `i`th side of the ring.
  [[nodiscard]] std::size_t Cantidad() const { return cantidad; }
  [[nodiscard]] CLado const& Lado(std::size_t i) const { return lados[vuelta[i]]; }
  [[nodiscard]] CCoor3D<int>* A(std::size_t i) const { return esquinas[i]; }
  [[nodiscard]] CCoor3D<int>* B(std::size_t i) const { return esquinas[i + 1]; }
  [[nodiscard]] CCirculo Circulo(std::size_t i) const {
    CTanda const& t = tandas[i / kTanda];
    const std::size_t k = i % kTanda;
    return {t.cx[k], t.cy[k], t.radio[k], t.radio2[k]};
  }
  /// Index bits, as `CTriangulo2D` keeps them.
  [[nodiscard]] std::uint16_t Indices(std::size_t i) const {
    return static_cast<std::uint16_t>(tandas[i / kTanda].indices[i % kTanda]);
  }
  /// How many of the frames its circle leaves.
  [[nodiscard]] std::size_t Fuera(std::size_t i) const {
    return static_cast<std::size_t>(tandas[i / kTanda].fuera[i % kTanda]);
  }
  /// Whether each circle leaves fewer frames than that, and none is of three points on a line.
  [[nodiscard]] bool DejanMenosDe(std::size_t marcos) const;
  /// Which triangle is the `i`th by the numbers of its side, as `CLado2D` has it.
  [[nodiscard]] std::size_t Orden(std::size_t i) const { return orden[i]; }

 private:
  static constexpr std::size_t kTanda = 8;  ///< triangles in a batch: as many as a ring has sides, as a rule

  /// Columns of a batch. Corners have one more, where the last side ends.
  struct CTanda {
    int x[kTanda + 1], y[kTanda + 1], z[kTanda + 1];
    int indices[kTanda];
    double cx[kTanda], cy[kTanda], radio[kTanda], radio2[kTanda];
    double area2[kTanda];        ///< twice the area
    double alcance2[kTanda];     ///< squared distance from the point to the farther end of the side
    std::int64_t fuera[kTanda];  ///< frames that the circle leaves
  };

  static void PonCirculos(CTanda& tanda, CCoor3D<int> const& p);
  static void PonIndices(CTanda& tanda, CCoor3D<int> const& p);
  static void CorrigeCirculos(CTanda& tanda, CCoor3D<int> const& p);
  template <std::size_t N>
  [[nodiscard]] bool OrdenaPocos();
  [[nodiscard]] bool OrdenaAlgunos();
  [[nodiscard]] bool OrdenaMuchos();
  [[nodiscard]] bool Reparte(CCoor3D<int> const& p);
  // Both forms of what has loops over columns.
  [[nodiscard]] bool ReparteEstrecho(CCoor3D<int> const& p);
  [[nodiscard]] bool ReparteAncho(CCoor3D<int> const& p);
  static void LlenaEstrecho(CTanda& tanda, CCoor3D<int> const& p);
  static void LlenaAncho(CTanda& tanda, CCoor3D<int> const& p);

  bool ancho;
  std::size_t cantidad = 0;
  std::vector<CLado> lados;
  std::vector<unsigned> vuelta;         ///< sides in the order of the ring, and on round it until a batch is full
  std::vector<CCoor3D<int>*> esquinas;  ///< where each begins, likewise
  std::vector<int> num;                 ///< and the numbers of those
  std::vector<CTanda> tandas;
  std::vector<unsigned> orden;
};

}  // namespace Meseta47
