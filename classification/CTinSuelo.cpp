#include "classification/CTinSuelo.h"

#include <algorithm>
#include <bit>

#include "model/geometry/Hilbert.h"
#include "model/storage/OrdenaPorCifras.h"
#include "model/threads/IPorcentaje.h"
#include "model/threads/Reparto.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

namespace {

constexpr double kSinLimite = 2147483647.0;  // scaled units: no side of a cloud is longer
constexpr unsigned kIdentificador = 18;      // in the name of the temporary file
constexpr std::size_t kBloque = 4096;        // vertices that a thread takes at a time

/// The ground minima along a Hilbert curve of their cells: cells end one after another and little of the mesh is alive.
std::vector<CCoor3D<int>> EnOrden(CMallaSuelo const& malla) {
  struct CClave {
    std::uint64_t lugar;
    std::uint32_t minimo;
  };
  VectorCrudo<CClave> claves, otras;
  claves.reserve(malla.Minimos());
  const auto ancho = static_cast<std::uint32_t>(malla.columnas);
  for (std::uint32_t i = 0; i < malla.Minimos(); ++i) {
    if (malla.EsSuelo(i)) claves.push_back({Hilbert(malla.celdas[i] % ancho, malla.celdas[i] / ancho), i});
  }
  otras.resize(claves.size());
  const auto lados = static_cast<std::uint64_t>(std::max(malla.columnas, malla.filas));
  const unsigned bits = 2 * static_cast<unsigned>(std::bit_width(lados));
  OrdenaPorCifras(claves, otras, std::min(bits, 32U),
                  [](CClave const& c) { return static_cast<std::uint32_t>(c.lugar); });
  OrdenaPorCifras(claves, otras, bits - std::min(bits, 32U),
                  [](CClave const& c) { return static_cast<std::uint32_t>(c.lugar >> 32); });
  std::vector<CCoor3D<int>> puntos;
  puntos.reserve(claves.size());
  for (CClave const& clave : claves) {
    CMinimoSuelo const& m = malla.minimos[clave.minimo];
    puntos.emplace_back(m.x, m.y, m.z, 0);
  }
  return puntos;
}

/// A drawing that a run deletes as soon as its points are in the model: as long as one that is the run's own, it would
/// stand beside the triangles.
struct CDibujoPrestado {
  explicit CDibujoPrestado(CDataSemilla const& semilla) : otros{new CDibujo<int>(semilla)} {}
  CDibujoPrestado(CDibujoPrestado const&) = delete;
  CDibujoPrestado& operator=(CDibujoPrestado const&) = delete;
  ~CDibujoPrestado() { delete otros[0]; }

  std::vector<CDibujo<int>*> otros;
};

/// Asks a function whether to go on. The phases of the run would interrupt those of the search, and are not told.
class CPregunta final : public IPorcentaje {
 public:
  explicit CPregunta(std::function<bool()> const& laPregunta) : pregunta(laPregunta) {}

  int Porcentaje(int, unsigned long long, unsigned long long, bool) override { return pregunta() ? 1 : 0; }
  void Fase(int, unsigned) override {}
  void Cierra(int, int) override {}
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int, CString*, int) override {}

 private:
  std::function<bool()> const& pregunta;
};

}  // namespace

int CTinSuelo::Construye(CMallaSuelo const& malla, std::function<bool()> const& sigue) {
  tin.Clear();
  vertices.clear();
  CSetPuntos<int> puntos;
  puntos.CLinea<int>::Asigna(EnOrden(malla));
  if (puntos.NPuntos() < 3) return kHecho;
  CDibujo<int> nada(tin.semilla);
  CDibujoPrestado prestado(tin.semilla);
  prestado.otros[0]->Inserta(std::move(puntos));
  CTriangulacion2D triangulacion(0, tin.semilla, kIdentificador);
  CPregunta pregunta(sigue);
  triangulacion.Avisa(&pregunta);
  const double lado = kSinLimite / tin.semilla.Precision();
  const int codigo =
      triangulacion.Run({.dibujo = nada, .otros = &prestado.otros, .ladoMaximo = lado, .vaciar = true}, tin);
  vertices.resize(tin.puntos.size());
  Reparte(vertices.size(), kBloque, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t v = desde; v < hasta; ++v) {
      vertices[v] = malla.indice[malla.CeldaDe(tin.puntos[static_cast<unsigned>(v)])];
    }
  });
  return codigo;
}

}  // namespace Meseta47
