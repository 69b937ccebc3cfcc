#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "platform/Exporta.h"

namespace Meseta47 {

/// Point indices of a triangle.
using Terna = std::array<std::uint32_t, 3>;

/// Triangles as they come, from any number of threads: each thread fills pieces of its own, and takes the lock only
/// for a new piece. Pieces never move.
class URDIMBRE_API CRellenoTIN {
 public:
  CRellenoTIN();
  CRellenoTIN(CRellenoTIN const& otro);
  CRellenoTIN& operator=(CRellenoTIN const& otro);
  ~CRellenoTIN() = default;

  /// From any thread at any time.
  void Inserta(Terna const& terna);

  // The rest belongs to one thread, while nobody inserts.
  [[nodiscard]] std::uint64_t Cantidad() const;
  /// The triangles, piece by piece. Which piece holds a triangle depends on how the threads ran.
  [[nodiscard]] std::vector<std::span<Terna const>> Trozos() const;
  void Vacia();
  /// Takes over what another one holds, in place of what is here.
  void Toma(CRellenoTIN& otro) noexcept;

 private:
  struct Trozo {
    static constexpr std::uint32_t kCabida = 1 << 16;

    std::uint64_t hilo;  ///< who fills it
    std::uint32_t cuantos = 0;
    std::unique_ptr<Terna[]> ternas = std::make_unique_for_overwrite<Terna[]>(kCabida);

    explicit Trozo(std::uint64_t suHilo) : hilo(suHilo) {}
    bool Inserta(Terna const& terna) {
      if (cuantos == kCabida) return false;
      ternas[cuantos++] = terna;
      return true;
    }
  };

  Trozo* OtroTrozo();
  void Copia(CRellenoTIN const& otro);

  std::uint64_t numero;  // never used twice, so that a thread's note of an old filling matches no new one
  std::mutex cerrojo;
  std::vector<std::unique_ptr<Trozo>> trozos;
};

}  // namespace Meseta47
