#pragma once

#include <atomic>
#include <vector>

#include "model/threads/CHilo.h"
#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"

class CFile;

namespace Meseta47 {

class CSegmentos;
class CSetTriangulos2D;

/// The worker of a linking pass: takes closed sets from the queue, in order, and does to each the job of the run's
/// mode. What a closed set holds is touched by nobody else.
///
/// It waits without burning a processor and wakes as soon as something new is announced. It leaves by itself when the
/// no-more-work flag is up and the queue is drained, or at once after the stop flag.
class URDIMBRE_API CHiloSalvaTriangulosEnlazados : public CHilo {
 public:
  /// The worker's jobs. Modes without a job of their own below write the set's triangles to the file.
  enum CModo : unsigned { SALVA = 0, CURVA = 1, AFINIDAD = 2, PICOS = 3, SALVA_TAMBIEN = 4 };

  /// What every job needs of the object that owns the queue.
  struct CCola {
    std::vector<CSetTriangulos2D*>* sets = nullptr;
    CCriticalSection* seccion = nullptr;
    std::atomic<int>* parar = nullptr;
    std::atomic<int>* fin = nullptr;
    std::atomic<unsigned>* aviso = nullptr;  ///< changes with every append and every flag
  };

  CHiloSalvaTriangulosEnlazados() = default;
  CHiloSalvaTriangulosEnlazados(CHiloSalvaTriangulosEnlazados const&) = delete;
  CHiloSalvaTriangulosEnlazados& operator=(CHiloSalvaTriangulosEnlazados const&) = delete;
  ~CHiloSalvaTriangulosEnlazados() override { Stop(); }

  /// Starts the thread, unless there is one, with the job of writing records. `elEvento` is reset when the thread
  /// leaves. False when the system gives no thread. Takes what it is given in either case: not for a thread at work.
  bool Start(unsigned elIndice, HANDLE* elEvento, CCola const& laCola, CFile* elFichero, unsigned elModo = SALVA);
  /// The same with the job of cutting triangles with contour levels: the interval and the longest side, in scaled
  /// units.
  bool Start(unsigned elIndice, HANDLE* elEvento, CCola const& laCola, CSegmentos* lasCurvas, int laEquidistancia,
             double elLado2);
  /// Raises the stop flag and waits for the thread.
  void Stop() override;

  /// Sets done so far. Grows only.
  [[nodiscard]] unsigned Hechos() const { return hechos.load(std::memory_order_acquire); }
  /// Waits until more than `vistos` sets are done, but no longer than it takes a person to miss an answer to Ctrl-C.
  void EsperaMasHechosQue(unsigned vistos);
  [[nodiscard]] bool EstaEnMarcha() const { return hilo != nullptr; }
  /// Whether some set could not be worked on for want of memory: the run has failed then.
  [[nodiscard]] bool FaltoMemoria() const { return faltoMemoria; }

 private:
  bool Empieza(unsigned elIndice, HANDLE* elEvento, CCola const& laCola, unsigned elModo);
  static unsigned long Rutina(void* yo);
  void Run();
  CSetTriangulos2D* Siguiente();
  void Trabaja(CSetTriangulos2D& set);
  void EsperaNovedad(unsigned visto) const;

  CFile* fichero = nullptr;
  unsigned modo = SALVA;
  CCola cola;
  CSegmentos* curvas = nullptr;     ///< mode 1
  int equidistancia = 0;            ///< mode 1, scaled units
  double lado2 = 0;                 ///< mode 1, squared scaled units
  std::atomic<unsigned> hechos{0};  ///< index of the next entry of the queue
  std::atomic<bool> faltoMemoria{false};
  CEvent avance;  ///< set after each set done
  HANDLE* eventoSalida = nullptr;
};

}  // namespace Meseta47
