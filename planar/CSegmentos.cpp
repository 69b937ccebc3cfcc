#include "planar/CSegmentos.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "planar/CorteDeLado.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kMenorBloque = 16, kMayorBloque = 1 << 16;  // pieces: 256 bytes to a megabyte

// Pieces that go to the file together: 64 KB, which is what a file moves at a time.
constexpr std::size_t kBloqueDeFichero = 1 << 12;
constexpr auto kBytesDeBloque = static_cast<unsigned>(kBloqueDeFichero * sizeof(CSegmento));
static_assert(std::is_trivially_copyable_v<CSegmento> && sizeof(CSegmento) == 16);

}  // namespace

void CSegmentos::CNivel::Anade(CSegmento const& s, CFile* elFichero) {
  if (elFichero != nullptr && cantidad == kBloqueDeFichero) Guarda(*elFichero);
  if (bloques.empty() || bloques.back().size() == bloques.back().capacity()) {
    const std::size_t mayor = elFichero != nullptr ? kBloqueDeFichero - cantidad : kMayorBloque;
    bloques.emplace_back().reserve(std::min(std::max(cantidad, kMenorBloque), mayor));
  }
  bloques.back().push_back(s);
  ++cantidad;
}

void CSegmentos::CNivel::Guarda(CFile& elFichero) {
  enFichero.push_back(elFichero.SeekToEnd());
  for (std::vector<CSegmento> const& bloque : bloques) {
    static_cast<void>(elFichero.Write(bloque.data(), bloque.size() * sizeof(CSegmento)));  // the file keeps a failure
  }
  bloques.clear();
  cantidad = 0;
}

std::size_t CSegmentos::CNivel::Total() const { return enFichero.size() * kBloqueDeFichero + cantidad; }

/// Appends all pieces, and empties the blocks on the way: there is not room for the level twice.
void CSegmentos::CNivel::Recoge(std::vector<CSegmento>& segmentos, CFile* elFichero) {
  segmentos.reserve(Total());
  for (const long long lugar : enFichero) {
    const std::size_t antes = segmentos.size();
    segmentos.resize(antes + kBloqueDeFichero);
    elFichero->Seek(lugar, CFile::begin);
    const bool entero = elFichero->Read(segmentos.data() + antes, kBytesDeBloque) == kBytesDeBloque;
    if (!entero) segmentos.resize(antes);
  }
  for (std::vector<CSegmento>& bloque : bloques) {
    segmentos.insert(segmentos.end(), bloque.begin(), bloque.end());
    std::vector<CSegmento>().swap(bloque);
  }
}

void CSegmentos::Anade(CCoor3D<int> const& a, CCoor3D<int> const& b) {
  if (ultimo == nullptr || ultimoZ != a.z) {
    ultimo = &niveles[a.z];
    ultimoZ = a.z;
  }
  const CLugarPlano p{a.x, a.y}, q{b.x, b.y};
  ultimo->Anade({std::min(p, q), std::max(p, q)}, fichero);
  ++cantidad;
}

//            v2               The level takes the long side v0-v2, and beside it v0-v1 or v1-v2: whichever has one end
//           / |               above it.
//      v1  /  | ------ level
//        \/   |
//         \   |
//            v0
void CSegmentos::Corta(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, int equidistancia) {
  std::array<CCoor3D<int> const*, 3> v{&a, &b, &c};
  std::sort(v.begin(), v.end(), [](auto* p, auto* q) { return p->z < q->z; });
  for (std::int64_t nivel = PrimerNivel(v[0]->z, equidistancia); nivel < v[2]->z; nivel += equidistancia) {
    const CCoor3D<int> p = CorteDeLado(*v[0], *v[2], nivel);
    const CCoor3D<int> q = v[1]->z > nivel ? CorteDeLado(*v[0], *v[1], nivel) : CorteDeLado(*v[1], *v[2], nivel);
    if (p.x != q.x || p.y != q.y) Anade(p, q);
  }
}

std::vector<CSegmento> CSegmentos::Saca(int z) {
  std::vector<CSegmento> segmentos;
  const auto nivel = niveles.find(z);
  if (nivel == niveles.end()) return segmentos;
  cantidad -= nivel->second.Total();
  nivel->second.Recoge(segmentos, fichero);
  niveles.erase(nivel);
  ultimo = nullptr;
  return segmentos;
}

void CSegmentos::Clear() {
  niveles.clear();
  ultimo = nullptr;
  cantidad = 0;
  fichero = nullptr;
  llanos = CLlanos::LADOS;
}

}  // namespace Meseta47
