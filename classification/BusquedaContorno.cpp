// The outline step that ends the searches: everything among the points found is found as well.
#include "classification/BusquedaContorno.h"

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

int ContornoDeHallados(CDibujo<int>& nuevo, double distancia, CNivelMensajes nivel, CDibujo<int>& limites,
                       bool sinMarco) {
  if (const int codigo = nuevo.BorraDuplicadas(true, false); codigo != kHecho) return codigo;
  if (nuevo.Cantidad() == 0) return kHecho;
  CDataSacaLimites como;
  como.distancia = distancia;
  como.superficieMinima = -1.0;
  CTriangulacion triangulacion(nuevo.semilla, CDataTriangulacion());
  triangulacion.Mensajes(nivel);
  triangulacion.SinMarco(sinMarco);
  std::vector<CCoor3D<int>> puntos = SacaPuntos(nuevo);
  const int codigo = triangulacion.LimitePuntos(std::move(puntos), limites, &como, 1, 0);
  if (codigo == kHecho) limites.Sort(kOrdenDeContornos, true, -1);
  return codigo;
}

int ClasificaDentro(CDibujo<int>& dibujo, CDibujo<int>& limites, CInfoClasificacion const& info,
                    CListasClases const& clases, int altura, unsigned& cantidad) {
  return dibujo.ClasificarPuntosSegunLimite(limites, info, cantidad, clases.incluidos, clases.excluidos, altura, altura,
                                            nullptr, nullptr, nullptr);
}

}  // namespace Meseta47
