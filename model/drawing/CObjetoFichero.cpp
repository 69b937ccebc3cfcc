#include "model/drawing/CObjetoFichero.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Meseta47 {

CObjetoFichero& CObjetoFichero::operator=(CObjetoFichero const& o) {
  fichero = o.fichero;
  nivelMensajes = o.nivelMensajes;
  std::copy(std::begin(o.cantidades), std::end(o.cantidades), cantidades);
  return *this;
}

CObjetoFichero& CObjetoFichero::operator=(CObjetoFichero&& o) noexcept {
  fichero = std::move(o.fichero);
  nivelMensajes = o.nivelMensajes;
  std::copy(std::begin(o.cantidades), std::end(o.cantidades), cantidades);
  return *this;
}

void CObjetoFichero::Clear() {
  for (std::uint32_t& cantidad : cantidades) cantidad = 0;
}

CNivelMensajes CObjetoFichero::Mensajes(CNivelMensajes nivel) {
  const CNivelMensajes anterior = nivelMensajes;
  nivelMensajes = nivel < MENSAJES_NINGUNO || nivel > MENSAJES_NORMALES ? MENSAJES_NINGUNO : nivel;
  return anterior;
}

}  // namespace Meseta47
