#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

#include "model/drawing/CTipoDat.h"
#include "model/drawing/ILienzo.h"
#include "model/geometry/CMatrizCuadrada.h"
#include "model/geometry/CMaximas.h"
#include "model/geometry/CTransformacion.h"

namespace Meseta47 {

/// The other of the two number forms.
template <class T>
using OtraForma = std::conditional_t<std::is_same_v<T, int>, double, int>;

/// Head of an entity: kind, code and box. The operations are those that need to know nothing of the points but that
/// there are some.
template <class T>
class CCabDigi : public CTipoDat {
 public:
  CMaximas<T> maximas;  ///< box of the points, kept right by every operation that changes one

  CCabDigi() = default;
  CCabDigi(CTipoEntidad elTipo, CString const& elCodigo) : CTipoDat(elTipo, elCodigo) {}
  CCabDigi(CCabDigi const&) = default;
  CCabDigi(CCabDigi&&) = default;
  /// Takes over all but the kind, which an object has for life: a set of points that is given a line stays a set.
  CCabDigi& operator=(CCabDigi const& o) {
    this->codigo = o.codigo;
    this->borrado = o.borrado;
    maximas = o.maximas;
    return *this;
  }
  CCabDigi& operator=(CCabDigi&& o) noexcept {
    this->codigo = std::move(o.codigo);
    this->borrado = o.borrado;
    maximas = o.maximas;
    return *this;
  }
  ~CCabDigi() override = default;

  /// Same kind, code and box.
  [[nodiscard]] virtual bool operator==(CCabDigi const& o) const { return MismoTipo(o) && maximas == o.maximas; }
  [[nodiscard]] virtual bool operator!=(CCabDigi const& o) const { return !(*this == o); }

  /// Leaves the entity without points. Kind, code and mark stay.
  virtual void Clear() = 0;

  /// Reads what Write wrote and multiplies the coordinates by `factor`. False on a short read or on something else than
  /// an entity of this kind; the entity is then left as it was.
  virtual bool Read(CFile* fichero, double factor, CTipoFichero tipo) = 0;
  /// Reads what follows the head: the points. `version` is the one that the head told.
  virtual bool ReadDigi(CFile* fichero, double factor, unsigned short version, CTipoFichero tipo) = 0;

  /// Shifts every point; a coordinate that would leave the 32-bit range stays at its end.
  virtual void Mover(int dx, int dy, int dz) = 0;

  /// Binary form, little-endian: kind, version and mark (16 bits each), the bytes of the code (32 bits), the code in
  /// UTF-8, then the points. The seed and the integer select nothing. False when the disk refuses.
  virtual bool Write(CFile* fichero, CDataSemilla const& semilla, int a, CTipoFichero tipo) const = 0;

  /// Puts every height to 0, or to a value.
  virtual void ZetaCero() = 0;
  virtual void ZFija(int z) = 0;
  /// Puts the number of every point to 0.
  virtual void PonNumerosACero() = 0;

  virtual void OnPaint(ILienzo& lienzo, CTransformacion const& vista) const = 0;

  /// Computes the box anew. O(points).
  virtual void CalculaMaximas() = 0;

  /// Whether a rectangle in plan touches what the entity draws: with a transformation, a rectangle on the screen.
  [[nodiscard]] virtual bool DentroCursor(CTransformacion const& vista, CMaximas<double> const& cursor) const = 0;
  [[nodiscard]] virtual bool DentroCursor(CMaximas<double> const& cursor) const = 0;

  /// Applies a map to every point, or its inverse: a matrix of order 3 or 4, or a transformation. False, with nothing
  /// changed, for a matrix of another order and when the inverse is wanted of a map that has none.
  virtual bool Helmert(CMatrizCuadrada const& matriz) = 0;
  virtual bool Helmert(CTransformacion const& mapa) = 0;
  virtual bool HelmertInverso(CMatrizCuadrada const& matriz) = 0;
  virtual bool HelmertInverso(CTransformacion const& mapa) = 0;

  /// Multiplies every coordinate by the factor of its axis.
  virtual void Escalar(double fx, double fy, double fz) = 0;
};

}  // namespace Meseta47
