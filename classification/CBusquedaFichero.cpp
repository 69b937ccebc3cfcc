#include "classification/CBusquedaFichero.h"

#include <algorithm>

#include "platform/CFile.h"

namespace Meseta47 {

std::span<CBusquedaFichero::CRegistro const> CBusquedaFichero::Siguiente(CFile& fichero, std::uint64_t limite) {
  const std::uint64_t posicion = fichero.GetPosition();
  if (posicion >= limite) return {};
  const auto cuantos = static_cast<unsigned>(std::min((limite - posicion + kBytes - 1) / kBytes, kBloque));
  bloque.resize(cuantos);
  const unsigned leidos = fichero.Read(bloque.data(), cuantos * kBytes);
  return {bloque.data(), leidos / kBytes};
}

}  // namespace Meseta47
