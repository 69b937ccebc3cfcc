#include "model/storage/CFicheroSumado.h"

#include <algorithm>

#include "model/threads/Codigos.h"
#include "platform/CFile.h"

namespace Meseta47 {

void CSuma::Suma(char const* bytes, std::size_t cuantos) {
  for (std::size_t i = 0; i < cuantos; i += 8) {
    std::uint64_t palabra = 0;
    std::memcpy(&palabra, bytes + i, std::min<std::size_t>(8, cuantos - i));
    valor = (valor ^ palabra) * 1099511628211u;
  }
}

void CSeccionSalida::Pon(void const* datos, std::size_t cuantos) {
  auto const* bytes = static_cast<char const*>(datos);
  while (cuantos > 0) {
    const std::size_t entran = std::min(cuantos, kBloque - lleno);
    std::memcpy(bloque.data() + lleno, bytes, entran);
    lleno += entran;
    bytes += entran;
    cuantos -= entran;
    if (lleno == kBloque) Vuelca();
  }
}

bool CSeccionSalida::Cierra() {
  Vuelca();
  const std::uint64_t valor = suma.Valor();
  va = va && fichero.Write(&valor, sizeof valor);
  return va;
}

void CSeccionSalida::Vuelca() {
  suma.Suma(bloque.data(), lleno);
  va = va && fichero.Write(bloque.data(), lleno);
  lleno = 0;
}

CSeccionEntrada::CSeccionEntrada(CFile& elFichero)
    : fichero(elFichero), restante(elFichero.GetLength() - std::min(elFichero.GetLength(), elFichero.GetPosition())) {}

bool CSeccionEntrada::Toma(void* destino, std::size_t cuantos) {
  auto* bytes = static_cast<char*>(destino);
  restante -= std::min<std::uint64_t>(restante, cuantos);
  while (cuantos > 0) {
    const auto piden = static_cast<unsigned>(std::min<std::size_t>(cuantos, 1u << 30));
    if (fichero.Read(bytes, piden) != piden) return false;
    cuantos -= piden;
    bytes += piden;
  }
  auto const* nuevos = static_cast<char const*>(destino);
  std::size_t quedan = static_cast<std::size_t>(bytes - nuevos);
  if (enResto > 0) {  // records need not be multiples of 8: the words of the sum run on over their limits
    const std::size_t entran = std::min(quedan, sizeof resto - enResto);
    std::memcpy(resto + enResto, nuevos, entran);
    enResto += entran;
    nuevos += entran;
    quedan -= entran;
    if (enResto < sizeof resto) return true;
    suma.Suma(resto, sizeof resto);
  }
  suma.Suma(nuevos, quedan & ~std::size_t{7});
  enResto = quedan & 7;
  std::memcpy(resto, nuevos + (quedan - enResto), enResto);
  return true;
}

bool CSeccionEntrada::Caben(std::uint64_t cuantos, std::size_t tamano) const {
  return restante >= sizeof(std::uint64_t) && cuantos <= (restante - sizeof(std::uint64_t)) / tamano;
}

int CSeccionEntrada::Cierra() {
  if (enResto > 0) suma.Suma(resto, enResto);
  std::uint64_t valor = 0;
  if (fichero.Read(&valor, sizeof valor) != sizeof valor) return kFicheroCortado;
  return valor == suma.Valor() ? kHecho : kFicheroInconsistente;
}

}  // namespace Meseta47
