#pragma once

#include <array>

#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// An ellipsoid of reference.
class URDIMBRE_API CElipsoide {
 public:
  CElipsoide(int elCodigo, CString const& elNombre, double elSemieje, double laExcentricidad2)
      : codigo(elCodigo), nombre(elNombre), semieje(elSemieje), excentricidad2(laExcentricidad2) {}

  [[nodiscard]] int Codigo() const { return codigo; }
  [[nodiscard]] CString const& Nombre() const { return nombre; }
  /// Semi-major axis, in metres; 0 for the one that a user defines.
  [[nodiscard]] double Semieje() const { return semieje; }
  /// First eccentricity, squared.
  [[nodiscard]] double Excentricidad2() const { return excentricidad2; }

 private:
  int codigo;
  CString nombre;
  double semieje;
  double excentricidad2;
};

/// The ellipsoids that the module knows, the one defined by the user first. Built when the library is loaded.
extern URDIMBRE_API const std::array<CElipsoide, 28> elipsoides;

}  // namespace Meseta47
