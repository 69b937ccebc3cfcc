#include "classification/CTinSuelo.h"

#include <algorithm>
#include <tuple>

#include "model/geometry/Hilbert.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

namespace {

constexpr double kSinLimite = 2147483647.0;  // scaled units: no side of a cloud is longer
constexpr unsigned kIdentificador = 18;      // in the name of the temporary file

/// The ground minima along a Hilbert curve of their cells: cells end one after another and little of the mesh is alive.
std::vector<CCoor3D<int>> EnOrden(CMallaSuelo const& malla, std::vector<std::uint32_t> const& vertices) {
  struct CClave {
    std::uint64_t lugar;
    std::uint32_t minimo;
  };
  std::vector<CClave> claves;
  claves.reserve(vertices.size());
  for (const std::uint32_t i : vertices) {
    const auto ancho = static_cast<std::uint32_t>(malla.columnas);
    const std::uint32_t columna = malla.celdas[i] % ancho, fila = malla.celdas[i] / ancho;
    claves.push_back({Hilbert(columna, fila), i});
  }
  std::sort(claves.begin(), claves.end(), [](CClave const& a, CClave const& b) { return a.lugar < b.lugar; });
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
  for (std::uint32_t i = 0; i < malla.Minimos(); ++i) {
    if (malla.EsSuelo(i)) vertices.push_back(i);
  }
  if (vertices.size() < 3) return kHecho;
  CSetPuntos<int> puntos;
  puntos.CLinea<int>::Asigna(EnOrden(malla, vertices));
  // No two minima share a plan position, so this is the order of the points of the model.
  std::sort(vertices.begin(), vertices.end(), [&malla](std::uint32_t a, std::uint32_t b) {
    CMinimoSuelo const &p = malla.minimos[a], &q = malla.minimos[b];
    return std::tie(p.x, p.y) < std::tie(q.x, q.y);
  });
  CDibujo<int> nada(tin.semilla);
  CDibujoPrestado prestado(tin.semilla);
  prestado.otros[0]->Inserta(std::move(puntos));
  CTriangulacion2D triangulacion(0, tin.semilla, kIdentificador);
  CPregunta pregunta(sigue);
  triangulacion.Avisa(&pregunta);
  const double lado = kSinLimite / tin.semilla.Precision();
  return triangulacion.Run({.dibujo = nada, .otros = &prestado.otros, .ladoMaximo = lado, .vaciar = true}, tin);
}

}  // namespace Meseta47
