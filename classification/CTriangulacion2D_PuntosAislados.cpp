// The search of isolated points: one pass over the temporary file, and a short list of neighbours for each point.
#include <cmath>

#include "classification/BusquedaClases.h"
#include "classification/BusquedaMensajes.h"
#include "classification/CBusquedaPasadas.h"
#include "classification/CBusquedaPuntos.h"
#include "classification/CListasVecinos.h"
#include "classification/CTrianguloBuscado.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

namespace {

/// The square of a distance as a whole number of 32 bits. Where it has none it is the least one, and no side is below
/// that: programs that ask for such distances are used to every point being isolated.
double LimiteDe(double distancia) {
  const double cuadrado = distancia * distancia;
  return cuadrado < 2147483648.0 ? std::trunc(cuadrado) : -2147483648.0;
}

/// Two ends of a side, if it is short enough, learn of each other.
void Presenta(CCoor3D<int> const& uno, CCoor3D<int> const& otro, double limite, CListasVecinos& vecinos) {
  if (!(uno.Distancia2(otro, 1) < limite)) return;
  vecinos.Anade(uno.num, otro.num);
  vecinos.Anade(otro.num, uno.num);
}

}  // namespace

int CTriangulacion2D::RunPuntosAislados(CDibujo<int>& dibujo, double distancia, unsigned int minVecinos,
                                        CInfoClasificacion const& info, unsigned int& cantidad,
                                        std::vector<CDibujo<int>*>* otros,
                                        std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion, [&] {
    return BuscaPuntosAislados(dibujo, otros, distancia, minVecinos, info, cantidad, seleccion);
  });
}

int CTriangulacion2D::BuscaPuntosAislados(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distancia,
                                          unsigned int minVecinos, CInfoClasificacion const& info,
                                          unsigned int& cantidad, std::vector<CPosicionEntidad> const* seleccion) {
  const CListasClases clases(datos);
  const double limite = LimiteDe(Precision() * distancia);
  CBusquedaPuntos busqueda(cantidadPuntos);
  int codigo = PreparaBusqueda(busqueda, CFuentes{dibujo, otros, seleccion});
  if (codigo != kHecho) return codigo;

  CListasVecinos vecinos(cantidadPuntos, minVecinos);
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeBusca);
  CBusquedaPasadas pasada(1, ficheroTemporal.Fichero()->GetLength());
  codigo = RecorrePasadas(ficheroTemporal.Ruta(), pasada, porcentaje, mensajes, [&](CTriple const& numeros) {
    CCoor3D<int> const* const a = busqueda.Punto(numeros[0]);
    CCoor3D<int> const* const b = busqueda.Punto(numeros[1]);
    CCoor3D<int> const* const c = busqueda.Punto(numeros[2]);
    if (!CTrianguloBuscado::Es(a, b, c)) return;
    Presenta(*a, *b, limite, vecinos);
    Presenta(*c, *b, limite, vecinos);
    Presenta(*a, *c, limite, vecinos);
  });
  if (codigo != kHecho) return codigo;

  const std::vector<bool> aislados = vecinos.Aislados();  // before the first class is written: memory may give out
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeClases);
  const CMarcha marcha(porcentaje, mensajes, cantidadPuntos);
  return EscribeHallados(dibujo, clases, info, marcha, cantidad, [&](CCoor3D<int> const& p) {
    // A point with a number may not be registered.
    return busqueda.Punto(p.num) == &p && aislados[static_cast<std::size_t>(p.num) - 1];
  });
}

}  // namespace Meseta47
