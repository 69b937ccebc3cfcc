#pragma once

#include <cstdint>
#include <vector>

#include "tetrahedral/CTetraedro.h"

namespace Meseta47 {

/// The cavity of a new point and the star of tetrahedra that takes its place, one to each face of the boundary. Faces
/// are laid out in columns of numbers, so that loops over them do several spheres in an instruction, and find one
/// another through a table of the cavity's edges, by the local numbers of their vertices.
///
/// Kept from point to point by its owner: it allocates only for the largest star so far.
class CEstrella {
 public:
  /// The least and greatest coordinates that a box may have.
  struct CMarco {
    double minX, minY, minZ, maxX, maxY, maxZ;
  };

  /// Marks the tetrahedra around `semilla` whose spheres hold the point and collects the faces around them. What the
  /// walk before has found outside carries the stamp `marca`; what is tested here takes the next one. False, with the
  /// marks cleared, when the point falls on a vertex.
  [[nodiscard]] bool Crece(CCoor3D<int> const& p, CTetraedro* semilla, std::int32_t marca);
  /// Finds the neighbours and the order of the new tetrahedra. False when some edge of the boundary does not have two
  /// faces, which a mesh of exact spheres never shows.
  [[nodiscard]] bool Dispone(CCoor3D<int> const& p);
  /// The spheres. False when the point is coplanar with a face.
  [[nodiscard]] bool Calcula(CCoor3D<int> const& p);
  /// Takes places for the new tetrahedra: those of the condemned, and new ones. Throws std::bad_alloc, with none taken.
  void PideSitios();
  /// Makes the tetrahedra in their places, linked to one another and to those around. The condemned must be in no list.
  void Construye(CCoor3D<int>* p);
  void BorraMarcas();

  [[nodiscard]] std::size_t Condenados() const { return condenados; }
  [[nodiscard]] CTetraedro* Condenado(std::size_t i) const { return cavidad[i]; }
  [[nodiscard]] std::size_t Cantidad() const { return cantidad; }
  /// Which of the new tetrahedra is the `i`th by the numbers of its face.
  [[nodiscard]] unsigned Orden(std::size_t i) const { return orden[i]; }
  [[nodiscard]] CTetraedro* Nuevo(std::size_t i) const { return sitios[i]; }
  /// The last of `n` frames, each within the one before, that holds the box of a sphere. The first holds all.
  [[nodiscard]] unsigned Marco(std::size_t i, CMarco const* marcos, unsigned n) const;
  /// Since the object was made: spheres tested, and tests that doubles could not decide.
  [[nodiscard]] std::uint64_t Esferas() const { return esferas; }
  [[nodiscard]] std::uint64_t Exactas() const { return exactas; }

 private:
  /// A face of the boundary.
  struct CBorde {
    unsigned v[3];        ///< local numbers of its vertices, ascending by point number
    std::uint32_t fuera;  ///< the tetrahedron behind it, 0 for none
    std::uint8_t suCara;  ///< which face of that one
    bool grabado;
    std::uint32_t condenado;  ///< the condemned tetrahedron that has it
    std::uint8_t cara;        ///< and which of its faces it is
  };
  struct CVertice {
    CCoor3D<int>* punto;
    int num;
    int rango;  ///< place among the vertices by number
  };
  static constexpr std::size_t kTanda = 8;  ///< faces in a batch: whole registers of any processor
  /// Columns of a batch: the vertices of the faces relative to the point, and the spheres.
  struct CTanda {
    double ax[kTanda], ay[kTanda], az[kTanda], bx[kTanda], by[kTanda], bz[kTanda], cx[kTanda], cy[kTanda], cz[kTanda];
    double x[kTanda], y[kTanda], z[kTanda], radio2[kTanda], margen[kTanda], radio[kTanda];
    double volumen6[kTanda], tamano[kTanda], error[kTanda];
  };
  struct CCasilla {
    CCoor3D<int> const* punto = nullptr;
    std::uint32_t vez = 0;
    std::uint32_t vertice = 0;
  };

  void Condena(CTetraedro* t, std::uint32_t numero);
  void PonBorde(std::size_t condenado, unsigned cara, CTetraedro* vecino, std::uint32_t numeroVecino);
  [[nodiscard]] unsigned Vertice(CCoor3D<int>* punto);
  void Amplia();
  void Ordena();
  [[nodiscard]] bool Empareja();
  static void PonEsferas(CTanda& t, CCoor3D<int> const& p);

  std::size_t condenados = 0, cantidad = 0, vertices = 0;
  std::vector<CTetraedro*> cavidad, sitios;
  std::vector<std::uint32_t> numeros;  ///< of the condemned
  std::vector<CBorde> bordes;
  std::vector<CVertice> vertice;
  std::vector<CCasilla> casillas;  ///< hash of the vertices, emptied by counting
  std::uint32_t vez = 0;
  // An edge of a face: four times the face, plus 1 to 3 for its edges 12, 13, 23.
  std::vector<std::uint16_t> aristas;  ///< by two local numbers: the edge that was last there, 0 for none
  std::vector<std::uint16_t> pareja;   ///< of each edge, that of the face behind it
  std::vector<int> claves;
  std::vector<unsigned> orden;
  std::vector<double> vx, vy, vz;  ///< of the vertices, relative to the point
  std::vector<CTanda> tandas;
  std::uint64_t esferas = 0, exactas = 0;
};

}  // namespace Meseta47
