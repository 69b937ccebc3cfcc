#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/CSingleLock.h"

namespace Meseta47 {

/// Closed sets on their way from the thread that inserts points to the one worker that does the run's job on each
/// (CHiloCerrados). A set is queued once nothing can reach it any more; from then on it is the worker's alone. Entries
/// stay in the queue, in the order in which they were closed. Where the job has no thread of its own, the inserting
/// thread is the worker as well.
///
/// The inserting thread appends and, when too much waits, waits itself: a worker that gets no processor, or writes to a
/// slow disk, must not have the mesh fill the memory. Neither side burns a processor while it waits, and to wake the
/// worker costs more than its job on a set, so it is woken for a few thousand elements at a time.
///
/// What is told below to belong to a side may be called by that thread alone; the rest by any.
template <class TSet>
class CColaCerrados {
 public:
  static constexpr std::uint64_t kElementosEnCola = 1 << 15;  ///< above this the inserting thread waits: about 4 MB
  static constexpr std::uint64_t kElementosPorAviso = 4096;   ///< for which the worker is woken

  CColaCerrados() = default;
  CColaCerrados(CColaCerrados const&) = delete;
  CColaCerrados& operator=(CColaCerrados const&) = delete;

  /// Drops all entries and lowers both flags. `sets` is a guess at how many there will be. There must be no worker.
  void Prepara(std::size_t sets) {
    entradas.clear();
    entradas.reserve(sets);
    hasta.clear();
    avisadosHasta = 0;
    llena = false;
    hechos = 0;
    parar = fin = 0;
  }

  // --- the inserting thread ---
  /// Queues a set with so many elements, its subtree's included.
  void Anade(TSet* set, std::uint64_t elementos) {
    hasta.push_back(Elementos() + elementos);
    {
      CSingleLock cerrojo(&seccion, true);
      entradas.push_back(set);
    }
    aviso.fetch_add(1);
    if (Elementos() - avisadosHasta >= kElementosPorAviso) Despierta();
    llena = Elementos() - Liberados() > kElementosEnCola;
  }
  /// More waits than memory should hold. To be asked where the run can be cancelled, and answered with EsperaSitio.
  [[nodiscard]] bool EstaLlena() const { return llena; }
  /// Waits until the worker has done half of what waits. `sigue()` is asked at once and every 40 ms; its false ends the
  /// wait, and is the answer. So a worker that the host has suspended holds the run up, and does not keep it from being
  /// cancelled.
  template <class F>
  bool EsperaSitio(F&& sigue) {
    llena = false;
    std::size_t cuantos = hasta.size();
    while (cuantos > 1 && Elementos() - hasta[cuantos - 2] <= kElementosEnCola / 2) --cuantos;
    return Espera(static_cast<unsigned>(cuantos), sigue);
  }
  /// Waits in the same way until the worker has done all that is queued. There must be a worker.
  template <class F>
  bool EsperaTodo(F&& sigue) {
    return Espera(static_cast<unsigned>(Encolados()), sigue);
  }
  /// Wakes the worker for what it has not been woken for yet.
  void Despierta() {
    avisadosHasta = Elementos();
    Avisa();
  }
  /// Elements ever queued, and those of sets that are done.
  [[nodiscard]] std::uint64_t Elementos() const { return hasta.empty() ? 0 : hasta.back(); }
  [[nodiscard]] std::uint64_t Liberados() const {
    const unsigned n = Hechos();
    return n == 0 ? 0 : hasta[n - 1];
  }

  // --- flags ---
  /// No more work will come: the worker leaves once all is done.
  void Acaba() { Alza(fin); }
  /// The worker leaves before the next set.
  void Para() { Alza(parar); }
  [[nodiscard]] bool HaAcabado() const { return fin != 0; }
  [[nodiscard]] bool HaParado() const { return parar != 0; }

