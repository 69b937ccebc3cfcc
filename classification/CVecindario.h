#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/geometry/CCoor3D.h"
#include "model/geometry/CMaximas.h"

namespace Meseta47 {

/// The points of a mesh, to be asked for what lies around a place in plan.
///
/// They lie in bands of y as high as the radius that is asked for, in ascending order of x, then y, within each. What
/// is around a place is then in three bands, in a stretch of each.
class CVecindario {
 public:
  /// A point, by 16 bytes. Its position sorts as one number.
  struct CPunto {
    std::uint64_t clave = 0;
    std::int32_t z = 0;
    std::int32_t num = 0;  ///< 0 once it has been found and doesn't count any more

    [[nodiscard]] int X() const { return Sin(static_cast<std::uint32_t>(clave >> 32)); }
    [[nodiscard]] int Y() const { return Sin(static_cast<std::uint32_t>(clave)); }
    static std::uint64_t Clave(CCoor3D<int> const& p) { return std::uint64_t{Con(p.x)} << 32 | Con(p.y); }

   private:
    // Moved by 2^31, so that they sort without their sign.
    static std::uint32_t Con(int v) { return static_cast<std::uint32_t>(v) ^ kSigno; }
    static int Sin(std::uint32_t v) { return static_cast<int>(v ^ kSigno); }
    static constexpr std::uint32_t kSigno = 0x80000000;
  };
  using CIndice = std::uint32_t;

  /// `caja` holds all points, of which there will be `cuantos`. A radius below 0 has nothing around it. Throws
  /// std::bad_alloc, as do Reserva and Alturas.
  CVecindario(CMaximas<int> const& caja, std::size_t cuantos, int elRadio);

  // To fill it: count every point, make room, put every point, order every band.
  void Cuenta(CCoor3D<int> const& p) { ++bandas[Banda(p.y) + 1]; }
  void Reserva();
  void Pon(CCoor3D<int> const& p) { puntos[cursores[Banda(p.y)]++] = {CPunto::Clave(p), p.z, p.num}; }
  [[nodiscard]] std::size_t Bandas() const { return bandas.size() - 1; }
  void Ordena(std::size_t banda);

  [[nodiscard]] std::vector<CPunto> const& Puntos() const { return puntos; }
  /// From now on the point is not around any other.
  void Quita(CIndice i) { puntos[i].num = 0; }

  /// Heights of the points up to the radius away from point `i`, itself not among them, band after band. Differences
  /// are taken as floats, as the searches that this serves were tuned with. Valid until the next call of this or the
  /// next.
  [[nodiscard]] std::span<std::int32_t const> Alturas(CIndice i);
  /// The same in ascending order of the positions, several times as slow.
  [[nodiscard]] std::span<std::int32_t const> AlturasEnOrden(CIndice i);

 private:
  [[nodiscard]] std::size_t Banda(std::int64_t y) const { return static_cast<std::size_t>((y - minY) / altoDeBanda); }

  /// A stretch of a band.
  struct CTramo {
    CPunto const *p, *fin;
  };
  /// Around a place: three at most, none of them empty.
  struct CTramos {
    std::array<CTramo, 3> tramos{};
    unsigned cuantos = 0;

    CPunto const& SacaMenor();
  };
  /// Those that hold what is around point `i`, with room for all their heights.
  [[nodiscard]] CTramos Tramos(CIndice i);
  [[nodiscard]] bool EstaCerca(CPunto const& centro, CPunto const& p) const;

  std::int64_t radio, minY, maxY, altoDeBanda;
  std::vector<CIndice> bandas;    ///< where each begins among the points, and the end of the last
  std::vector<CIndice> cursores;  ///< where the next point of each goes
  std::vector<CPunto> puntos;
  std::vector<std::int32_t> alturas;
};

}  // namespace Meseta47
