// The outline step that ends the searches: everything among the points found is found as well.
#include "classification/BusquedaContorno.h"

#include "model/terrain/CDataSacaLimites.h"
#include "model/terrain/CDataTriangulacion.h"
#include "model/threads/Codigos.h"
#include "planar/CTriangulacion.h"

namespace Meseta47 {

namespace {

constexpr int kOrdenDeContornos = 3;  // sort key of entities: larger outlines before the smaller ones inside them

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
  std::vector<CCoor3D<int>> puntos;
  CSetPuntos<int>::De(nuevo[0])->swap(puntos);  // there is not room for them twice
  nuevo.Clear();
  const int codigo = triangulacion.LimitePuntos(std::move(puntos), limites, &como, 1, 0);
  if (codigo == kHecho) limites.Sort(kOrdenDeContornos, true, -1);
  return codigo;
}

}  // namespace Meseta47
