#include "planar/CSegmentos.h"

#include <algorithm>

namespace Meseta47 {

namespace {

constexpr std::size_t kMenorBloque = 16, kMayorBloque = 1 << 16;  // pieces: 256 bytes to a megabyte

}  // namespace

void CSegmentos::CNivel::Anade(CSegmento const& s) {
  if (bloques.empty() || bloques.back().size() == bloques.back().capacity()) {
    bloques.emplace_back().reserve(std::clamp(cantidad, kMenorBloque, kMayorBloque));
  }
  bloques.back().push_back(s);
  ++cantidad;
}

void CSegmentos::Anade(CCoor3D<int> const& a, CCoor3D<int> const& b) {
  if (ultimo == nullptr || ultimoZ != a.z) {
    ultimo = &niveles[a.z];
    ultimoZ = a.z;
  }
  const CLugarPlano p{a.x, a.y}, q{b.x, b.y};
  ultimo->Anade({std::min(p, q), std::max(p, q)});
  ++cantidad;
}

std::vector<CSegmento> CSegmentos::Saca(int z) {
  std::vector<CSegmento> segmentos;
  const auto nivel = niveles.find(z);
  if (nivel == niveles.end()) return segmentos;
  segmentos.reserve(nivel->second.cantidad);
  for (std::vector<CSegmento>& bloque : nivel->second.bloques) {
    segmentos.insert(segmentos.end(), bloque.begin(), bloque.end());
    std::vector<CSegmento>().swap(bloque);  // there is not room for the level twice
  }
  cantidad -= segmentos.size();
  niveles.erase(nivel);
  ultimo = nullptr;
  return segmentos;
}

void CSegmentos::Clear() {
  niveles.clear();
  ultimo = nullptr;
  cantidad = 0;
}

}  // namespace Meseta47
