#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "planar/CSetTriangulos2D.h"
#include "run/CColaCerrados.h"

class CFile;

namespace Meseta47 {

/// What two halves finish, put in the order in which one thread would have finished it: by the number of the point that
/// closed a set. So the file, the queue of closed sets and the greatest number of living triangles do not show that
/// there were two.
///
/// Each half adds in ascending order of its numbers. What neither can come before any more is written on the way.
class URDIMBRE_API CMezcla {
 public:
  /// What a half has come to at a number.
  struct CApunte {
    int numero = 0;
    std::int64_t vivos = 0;           ///< triangles that it has made, less those that it has destroyed
    CSetTriangulos2D* set = nullptr;  ///< closed by that point, or null
    unsigned triangulos = 0;          ///< of the set
    std::vector<std::int32_t> registros;
  };

  /// `losVivos`: triangles before the first point. Queue and file are this object's alone while halves are under way.
  CMezcla(CColaCerrados<CSetTriangulos2D>& laCola, CFile* elFichero, std::int64_t losVivos)
      : cola(laCola), fichero(elFichero), vivosAntes(losVivos) {}

  /// By the thread of the half.
  void Anade(unsigned mitad, CApunte apunte) noexcept;
  /// Writes what comes before this number, to which neither half will add any more, unless the other thread is at it.
  void Vierte(int hasta) noexcept;
  [[nodiscard]] std::uint64_t PicoVivos() const { return pico; }
  /// Some record could not be kept for want of memory: the pass has failed. What is noted from then on may be lost.
  [[nodiscard]] bool FaltoMemoria() const { return faltoMemoria.load(std::memory_order_acquire); }
  void FaltaMemoria() noexcept { faltoMemoria = true; }

 private:
  void Saca(int hasta, std::vector<CApunte>& salen);
  void Escribe(CApunte const& apunte);

  CColaCerrados<CSetTriangulos2D>& cola;
  CFile* fichero;
  std::int64_t vivosAntes;
  std::uint64_t pico = 0;
  std::mutex escribiendo;  ///< one thread at a time; guards what is above
  std::mutex seccion;      ///< guards what is below; never held for long
  std::deque<CApunte> pendientes[2];
  std::int64_t vivos[2] = {0, 0};  ///< those of the last note written, under `escribiendo`
  std::atomic<bool> faltoMemoria{false};
};

}  // namespace Meseta47
