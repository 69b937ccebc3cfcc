#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>

#include "planar/CMitad.h"
#include "platform/Manejadores.h"

namespace Meseta47 {

/// The two halves of a mesh and the second thread. The caller's thread inserts the points of the first half, and the
/// mesh is whole again once Corre has come back.
class URDIMBRE_API CDosMitades {
 public:
  /// Feeds a half: calls its Inserta for each of its points, in order, until that answers false.
  using CAlimenta = std::function<void(CMitad& mitad, CMitad& otra)>;
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

  /// Inserts all points. `sigue` is asked on the caller's thread while that has nothing left to do; its false ends the
  /// work. Throws what either half throws, once both are at rest.
  CFinal Corre(CAlimenta const& alimenta, std::function<bool()> const& sigue);
  /// From within `alimenta`: ends the work.
  void Para() { turnos.Para(); }

  [[nodiscard]] CMitad& Mitad(unsigned cual) { return cual == 0 ? primera : segunda; }
  [[nodiscard]] CMezcla const& Mezcla() const { return mezcla; }

 private:
  static unsigned long Rutina(void* yo);
  void Trabaja(unsigned cual);
  void EsperaALaSegunda(std::function<bool()> const& sigue);

  CSetTriangulos2D& raiz;
  CTurnos turnos;
  CMezcla mezcla;
  CEnMitades comun;
  CMitad primera, segunda;
  CAlimenta const* alimenta = nullptr;
  std::exception_ptr fallo;        ///< of the second thread
  std::atomic<bool> hecha{false};  ///< the second thread's work
  std::mutex cerrojo;              ///< guards what is below
  std::condition_variable aviso;
  bool puedeIrse = false;
  HANDLE hilo = nullptr;
};

}  // namespace Meseta47
