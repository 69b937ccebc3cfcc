#include "planar/CSuperficieDeRun.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "model/terrain/Exportacion.h"
#include "model/threads/Reparto.h"
#include "platform/CFile.h"
#include "platform/Procesadores.h"

namespace Meseta47 {

namespace {

/// Readers of the faces, one for each of the threads that write. Their memory is taken beforehand.
class CCaras {
 public:
  explicit CCaras(std::size_t cuantas) : longitud(std::uint64_t{cuantas} * CFicheroTriples::kBytes) {}

  bool Abre(CString const& ruta) {
    return std::ranges::all_of(lectores, [&ruta](CLectorTriples& lector) { return lector.Abre(ruta); });
  }

  /// Calls `hace(triple)` for those of a block. False when the disk refused one.
  template <class F>
  bool Recorre(std::size_t desde, std::size_t hasta, std::size_t pieza, F&& hace) {
    CLectorTriples& lector = lectores[pieza];
    lector.Situa(static_cast<unsigned>(desde / kPorBloque), kPorBloque, longitud);
    for (auto triples = lector.Siguiente(); !triples.empty(); triples = lector.Siguiente()) {
      desde += triples.size();
      for (CTriple const& t : triples) hace(t);
    }
    return desde == hasta;
  }

  static constexpr unsigned kPorBloque = 1 << 14;

 private:
  std::uint64_t longitud;
  std::vector<CLectorTriples> lectores = std::vector<CLectorTriples>(NumeroProcesadores());
};

}  // namespace

void CSuperficieDeRun::Anade(CDibujo<int> const& dibujo) {
  for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
    auto const& puntos = dibujo[i].Puntos();
    for (std::size_t k = 0; k < puntos.size(); k += kPorTramo) {
      const std::size_t cuantos = std::min(kPorTramo, puntos.size() - k);
      tramos.push_back({puntos.data() + k, puntos.data() + k + cuantos, 0});
    }
  }
}

void CSuperficieDeRun::Cuenta() {
  Reparte(tramos.size(), 1, [this](std::size_t i, std::size_t) {
    CTramo& t = tramos[i];
    t.vertice =
        static_cast<std::size_t>(std::count_if(t.desde, t.hasta, [](CCoor3D<int> const& p) { return p.num > 0; }));
  });
  vertices = 0;
  for (CTramo& t : tramos) vertices += std::exchange(t.vertice, vertices);
}

int CSuperficieDeRun::EscribePLY(CFile& destino, CDataSemilla const& semilla, std::size_t numeros, CString const& ruta,
                                 std::size_t caras, CAvance& avance) const {
  std::vector<std::uint32_t> lugar(numeros);  // by number less 1: the vertex that it is
  CCaras lectura(caras);
  if (!lectura.Abre(ruta)) return kFicheroInconsistente;
  if (!EscribeTexto(destino, CabeceraPLY(vertices, caras))) return kFicheroInaccesible;

  const CEjesReales ejes(semilla);
  const auto puntos = [&](std::size_t i, std::size_t, std::size_t, char* sitio) {
    auto vertice = static_cast<std::uint32_t>(tramos[i].vertice);
    for (CCoor3D<int> const* p = tramos[i].desde; p != tramos[i].hasta; ++p) {
      if (p->num <= 0) continue;
      lugar[static_cast<std::size_t>(p->num) - 1] = vertice++;
      sitio = PonPuntoPLY(sitio, ejes, *p);
    }
    return sitio;
  };
  const int codigo = EscribeBloques(destino, tramos.size(), 1, kPorTramo * kAnchoPuntoPLY, puntos, avance);
  if (codigo != kHecho) return codigo;

  std::atomic<bool> leido{true};
  const auto triangulos = [&](std::size_t desde, std::size_t hasta, std::size_t pieza, char* sitio) {
    const bool bien = lectura.Recorre(desde, hasta, pieza, [&](CTriple const& t) {
      const auto vertice = [&lugar](std::int32_t numero) { return lugar[static_cast<std::size_t>(numero) - 1]; };
      sitio = PonCaraPLY(sitio, {vertice(t[0]), vertice(t[2]), vertice(t[1])});
    });
    if (!bien) leido = false;
    return bien ? sitio : nullptr;
  };
  const int fin = EscribeBloques(destino, caras, CCaras::kPorBloque, kAnchoCaraPLY, triangulos, avance);
  return leido ? fin : kFicheroInconsistente;
}

}  // namespace Meseta47
