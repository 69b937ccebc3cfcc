#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tetrahedral/CEstrella.h"
#include "tetrahedral/CPorVenir.h"
#include "tetrahedral/CSetTetraedros.h"

class CFile;

namespace Meseta47 {

/// A mesh of tetrahedra that lets go of each as soon as no point to come can lie in its sphere: it is written as four
/// numbers, and its place in memory serves the next. So what is in memory is what can still change.
///
/// Tetrahedra wait in lists, one a leaf of what is to come (CPorVenir); when a leaf ends, each of its list goes to
/// another leaf that its sphere reaches, the one that ends last, or out. After Isenburg, Liu, Shewchuk and Snoeyink,
/// "Streaming computation of Delaunay triangulations", 2006, with the waiting lists for their finalisation tags.
///
/// It works on points of the caller, which it numbers nothing of. For one thread. What it throws is std::bad_alloc; the
/// object can then only be destroyed.
class CMallaEnFlujo {
 public:
  using CBalance = CSetTetraedros::CBalance;
  enum CRespuesta : int { HECHA = 0, REPETIDO = 3, SIN_ESFERA = 4, COPLANARIO = 5 };

  explicit CMallaEnFlujo(CFile& elFichero) : fichero(elFichero) {}
  ~CMallaEnFlujo();
  CMallaEnFlujo(CMallaEnFlujo const&) = delete;
  CMallaEnFlujo& operator=(CMallaEnFlujo const&) = delete;

  /// The mesh is that of the tetrahedra in `marco`, and `puntos` are to come. First of all, and once.
  void Empieza(std::vector<CTetraedro> const& marco, std::vector<CPorVenir::CPunto> puntos);
  /// One of the points comes, and what was waiting for it alone goes. 0: it is in. 3: it falls on another. 4: no sphere
  /// holds it. 5: it lies in the plane of a face of its cavity. After any but 0 the mesh is as it was.
  int Inserta(CCoor3D<int>* p);
  /// All points have come: hands what is written to the file, and gives memory back. False when the disk has refused
  /// any of it.
  bool Termina();

  [[nodiscard]] CBalance const& Balance() const { return balance; }
  [[nodiscard]] std::uint64_t Vivos() const { return vivos; }
  [[nodiscard]] std::uint64_t PicoVivos() const { return picoVivos; }
  /// Tetrahedra looked at where the descent to a cavity ended too early.
  [[nodiscard]] std::uint64_t Visitados() const { return visitados; }

 private:
  class CSalida;

  int Entra(CCoor3D<int>* p, std::uint32_t hoja);
  [[nodiscard]] CTetraedro* BuscaSemilla(CCoor3D<int> const& p, std::uint32_t hoja);
  [[nodiscard]] CTetraedro* Baja(CCoor3D<int> const& p, CTetraedro* desde, std::size_t cuantos);
  [[nodiscard]] CTetraedro* Recorre(CCoor3D<int> const& p, CTetraedro* desde, std::size_t cuantos);
  [[nodiscard]] CTetraedro* BuscaEntreTodos(CCoor3D<int> const& p, std::uint32_t hoja);
  void Sustituye(CCoor3D<int>* p, std::uint32_t hoja);
  void Anota(CTetraedro* t, std::uint32_t numero, std::uint32_t hoja);
  void Tacha(CTetraedro const* t);
  void Acaba(std::uint32_t hoja);
  void AcabaTodo(std::vector<std::uint32_t> const& lista);
  void Despide(CTetraedro* t);
  void Registra(CTetraedro const& t);
  bool Vuelca();

  CPorVenir porVenir;
  CPorVenir::CVecindad vecindad;
  std::vector<std::vector<std::uint32_t>> listas;  ///< by leaf: numbers of the tetrahedra that wait for its points
  CEstrella estrella;
  bool viveEstrella = false;  ///< all that were made last are in memory
  std::uint32_t inserciones = 0;
  std::vector<CTetraedro*> cola, movidos;  ///< scratch of a walk; what the last leaf to end has left
  CFile& fichero;
  std::vector<std::array<std::int32_t, 4>> registros;
  bool bien = true;
  CBalance balance;
  std::uint64_t vivos = 0, picoVivos = 0, visitados = 0;
};

}  // namespace Meseta47
