// The outline step that ends the searches: everything among the points found is found as well.
#include "classification/BusquedaContorno.h"

#include <utility>

#include "model/terrain/CDataSacaLimites.h"
#include "model/terrain/CDataTriangulacion.h"
#include "model/threads/Codigos.h"
#include "planar/CTriangulacion.h"

namespace Meseta47 {

namespace {

constexpr int kOrdenDeContornos = 3;  // sort key of entities: larger outlines before the smaller ones inside them

/// The points of all sets; nothing is left of the drawing. There is not room for them twice, so those of a single set
/// are taken over.
std::vector<CCoor3D<int>> SacaPuntos(CDibujo<int>& dibujo) {
  std::vector<CCoor3D<int>> puntos;
  for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
    std::vector<CCoor3D<int>> suyos;
    CSetPuntos<int>::De(dibujo[i])->swap(suyos);
    if (puntos.empty()) {
      puntos.swap(suyos);
    } else {
      puntos.insert(puntos.end(), suyos.begin(), suyos.end());
    }
  }
  dibujo.Clear();
  return puntos;
}

}  // namespace

CDibujo<int> DibujoDeHallados(CDataSemilla const& semilla, std::vector<CCoor3D<int>>& puntos) {
  CSetPuntos<int> set(L"nuevo");
  set.swap(puntos);
  CDibujo<int> dibujo(semilla);
  dibujo.Inserta(std::move(set));
  return dibujo;
}

int ContornoDeHallados(CDibujo<int>& nuevo, CComoContorno const& como, CDibujo<int>& limites) {
  if (const int codigo = nuevo.BorraDuplicadas(true, false); codigo != kHecho) return codigo;
  if (nuevo.Cantidad() == 0) return kHecho;
  CDataSacaLimites cuales;
  cuales.distancia = como.distancia;
  cuales.superficieMinima = -1.0;
  CTriangulacion triangulacion(nuevo.semilla, CDataTriangulacion());
  triangulacion.Mensajes(como.nivel);
  triangulacion.SinMarco(como.sinMarco);
  std::vector<CCoor3D<int>> puntos = SacaPuntos(nuevo);
  const int codigo = triangulacion.LimitePuntos(std::move(puntos), limites, &cuales, 1, 0);
  if (codigo == kHecho) limites.Sort(kOrdenDeContornos, true, -1);
  return codigo;
}

int ClasificaHallados(CDibujo<int>& dibujo, std::vector<CClaseHallada> const& hallados,
                      std::vector<CGrupoHallado>& grupos, CComoContorno const& como, CListasClases const& clases,
                      unsigned& cantidad) {
  cantidad = 0;
  std::vector<CDibujo<int>> limites;
  limites.reserve(grupos.size());
  int codigo = kHecho;
  for (CGrupoHallado& grupo : grupos) {
    CDibujo<int> suyos(dibujo.semilla);
    codigo = ContornoDeHallados(grupo.puntos, como, suyos);
    if (codigo == kCancelado) return codigo;
    if (codigo != kHecho) break;
    limites.push_back(std::move(suyos));
  }
  EscribeClases(dibujo, hallados);
  cantidad = static_cast<unsigned>(hallados.size());
  for (std::size_t i = 0; i < limites.size(); ++i) {
    const int altura = grupos[i].altura;
    const int dentro = dibujo.ClasificarPuntosSegunLimite(limites[i], grupos[i].info, cantidad, clases.incluidos,
                                                          clases.excluidos, altura, altura, nullptr, nullptr, nullptr);
    if (dentro != kHecho) return dentro;
  }
  return codigo;
}

}  // namespace Meseta47
