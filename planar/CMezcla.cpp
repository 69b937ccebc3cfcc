#include "planar/CMezcla.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/CFile.h"

namespace Meseta47 {

void CMezcla::Anade(unsigned mitad, CApunte apunte) noexcept {
  const std::lock_guard guarda(seccion);
  try {
    pendientes[mitad].push_back(std::move(apunte));
  } catch (std::bad_alloc const&) {
    FaltaMemoria();
  }
}

void CMezcla::Vierte(int hasta) noexcept {
  const std::unique_lock guarda(escribiendo, std::try_to_lock);
  if (!guarda.owns_lock()) return;  // what this leaves, the next one takes
  try {
    std::vector<CApunte> salen;
    Saca(hasta, salen);
    for (CApunte const& apunte : salen) Escribe(apunte);
  } catch (std::bad_alloc const&) {
    FaltaMemoria();
  }
}

/// The notes below the number, in order; of each the half's living triangles become those of both.
void CMezcla::Saca(int hasta, std::vector<CApunte>& salen) {
  const std::lock_guard guarda(seccion);
  for (;;) {
    unsigned mitad = 2;
    for (unsigned i = 0; i < 2; ++i) {
      if (pendientes[i].empty() || pendientes[i].front().numero >= hasta) continue;
      if (mitad == 2 || pendientes[i].front().numero < pendientes[mitad].front().numero) mitad = i;
    }
    if (mitad == 2) return;
    salen.push_back(std::move(pendientes[mitad].front()));
    pendientes[mitad].pop_front();
    vivos[mitad] = salen.back().vivos;
    salen.back().vivos = vivosAntes + vivos[0] + vivos[1];
  }
}

/// As CTriangulacion2D::Salva does it.
void CMezcla::Escribe(CApunte const& apunte) {
  if (apunte.set == nullptr) return;
  pico = std::max(pico, static_cast<std::uint64_t>(apunte.vivos) - cola.Liberados());
  cola.Anade(apunte.set, apunte.triangulos);
  if (!apunte.registros.empty()) {
    fichero->Write(apunte.registros.data(), apunte.registros.size() * sizeof(std::int32_t));
  }
  cola.PonHecho();
}

}  // namespace Meseta47