  // --- looks ---
  /// Sets queued, and done. Both only grow.
  [[nodiscard]] std::size_t Encolados() const {
    CSingleLock cerrojo(&seccion, true);
    return entradas.size();
  }
  [[nodiscard]] unsigned Hechos() const { return hechos.load(std::memory_order_acquire); }
  /// The entries, while no worker runs.
  [[nodiscard]] std::vector<TSet*> const& Entradas() const { return entradas; }

  // --- the worker ---
  /// The next set. Null when the worker is to leave; waits while there is none.
  TSet* Siguiente() {
    for (;;) {
      const unsigned visto = aviso.load();
      const bool ultima = fin != 0;  // read before the queue: what was queued before the flag went up is not missed
      if (TSet* set = SiguienteSinEsperar()) return set;
      if (ultima || parar != 0) return nullptr;
      EsperaNovedad(visto);
    }
  }
  /// The same without a wait: null also when there is none yet.
  TSet* SiguienteSinEsperar() {
    // The stop flag is looked at under the lock: a worker that was told to stop takes nothing queued afterwards.
    CSingleLock cerrojo(&seccion, true);
    const unsigned i = hechos.load(std::memory_order_relaxed);
    return parar == 0 && i < entradas.size() ? entradas[i] : nullptr;
  }
  /// The set that Siguiente gave is done.
  void PonHecho() {
    if (hechos.fetch_add(1) + 1 >= meta) avance.SetEvent();
  }

 private:
  void Alza(std::atomic<int>& bandera) {
    {
      CSingleLock cerrojo(&seccion, true);
      bandera = 1;
    }
    aviso.fetch_add(1);
    Avisa();
  }
  /// By a lock and its condition: where the system has no futexes, the library of GCC 12 misses wake-ups of an atomic.
  void Avisa() {
    { const std::lock_guard guarda(dormido); }  // whoever has looked at `aviso` sleeps by now
    despertador.notify_one();
  }

  /// Waits until so many sets are done. The goal is set before it is looked at, and the worker counts before it looks
  /// at the goal: one of the two sees the other.
  template <class F>
  bool Espera(unsigned cuantos, F&& sigue) {
    constexpr long long kMilisegundos = 40;  // no longer than a person takes to miss an answer to Ctrl-C
    Despierta();
    bool va = true;
    for (meta = cuantos; hechos < cuantos;) {
      va = sigue();
      if (!va) break;
      if (!avance.Lock(kMilisegundos) && avance.m_hObject == nullptr) std::this_thread::yield();
    }
    meta = kNinguna;
    return va;
  }

  /// Sets come every few microseconds while points go in, so a short spin catches most of them; after it the thread
  /// sleeps.
  void EsperaNovedad(unsigned visto) {
    constexpr int kVueltas = 200;
    for (int i = 0; i < kVueltas; ++i) {
      if (aviso.load(std::memory_order_relaxed) != visto) return;
    }
    std::unique_lock guarda(dormido);
    despertador.wait(guarda, [&] { return aviso != visto; });
  }

  static constexpr unsigned kNinguna = std::numeric_limits<unsigned>::max();

  mutable CCriticalSection seccion;  ///< guards the entries, and the flags as they rise
  std::vector<TSet*> entradas;
  std::atomic<int> parar{0}, fin{0};
  std::atomic<unsigned> aviso{0};  ///< changes with every append and every flag
  std::mutex dormido;              ///< held by the worker until it sleeps
  std::condition_variable despertador;
  std::atomic<unsigned> hechos{0};       ///< index of the next entry to be done
  std::atomic<unsigned> meta{kNinguna};  ///< how many sets the inserting thread waits for
  CEvent avance;                         ///< set when they are done

  // The inserting thread's own.
  std::vector<std::uint64_t> hasta;  ///< elements in the queue up to each entry
  std::uint64_t avisadosHasta = 0;   ///< elements in the queue when the worker was last woken
  bool llena = false;
};

}  // namespace Meseta47
