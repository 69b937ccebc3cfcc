#pragma once

#include <cstdint>

namespace Meseta47 {

/// The passes of a search over the temporary file, and its progress in bytes of it.
///
/// Pass 0 finds the first points and runs once. Each later one spreads from what has been found and runs again as long
/// as a run of it finds something; the bar grows by a run when that is known.
struct CBusquedaPasadas {
  CBusquedaPasadas(unsigned cuantas, std::uint64_t laLongitud)
      : numPasadas(cuantas), longitud(laLongitud), total(cuantas * laLongitud) {}

  unsigned numPasadas;
  std::uint64_t longitud;       ///< of the file
  std::uint64_t total;          ///< bytes that all the runs of all passes will read, as far as is known
  std::uint64_t acumulado = 0;  ///< bytes of the runs done
  unsigned pasada = 0;
  bool cambio = false;  ///< this run has found something, in a pass other than 0

  [[nodiscard]] bool Quedan() const { return pasada < numPasadas; }
  void Empieza() { cambio = false; }
  void Termina() {
    acumulado += longitud;
    if (pasada == 0 || !cambio) ++pasada;
  }
};

}  // namespace Meseta47
