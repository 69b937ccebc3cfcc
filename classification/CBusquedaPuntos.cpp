#include "classification/CBusquedaPuntos.h"

namespace Meseta47 {

void CBusquedaPuntos::Renumera(std::size_t numeros) {
  puntos.sort(0, true);
  tabla.assign(numeros, 0);
  for (unsigned i = 0; i < puntos.size(); ++i) {
    const auto numero = static_cast<std::size_t>(puntos[i].num);
    if (puntos[i].num <= 0 || numero > numeros) continue;
    puntos[i].num = tabla[numero - 1] = static_cast<int>(i) + 1;
  }
}

CPuntoTIN* CBusquedaPuntos::Punto(CSetPuntosMdt& puntos, std::vector<int> const& tabla, int numero) {
  const auto indice = static_cast<std::size_t>(numero) - 1;  // numbers below 1 come out beyond any table
  return indice < tabla.size() ? puntos.at(static_cast<unsigned>(tabla[indice]) - 1) : nullptr;
}

bool CBusquedaPuntos::EsHallado(int numero) {
  CPuntoTIN const* punto = Punto(numero);
  return punto != nullptr && punto->num < 1;
}

}  // namespace Meseta47
