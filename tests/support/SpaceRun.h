#pragma once

#include <string>
#include <vector>

#include "support/PlanarRun.h"
#include "support/SpaceMesh.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::test {

/// Everything takes part.
[[nodiscard]] CDataTriangulacion EverythingIn();

/// A triangulation in space that shows its phases and its insides.
class OpenTriangulation3D : public CTriangulacion3D {
 public:
  explicit OpenTriangulation3D(CDataTriangulacion const& data = EverythingIn(), CDataSemilla const& seed = {},
                               unsigned id = 7)
      : CTriangulacion3D(0, seed, data, id) {}
  OpenTriangulation3D(OpenTriangulation3D& other, unsigned id) : CTriangulacion3D(other, id) {}

  using CTriangulacion3D::operator=;
  OpenTriangulation3D& operator=(OpenTriangulation3D const&) = delete;

  using CTriangulacion3D::EnlazaLista;
  using CTriangulacion3D::EstableceDivisiones;
  using CTriangulacion3D::GeneraEsquinas;
  using CTriangulacion3D::Rellena;
  using CTriangulacion3D::Salva;
  using CTriangulacion3D::TriangulaPunto;

  using CTriangulacion3D::cantidadPuntos;
  using CTriangulacion3D::divisiones;
  using CTriangulacion3D::esquinas;
  using CTriangulacion3D::ficheroTemporal;
  using CTriangulacion3D::hiloSalva;
  using CTriangulacion3D::longitudLimite2;
  using CTriangulacion3D::maximas;
  using CTriangulacion3D::primerosPuntos;
  using CTriangulacion3D::puntos;
  using CTriangulacion3D::setRaiz;
  using CTriangulacion3D::setsCerrados;

  /// The filling and the linking of a run.
  int Link(CDibujo<int>& drawing, bool spill, bool all = true) {
    drawing.PonNumerosACero();
    const int code = Rellena(drawing);
    return code == kHecho ? EnlazaLista(drawing, 0, spill, all) : code;
  }
  /// The bytes of the temporary file, which stays.
  [[nodiscard]] std::string SpilledBytes() {
    ficheroTemporal.Vuelca();
    return BytesOfTemporary(ficheroTemporal.Ruta());
  }
};

/// A linked cloud, its vertices named by the places of the points in the cloud.
struct LinkedInSpace {
  int code = 0;
  support::SpaceMesh mesh;
  CResumenEspacial summary;
};
/// In memory, or through the file of whole tetrahedra.
[[nodiscard]] LinkedInSpace LinkInSpace(std::vector<support::Point> const& points, bool spill, unsigned fineness = 1);

/// The mesh of the points alone: without the frame, and with the hull completed.
[[nodiscard]] LinkedInSpace LinkHull(std::vector<support::Point> const& points);

}  // namespace Meseta47::test
