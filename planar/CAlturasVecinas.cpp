#include "planar/CAlturasVecinas.h"

#include <cstdint>

namespace Meseta47 {

namespace {

constexpr unsigned kRepechos = 2;      // steep rises that make a peak by themselves
constexpr unsigned kPocosVecinos = 4;  // two triangles: one side of the point is open, and it may belong to a slope

}  // namespace

void CAlturasVecinas::Prepara(std::size_t puntos) {
  for (std::vector<int>* v : {&minimos, &maximos, &sumas}) v->assign(puntos, 0);
  for (std::vector<unsigned char>* v : {&vecinos, &empinados}) v->assign(puntos, 0);
}

bool CAlturasVecinas::EsPico(std::size_t indice, int z, int altura) const {
  if (empinados[indice] >= kRepechos) return true;
  if (vecinos[indice] <= kPocosVecinos) return false;  // also keeps the division below from 0
  const std::int64_t minimo = minimos[indice], maximo = maximos[indice], media = sumas[indice] / vecinos[indice];
  if (z - maximo > altura) return true;
  if (z > maximo) return z - media > altura;
  if (minimo - z > altura) return true;
  return z < minimo && media - z > altura;
}

}  // namespace Meseta47
