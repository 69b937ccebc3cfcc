#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <limits>

#include "platform/Exporta.h"

namespace Meseta47 {

/// Where two inserting threads stand, and who waits for whom. Each point has its number before it goes in; a half tells
/// the number that it is at, and that says that all its points below are in.
///
/// A point that touches nothing but its half's own goes in whenever its half comes to it. Any other takes its turn: it
/// waits until the other half is beyond its number and stands still, does its work alone, and lets the other go on. So
/// points in turn go in one at a time, in the order of their numbers, and while one does nothing else happens. The
/// lower of two numbers never waits for the higher to be done, so one of the two always goes on.
///
///   half 0   ...  513  514 | 515 in turn: waits for half 1      | 515 alone | 516 ...
///   half 1   ...  300  301   ...  512 | is at 769: beyond 515, stands still | 769 ...
///
/// All that one half has written is seen by the other once it has its turn, or has been let go on. Nothing is locked
/// while points go in; a half reads one word of its own for each of them.
///
/// Where the second processor is another program's, halves wait for each other more than they gain. The one that finds
/// this out in its turn names a number where they meet: both go on up to it and no further. Then the mesh is that of
/// all points below, and one thread can take both halves on from there, or the two can.
///
///   half 0   ...  515 in turn: "we meet at 770" | 516 ...  640 | stops before 1025
///   half 1   ...  is at 769: stands still       | 769          | stops before  771
class URDIMBRE_API CTurnos {
 public:
  /// A half that has no more points is at this number.
  static constexpr int kAcabada = std::numeric_limits<int>::max();
  /// How far a half may be ahead of the other, in numbers: what it has finished waits in memory until then.
  static constexpr int kVentaja = 1 << 12;

  /// Called by a thread on its way through, with its half and what it is about to do. It may take its time; that is
  /// what it is for. What it answers counts where the half weighs its waits.
  enum CJuicio { POR_EL_RELOJ, VAN_BIEN, ESPERAN_DEMASIADO };
  using CTestigo = CJuicio (*)(unsigned mitad, char const* paso);
  /// For tests: told of every crossing from now on; and how many points one thread takes alone at first. Null for none.
  /// Not while halves are under way.
  static void Observa(CTestigo testigo, int tramoSolo = kTramoSolo);
  /// Points that one thread takes alone before two try again: what takes some times as long as to find out.
  static constexpr int kTramoSolo = 1 << 16;
  [[nodiscard]] static int TramoSolo();

  CTurnos() = default;
  CTurnos(CTurnos const&) = delete;
  CTurnos& operator=(CTurnos const&) = delete;

  // --- while neither half is under way ---
  /// Two threads go on, both at this number.
  void VanLosDos(int numero);
  /// One thread goes on with both halves, point by point in the order of the numbers: nobody is waited for.
  void VaUno();
  [[nodiscard]] bool EstaUnoSolo() const { return vaUno; }
  /// Where both have stopped; kAcabada if they were to go on to the end.
  [[nodiscard]] int Encuentro() const { return encuentro.load(std::memory_order_acquire); }

  // --- of a half; each by its own thread ---
  /// The half is now at this number, greater than the one before. Stands still if the other half wants its turn. False:
  /// the work is to end, or the halves meet before this number.
  [[nodiscard]] bool Empieza(unsigned mitad, int numero) {
    CPuesto& mio = puestos[mitad];
    mio.numero.store(numero, std::memory_order_release);
    if (numero <= mio.hastaDonde && mio.llamada.load(std::memory_order_acquire) == 0) [[likely]] {
      return true;
    }
    return Atiende(mitad, numero);
  }
  /// Waits for the turn of the number that the half is at; then the other half stands still, in between two points,
  /// until Suelta. False: the work is to end, and the turn has not come.
  [[nodiscard]] bool Toma(unsigned mitad);
  void Suelta(unsigned mitad);
  /// The half has no more points, and touches nothing any more.
  void Acaba(unsigned mitad);
  /// By the one thread of both halves: this one has no point up to here either.
  void Acompana(unsigned mitad, int numero) { puestos[mitad].numero.store(numero, std::memory_order_relaxed); }

  // --- of both ---
  /// The number that a half is at.
  [[nodiscard]] int Numero(unsigned mitad) const { return puestos[mitad].numero.load(std::memory_order_acquire); }
  /// The lowest number that may still be under way.
  [[nodiscard]] int HechoHasta() const;
  /// The work is to end: no half begins another point, and no wait goes on.
  void Para() noexcept;
  [[nodiscard]] bool HaParado() const { return parado.load(std::memory_order_acquire); }

 private:
  using CReloj = std::chrono::steady_clock;
  // A cache line each, as the one thread writes what the other reads.
  struct alignas(64) CPuesto {
    std::atomic<int> numero{0};
    std::atomic<bool> quieta{false};  ///< the half stands still
    // Its own:
    int hastaDonde = 0;           ///< up to here it has leave to go without looking at the other
    CReloj::duration esperado{};  ///< in waits that were not over at once, since
    CReloj::time_point desde;
    alignas(64) std::atomic<unsigned> llamada{0};  ///< the half is to look up: kTurno, kFin, kTestigo, kEncuentro
  };
  enum : unsigned { kTurno = 1, kFin = 2, kTestigo = 4, kEncuentro = 8 };

  bool Atiende(unsigned mitad, int numero);
  bool EsperaDemasiado(unsigned mitad);
  void FijaEncuentro(int numero);
  void CedePaso(unsigned mitad);
  template <class F>
  bool EsperaA(unsigned mitad, F&& condicion);

  CPuesto puestos[2];
  std::atomic<bool> parado{false};
  std::atomic<int> encuentro{kAcabada};
  bool vaUno = false;
};

}  // namespace Meseta47
