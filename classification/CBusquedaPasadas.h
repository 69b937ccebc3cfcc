#pragma once

#include <cstdint>

#include "model/threads/CMarcha.h"
#include "model/threads/Codigos.h"
#include "run/CFicheroTriples.h"

namespace Meseta47 {

/// Passes of most searches: the first points, what two found neighbours ask for, and last what one is enough for.
inline constexpr unsigned kPasadas = 3, kUltimaPasada = kPasadas - 1;
/// Runs that the bar of some begins with, though there are three at least.
inline constexpr unsigned kAnunciadas = 2;

/// The passes of a search over the temporary file, and its progress in bytes of it.
///
/// Pass 0 finds the first points and runs once. Each later one spreads from what has been found and runs again as long
/// as a run of it finds something; the bar grows by a run when that is known.
struct CBusquedaPasadas {
  /// The bar begins with room for so many runs; a search that announces fewer than it will make passes its total.
  CBusquedaPasadas(unsigned cuantas, std::uint64_t laLongitud, unsigned anunciadas)
      : numPasadas(cuantas), longitud(laLongitud), total(anunciadas * laLongitud) {}
  CBusquedaPasadas(unsigned cuantas, std::uint64_t laLongitud) : CBusquedaPasadas(cuantas, laLongitud, cuantas) {}

  unsigned numPasadas;
  std::uint64_t longitud;       ///< of the file
  std::uint64_t total;          ///< bytes that all the runs of all passes will read, as far as is known
  std::uint64_t acumulado = 0;  ///< bytes of the runs done
  unsigned pasada = 0;
  unsigned hallados = 0;  ///< points that this run has found
  bool cambio = false;    ///< and whether they are any, in a pass other than 0

  [[nodiscard]] bool Quedan() const { return pasada < numPasadas; }
  void Empieza() {
    hallados = 0;
    cambio = false;
  }
  void Termina() {
    acumulado += longitud;
    if (pasada == 0 || !cambio) ++pasada;
  }
  /// A point has been found: in a pass other than 0 there will be another run of it.
  void Halla() {
    ++hallados;
    if (pasada == 0 || cambio) return;
    total += longitud;
    cambio = true;
  }
};

/// All runs of all passes, on the caller's thread: `visita(triple)` for each one of the file that does not touch the
/// frame, with a step of progress for each one that is read. kHecho, kCancelado; kFicheroInaccesible when the file
/// cannot be opened, kFicheroInconsistente when the disk refused a record or the length.
template <class F>
int RecorrePasadas(CString const& ruta, CBusquedaPasadas& pasadas, IPorcentaje* porcentaje, int nivel, F&& visita) {
  CLectorTriples lector;
  if (!lector.Abre(ruta)) return kFicheroInaccesible;
  // A length that the disk did not tell is 0, and the file would pass for an empty one.
  if (lector.Longitud() != pasadas.longitud || lector.HayError()) return kFicheroInconsistente;
  const auto todos = static_cast<unsigned>(pasadas.longitud / CFicheroTriples::kBytes);
  for (; pasadas.Quedan(); pasadas.Termina()) {
    pasadas.Empieza();
    if (!lector.Situa(0, todos, pasadas.longitud)) return kFicheroInconsistente;
    std::uint64_t leidos = pasadas.acumulado;
    for (auto triples = lector.Siguiente(); !triples.empty(); triples = lector.Siguiente()) {
      for (CTriple const& t : triples) {
        const bool sigue = porcentaje == nullptr || porcentaje->Porcentaje(nivel, leidos, pasadas.total, false) != 0;
        if (!sigue) return kCancelado;
        leidos += CFicheroTriples::kBytes;
        if (!TocaElMarco(t)) visita(t);
      }
    }
    if (lector.Posicion() < lector.Limite()) return kFicheroInconsistente;
  }
  return kHecho;
}

}  // namespace Meseta47
