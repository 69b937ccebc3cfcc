#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include "model/geometry/CDataSemilla.h"
#include "model/geometry/Redondeo.h"
#include "model/geometry/Signo.h"
#include "platform/Exporta.h"

class CFile;

namespace Meseta47 {

/// Form of a file that a record is written to. Coordinates and boxes have one binary form, the native one.
enum CTipoFichero : int { FICHERO_NATIVO = 0 };

/// The plain part of a coordinate. Everything but the height, which the space form adds behind it.
template <class T>
struct stpunto {
  T x = 0;                         ///< easting: scaled units for int, metres or scaled units for double
  T y = 0;                         ///< northing
  std::int32_t num = 0;            ///< 0 none; real points count from 1; frame points are negative
  std::uint16_t intensidad = 0;    ///< intensity of the return
  std::uint8_t marcas = 0;         ///< bit 0: deleted
  std::uint8_t clasificacion = 0;  ///< point class
};

/// A coordinate in plan.
template <class T>
class CCoor2D : public stpunto<T> {
 public:
  CCoor2D() = default;

  [[nodiscard]] int Num() const { return this->num; }
  [[nodiscard]] bool EsBorrado() const { return (this->marcas & kBorrado) != 0; }
  void SetBorrado(bool borrado) {
    this->marcas = static_cast<std::uint8_t>(borrado ? this->marcas | kBorrado : this->marcas & ~kBorrado);
  }
  [[nodiscard]] std::uint8_t GetClasificacion() const { return this->clasificacion; }

  /// Set one axis. A double becomes an integer by rounding to nearest, saturating at the 32-bit limits.
  void ActualizaX(double v) { this->x = Convierte(v); }
  void ActualizaY(double v) { this->y = Convierte(v); }

 protected:
  static constexpr std::uint8_t kBorrado = 1;

  static T Convierte(double v) {
    if constexpr (std::is_same_v<T, int>) {
      return Redondea(v);
    } else {
      return v;
    }
  }
};

/// A coordinate in space, in scaled units (`int`, the computing form) or real ones (`double`). Its position is x, y and
/// z; the number, the intensity, the class and the marks travel with it and take no part in comparisons.
template <class T>
class CCoor3D : public CCoor2D<T> {
 public:
  T z = 0;  ///< height

  CCoor3D() = default;
  CCoor3D(T px, T py, T pz, int numero) : z(pz) {
    this->x = px;
    this->y = py;
    this->num = numero;
  }
  CCoor3D(CCoor3D const&) = default;
  CCoor3D& operator=(CCoor3D const&) = default;
  virtual ~CCoor3D() = default;

  /// The same point in the other number form: integers become doubles exactly, doubles are rounded. Everything but the
  /// position is copied.
  template <class U>
  requires(!std::is_same_v<T, U>) explicit CCoor3D(CCoor3D<U> const& p) {
    this->num = p.num;
    this->intensidad = p.intensidad;
    this->marcas = p.marcas;
    this->clasificacion = p.clasificacion;
    Actualiza(static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z));
  }

  void Actualiza(double nx, double ny, double nz) {
    ActualizaXY(nx, ny);
    ActualizaZ(nz);
  }
  void ActualizaXY(double nx, double ny) {
    this->ActualizaX(nx);
    this->ActualizaY(ny);
  }
  void ActualizaZ(double v) { z = CCoor2D<T>::Convierte(v); }

  /// Makes the vector (x, y, z) one unit long. False, with nothing changed, for the null vector. An integer vector
  /// keeps of it what rounding leaves.
  virtual bool Normaliza();

  [[nodiscard]] bool operator==(CCoor3D const& p) const { return this->x == p.x && this->y == p.y && z == p.z; }
  [[nodiscard]] bool operator!=(CCoor3D const& p) const { return !(*this == p); }
  /// Strict order of positions: x, then y, then z. 1 when it holds, else 0.
  [[nodiscard]] int operator<(CCoor3D const& p) const {
    if (this->x != p.x) return this->x < p.x;
    if (this->y != p.y) return this->y < p.y;
    return z < p.z;
  }
  [[nodiscard]] int operator>(CCoor3D const& p) const { return p < *this; }

