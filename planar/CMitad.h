#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "planar/CBordeDelMarco.h"
#include "planar/CDivisiones2D.h"
#include "planar/CMedidasDeTriangulos.h"
#include "planar/CMezcla.h"
#include "planar/CReparto2D.h"
#include "planar/CSetTriangulos2D.h"
#include "run/CTurnos.h"

namespace Meseta47 {

/// What the two halves work on.
struct CEnMitades {
  CSetTriangulos2D& raiz;
  CArbolDivisiones2D& divisiones;
  CReparto2D reparto;
  bool conBorde;  ///< triangles that touch the frame are not written
  CMezcla& mezcla;
  CTurnos& turnos;
};

/// One of the two halves of a mesh that two threads make: the thread's working lists, what it has counted, and how a
/// point goes in.
///
/// A triangle whose circle lies in a half is that half's own; one whose circle crosses the line between them is shared.
/// A point of one half lies in no circle of the other, so triangles of a half are made and destroyed by its own thread
/// alone, and what touches nothing else needs no agreement. All else takes its turn (CTurnos). docs/architecture.md has
/// the argument why the outcome is that of one thread.
class URDIMBRE_API CMitad {
 public:
  /// Points before have the numbers up to `elNumero`.
  CMitad(unsigned laMitad, CEnMitades const& laObra, int elNumero);
  CMitad(CMitad const&) = delete;
  CMitad& operator=(CMitad const&) = delete;
  ~CMitad();

  /// Both halves of a mesh go on to grow by themselves: what is theirs of the root's list stands apart, and the rest of
  /// it is shared.
  static void Comparte(CMitad& una, CMitad& otra) noexcept;
  /// One thread goes on with both halves: all stands in the root's list again, in the order that one would have left.
  static void Une(CMitad& una, CMitad& otra) noexcept;

  /// Gives the point its number and inserts it. False when the work is to end: it has been stopped, or must begin anew
  /// on one thread (LlegaTarde).
  bool Inserta(CCoor3D<int>* p, CLugarEnLista const& lugar, int numero, CMitad& laOtra);
  /// The other half goes on while this one has nothing to insert: notes what sets that it closes meanwhile must know.
  void Descansa() { Anota(nullptr, 0, {}); }
  /// There are no more points.
  void Acaba();
  /// A point would have seen what a later one has made.
  [[nodiscard]] bool LlegaTarde() const { return tarde; }

  // What was counted, once the thread is done. It is written at every point, and so are other members: no cache line is
  // to hold any of both halves.
  alignas(64) CSetTriangulos2D::CBalance balance;
  std::uint64_t aceptados = 0, rechazados = 0;
  std::uint32_t duplicados = 0;
  std::uint64_t enTurno = 0;  ///< points that took their turn
  CBordeDelMarco borde;
  CMedidasDeTriangulos medidas;

 private:
  class CTurno;
  struct CCortes;

  int PorSuCuenta(CCoor3D<int>* p, CDivisiones2D const& celda);
  int ASolas(CCoor3D<int>* p, CDivisiones2D const& celda, CMitad const& laOtra);
  int EnTurno(CCoor3D<int>* p, CDivisiones2D const& celda, CMitad const& laOtra);
  [[nodiscard]] CSetTriangulos2D* SetCercano(CCoor3D<int> const& p, CDivisiones2D const& celda) const;
  [[nodiscard]] CTriangulo2D* Inicio(CSetTriangulos2D const& set) const;
  /// Of the two, the one that has the point before.
  [[nodiscard]] CMitad const& DeAntes(CMitad const& laOtra) const {
    return laOtra.numero == numero - 1 ? laOtra : *this;
  }
  void Cuenta(unsigned suyosAceptados, unsigned suyosRechazados);
  bool Cierra(CSetTriangulos2D& set, CTurno& turno, CMitad& laOtra);
  static bool TocaLoCompartido(CSetTriangulos2D const& set);
  void Recoge(CSetTriangulos2D& set, std::vector<std::int32_t>& registros);
  void Anota(CSetTriangulos2D* set, unsigned triangulos, std::vector<std::int32_t> registros);
  bool Abandona();
  void AsientaInicio(CTriangulo2D const* elDeAntes, bool trasCerrar = false);

  unsigned mitad;
  CEnMitades obra;
  CSetTriangulos2D enRaiz;  ///< this half's own of the root's list, while two threads insert
  std::unique_ptr<CSetTriangulos2D::CObra> mia;
  std::unique_ptr<CCortes> cortes;  ///< sets closed at numbers that the other half has not come to
  CDivisiones2D* hoja = nullptr;    ///< where the last point fell
  int numero = 0;                   ///< of the last point
  bool tarde = false;
  // Where a walk would start next that nothing nearer gives a start, as the last point leaves it; null where it is not
  // certain, since which triangle comes next in the root's list had a part in it.
  CTriangulo2D* inicio = nullptr;
  bool inicioCierto = true;
};

}  // namespace Meseta47
