#include "model/drawing/CObjetoFichero.h"

namespace Meseta47 {

CObjetoFichero& CObjetoFichero::operator=(CObjetoFichero const& o) {
  fichero = o.fichero;
  nivelMensajes = o.nivelMensajes;
  for (int i = 0; i < 3; ++i) cantidades[i] = o.cantidades[i];
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