  /// The three coordinates divided by `escala`; the rest is kept.
  [[nodiscard]] CCoor3D operator/(double escala) const {
    CCoor3D r(*this);
    r.Actualiza(this->x / escala, this->y / escala, z / escala);
    return r;
  }
  [[nodiscard]] CCoor3D operator*(double escala) const {
    CCoor3D r(*this);
    r.Actualiza(this->x * escala, this->y * escala, z * escala);
    return r;
  }

  /// Squared distance to `p`: in plan for `espacio` 0, in space for 1. Differences are formed in doubles, where those
  /// of 32-bit integers are exact.
  [[nodiscard]] double Distancia2(CCoor3D const& p, int espacio = 0) const {
    const double dx = static_cast<double>(this->x) - static_cast<double>(p.x);
    const double dy = static_cast<double>(this->y) - static_cast<double>(p.y);
    const double plano = dx * dx + dy * dy;
    if (espacio == 0) return plano;
    const double dz = static_cast<double>(z) - static_cast<double>(p.z);
    return plano + dz * dz;
  }
  [[nodiscard]] double Distancia(CCoor3D const& p, int espacio = 0) const;

  /// Rise over run, in plan, of the segment from this point to `p`: a signed ratio. Equal plan positions give plus or
  /// minus infinity by the rise, equal points 0.
  [[nodiscard]] double Pendiente(CCoor3D const& p) const;

  /// Side of this point with respect to the line from `a` to `b`: 1 on the left, -1 on the right, 0 on it. `plano` 0
  /// looks at (x, y), 1 at (y, z), 2 at (x, z). Exact for integers of any size.
  [[nodiscard]] std::int16_t CalculaLado(CCoor3D const& a, CCoor3D const& b,
                                         int plano) const requires std::is_same_v<T, int>;

  /// Orthogonal projection on the plane normal . p + termino = 0. `unitaria` tells that the normal is one unit long.
  [[nodiscard]] CCoor3D ProyectaSobrePlano(CCoor3D<double> const& normal, double termino, bool unitaria) const;

  /// Distance of this point to the line through `a` and `b`, in plan for `espacio` 0 and in space for 1; to `a` when
  /// both are one point. `parametro`, when given, takes where the foot stands: 0 at `a`, 1 at `b`.
  [[nodiscard]] double DistanciaARecta(CCoor3D const& a, CCoor3D const& b, int espacio, double* parametro) const;

  /// Plane that fits the points best, by least squares of the orthogonal distances. This object becomes its unit
  /// normal, whose z is not negative, and `termino` its independent term: normal . p + termino = 0. Gives also the
  /// signed distance of each point, their root mean square `emc`, the mean of the points, which lies on the plane, and
  /// the greatest absolute distance. `minimo` is the least number of points to accept (3 at least). False when there
  /// are fewer or when they lie on one line; object and results are then left as they were. O(n).
  bool CalcularPlano(std::vector<CCoor3D<double>> const& puntos, double& termino, std::vector<double>& residuos,
                     double& emc, CCoor3D<double>& media, double& residuoMaximo,
                     int minimo) requires std::is_same_v<T, double>;

  /// Binary form: x, y, z as little-endian 32-bit integers and nothing else, 12 bytes for either number form; doubles
  /// are rounded as `Redondea` tells. The seed and the further arguments select nothing in it. False when the disk
  /// refuses.
  bool Write(CFile* fichero, CDataSemilla const& semilla, int, CTipoFichero, int, short int) const;
  /// Reads that form and multiplies by `factor`. False on a short read, with nothing changed.
  bool Read(CFile* fichero, double factor, CTipoFichero);
};

URDIMBRE_INSTANCIA_DE(CCoor3D<int>);
URDIMBRE_INSTANCIA_DE(CCoor3D<double>);

}  // namespace Meseta47
