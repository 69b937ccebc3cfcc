#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <utility>

#include "planar/CMitad.h"
#include "platform/CAviso.h"
#include "platform/Manejador.h"

namespace Meseta47 {

/// The two halves of a mesh and the second thread. The caller's thread inserts the points of the first half, and the
/// mesh is whole again once Corre has come back.
class URDIMBRE_API CDosMitades {
 public:
  /// Points with numbers from `desde` to below `hasta`, of one half or of both.
  struct CTramo {
    int desde, hasta;
    bool deLaPrimera, deLaSegunda;

    [[nodiscard]] bool Tiene(unsigned mitad) const { return mitad == 0 ? deLaPrimera : deLaSegunda; }
    [[nodiscard]] bool EsDeAmbas() const { return deLaPrimera && deLaSegunda; }
    [[nodiscard]] bool EsDelQueLlama() const { return deLaPrimera; }  ///< of the caller's thread
  };
  /// Feeds a stretch: calls Inserta for each of its points, in order, until that answers false. True when no point of
  /// these halves is left behind it. Called by either thread with what is its own; the first half's is the caller's.
  using CAlimenta = std::function<bool(CTramo const& tramo)>;
  enum CFinal {
    HECHO,
    PARADO,       ///< by Para
    TARDE,        ///< all is to be done anew by one thread
    SIN_HILO,     ///< the system gives no thread, and nothing has been done
    SIN_MEMORIA,  ///< for the records of closed sets
  };

  /// The mesh has the points up to `numero`, and `vivos` triangles.
  CDosMitades(CSetTriangulos2D& laRaiz, CArbolDivisiones2D& divisiones, CReparto2D reparto, bool conBorde,
              CColaCerrados<CSetTriangulos2D>& cola, CFile* fichero, std::int64_t vivos, int numero);
  CDosMitades(CDosMitades const&) = delete;
  CDosMitades& operator=(CDosMitades const&) = delete;
  /// Waits for the second thread, which gives its memory back.
  ~CDosMitades();

  /// Inserts all points: by both threads; where they wait for each other more than they gain (CTurnos), some by the
  /// caller's alone, and then by both again. `sigue` is asked on the caller's thread while that has nothing to do; its
  /// false ends the work. Throws what either half throws, once both are at rest.
  CFinal Corre(CAlimenta const& alimenta, std::function<bool()> const& sigue);
  /// From within `alimenta`: the point goes into its half. False: no more points.
  bool Inserta(CTramo const& tramo, unsigned mitad, CCoor3D<int>* p, CLugarEnLista const& lugar, int numero) {
    if (tramo.EsDeAmbas()) Alterna(mitad, numero);
    return Mitad(mitad).Inserta(p, lugar, numero, Mitad(1 - mitad));
  }
  /// From within `alimenta`: ends the work.
  void Para() { turnos.Para(); }

  [[nodiscard]] CMitad& Mitad(unsigned cual) { return cual == 0 ? primera : segunda; }
  [[nodiscard]] CMezcla const& Mezcla() const { return mezcla; }

  /// Points that one thread inserted by itself.
  [[nodiscard]] std::uint64_t ASolas() const { return aSolas; }

 private:
  enum COrden { NADA, TRABAJA, VETE };

  static unsigned long Rutina(void* yo);
  void AtiendeOrdenes();
  void Trabaja(CTramo const& tramo);
  void TrabajanLasDos(int desde, std::function<bool()> const& sigue);
  bool TrabajaUna(int desde, int hasta);
  void Alterna(unsigned mitad, int numero) {
    if (std::exchange(ultima, mitad) != mitad) Mitad(1 - mitad).Descansa();
    turnos.Acompana(1 - mitad, numero);
    ++aSolas;
  }
  void Manda(COrden laOrden);
  void EsperaALaSegunda(std::function<bool()> const& sigue);

  CSetTriangulos2D& raiz;
  CTurnos turnos;
  CMezcla mezcla;
  CEnMitades comun;
  CMitad primera, segunda;
  CAlimenta const* alimenta = nullptr;
  int primero;         ///< number of the first point
  int desdeDonde = 0;  ///< number of the first point of the second thread's stretch
  std::uint64_t aSolas = 0;
  unsigned ultima = 2;       ///< of the halves that one thread takes on, the one that its last point fell in
  std::exception_ptr fallo;  ///< of the second thread
  std::mutex cerrojo;        ///< guards what is below
  COrden orden = NADA;       ///< to the second thread, which takes it back when it is done
  CAviso mandada, hecha;     ///< on which the second thread sleeps, and the caller's
  HANDLE hilo = nullptr;
};

}  // namespace Meseta47
