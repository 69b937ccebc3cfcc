#pragma once

#include <cstddef>
#include <functional>

#include "platform/Exporta.h"

namespace Meseta47 {

/// Shares out [0, total) in blocks of `bloque` items among NumeroProcesadores() threads, the caller's one among them:
/// trabajo(first, last) is called once for every block, begun in ascending order, from several threads at once.
/// Everything is done when this returns. Where the system refuses a thread, the others do its share. Of what `trabajo`
/// may throw only std::bad_alloc: it ends the work, and is thrown on once all threads have stopped.
///
/// `avisa`, when given, is called on the caller's thread between its blocks with the number of items begun; once it
/// answers false no further block is begun. False when that happened.
///
/// Of the processors, `ocupados` are left to what goes on beside it, as far as there are others.
URDIMBRE_API bool Reparte(std::size_t total, std::size_t bloque,
                          std::function<void(std::size_t, std::size_t)> const& trabajo,
                          std::function<bool(std::size_t)> const& avisa = {}, unsigned ocupados = 0);

}  // namespace Meseta47
