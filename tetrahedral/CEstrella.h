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

  CEstrella() = default;
  CEstrella(CEstrella const&) = delete;
  CEstrella& operator=(CEstrella const&) = delete;
  ~CEstrella() { SueltaLibres(); }

  /// The stamps of an insertion, this and the next number: far below all point numbers and their second stamps.
  [[nodiscard]] static std::int32_t Marca(std::uint32_t insercion) {
    return static_cast<std::int32_t>(0x80000000U + 2 * insercion);
  }
  /// From `desde` downhill to whichever neighbour's sphere gives the point the least power: that neighbour lies towards
  /// the point. `dentro` tells whether the sphere at the end holds it; where part of the mesh has gone it may not.
  /// `pasos` grows by the steps.
  [[nodiscard]] static CTetraedro* Desciende(CCoor3D<int> const& p, CTetraedro* desde, std::uint64_t& pasos,
                                             bool& dentro);
  /// Of those made last the one whose sphere gives the point the least power. They must live.
  [[nodiscard]] CTetraedro* MasCercano(CCoor3D<int> const& p);
  /// The one of the two, which may be null, whose sphere gives the point the lesser power.
  [[nodiscard]] static CTetraedro* MasCercano(CCoor3D<int> const& p, CTetraedro* a, CTetraedro* b);

  /// Collects the tetrahedra around `semilla` whose spheres hold the point, and the faces around them. What lies
  /// outside, found by a walk before or here, carries the stamp `marca`, what is condemned the next number. False when
  /// the point falls on a vertex.
  [[nodiscard]] bool Crece(CCoor3D<int> const& p, CTetraedro* semilla, std::int32_t marca);
  /// Finds the neighbours of the new tetrahedra. False when some edge of the boundary does not have two faces, which a
  /// mesh of exact spheres never shows.
  [[nodiscard]] bool Dispone(CCoor3D<int> const& p);
  /// Puts them in the order of their faces, for `Orden`.
  void Ordena();
  /// The spheres. False when the point is coplanar with a face.
  [[nodiscard]] bool Calcula(CCoor3D<int> const& p);
  /// Takes places for the new tetrahedra: those of the condemned, and new ones. Throws std::bad_alloc, with none taken.
  void PideSitios();
  /// Keeps up to so many tetrahedra that are done with for new ones to come: cheaper than to give each back and ask for
  /// it again. Throws std::bad_alloc.
  void GuardaHasta(std::size_t cuantos) { libres.reserve(cuantos); }
  /// One that is done with: in no list, nobody's neighbour. Its own links no longer count.
  void Guarda(CTetraedro* t) noexcept;
  /// Gives back what is kept.
  void SueltaLibres() noexcept;
  /// Makes the tetrahedra in their places, linked to one another and to those around. The condemned must be in no list.
  void Construye(CCoor3D<int>* p);

  [[nodiscard]] std::size_t Condenados() const { return condenados; }
  [[nodiscard]] CTetraedro* Condenado(std::size_t i) const { return cavidad[i].t; }
  [[nodiscard]] std::uint32_t NumeroDeCondenado(std::size_t i) const { return cavidad[i].numero; }
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
  struct CCondenado {
    CTetraedro* t;
    std::uint32_t numero;
    std::uint32_t vuelta;  ///< the face that leads back to the one that it was reached from; 4 for none
  };
  /// A face of the boundary.
  struct CBorde {
    unsigned v[3];            ///< local numbers of its vertices, ascending by point number
    std::uint32_t fuera;      ///< the tetrahedron behind it, 0 for none
    std::uint32_t condenado;  ///< the condemned tetrahedron that has it
    std::uint8_t cara;        ///< and which of its faces it is
    std::uint8_t suCara;      ///< which face of the one behind
    bool grabado;
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
    double certeza[kTanda];  ///< below 0 of a sphere that has to be computed exactly
    double exceso[kTanda];   ///< scratch of a search
  };
  static constexpr int kBitsDeVez = 8;  ///< what an address can spare: its highest byte tells nothing
  struct CCasilla {
    std::uint64_t clave = 0;  ///< a vertex's address, and in its lowest bits which star
    std::uint64_t vertice = 0;
  };

  [[nodiscard]] int Decide(CTetraedro const& t, CCoor3D<int> const& p, bool& repetido);
  [[nodiscard]] unsigned Vertice(CCoor3D<int>* punto);
  void NumeraVertices();
  void AmpliaCavidad();
  void Amplia();
  [[nodiscard]] bool Empareja();
  [[nodiscard]] bool EmparejaPorOrden();
  static void PonTandas(CTanda* tandas, std::size_t cuantas, CCoor3D<int> const& p);
  static void PonEsferas(CTanda* tandas, std::size_t cuantas, CCoor3D<int> const& p);
  static void PonEsferasAncho(CTanda* tandas, std::size_t cuantas, CCoor3D<int> const& p);
  [[nodiscard]] bool Afina(std::size_t i, CCoor3D<int> const& p);

  std::size_t condenados = 0, cantidad = 0, vertices = 0;
  std::size_t hechos = 0;  ///< places that hold tetrahedra made last: those of a growth that led to none do not count
  CTetraedro nadie;        ///< behind a face without a neighbour
  std::vector<CCondenado> cavidad;
  std::vector<CTetraedro*> sitios;
  std::vector<CTetraedro*> libres;  ///< kept for new ones, owned; never more than was asked for
  std::vector<CBorde> bordes;
  std::vector<CVertice> vertice;
  std::vector<CCasilla> casillas;  ///< hash of the vertices, emptied by counting
  std::size_t mascara = 0;         ///< what of it the star uses, less one
  std::uint64_t vez = 0;           ///< of the star, counted until its bits are used up
  // An edge of a face: four times the face, plus 1 to 3 for its edges 12, 13, 23.
  std::vector<std::uint16_t> aristas;  ///< by two local numbers: the edge that was last there, 0 for none
  std::vector<std::uint32_t> pareja;   ///< of each edge, that of the face behind it
  struct CLado {
    std::uint64_t extremos;
    std::uint32_t lado;
  };
  std::vector<CLado> lados;
  std::vector<int> claves;
  std::vector<unsigned> orden;
  std::vector<double> vx, vy, vz;  ///< of the vertices, relative to the point
  std::vector<CTanda> tandas;
  std::uint64_t esferas = 0, exactas = 0;
};

}  // namespace Meseta47
