// Contour lines: the worker cuts triangles as their cells close, and the segments are joined level by level.
#include <utility>

#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CNivelDeCurvas.h"
#include "planar/CTriangulacion2D.h"
#include "run/Fases.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeJunta = 19020;

}  // namespace

int CTriangulacion2D::Curvado(CDibujo<int>& dibujo, CDibujo<int>& curvas, double ladoMaximo, double equidistancia,
                              std::vector<CDibujo<int>*>* otros) {
  const auto suma = [&curvas](CNivelDeCurvas const& nivel) {
    CDibujo<int> lineas(curvas.semilla);
    for (std::size_t i = 0; i < nivel.Cantidad(); ++i) lineas.Inserta(nivel.Linea(i));
    curvas.Suma(std::move(lineas), false, 0);
  };
  return Curvado(dibujo, suma, ladoMaximo, equidistancia, otros, false);
}

int CTriangulacion2D::Curvado(CDibujo<int>& dibujo, CRecibeNivel const& recibe, double ladoMaximo, double equidistancia,
                              std::vector<CDibujo<int>*>* otros, bool vaciar, CFile* piezas, CLlanos llanos) {
  const double escala = dibujo.semilla.Precision();
  paramCurvaA = Trunca(escala * equidistancia);
  paramCurvaB = Trunca(escala * ladoMaximo);
  dibujoCurvas.Clear();
  dibujoCurvas.PonFichero(piezas);
  dibujoCurvas.PonLlanos(llanos);
  BorraFicheroTemporal();  // of an earlier run, if it was left open
  const CFuentes fuentes{dibujo, otros};
  CEnlace enlace{.modo = CHiloSalvaTriangulosEnlazados::CURVA};
  const int codigo = Corre({{resumen.segundosRellena, [&] { return Rellena(fuentes); }},
                            {resumen.segundosEnlaza, [&] { return Enlaza(fuentes, enlace); }},
                            {resumen.segundosGenera, [&] {
                               divisiones.clear();
                               if (vaciar) dibujo.Clear();
                               return JuntaNiveles(recibe, piezas);
                             }}});
  dibujoCurvas.Clear();
  return codigo;
}

/// Every segment lies at a multiple of the interval, so that stepping by it from the lowest one meets them all.
int CTriangulacion2D::JuntaNiveles(CRecibeNivel const& recibe, CFile const* piezas) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeJunta);
  if (dibujoCurvas.Cantidad() == 0) return kHecho;
  const std::int64_t zMin = dibujoCurvas.MinimoZ(), zMax = dibujoCurvas.MaximoZ();
  const auto pasos = static_cast<unsigned long long>((zMax - zMin) / paramCurvaA);
  unsigned long long paso = 0;
  for (std::int64_t z = zMin; z <= zMax; z += paramCurvaA) {
    if (porcentaje != nullptr && porcentaje->Porcentaje(mensajes, ++paso, pasos, false) == 0) return kCancelado;
    std::vector<CSegmento> segmentos = dibujoCurvas.Saca(static_cast<int>(z));
    if (piezas != nullptr && piezas->HayError()) return kFicheroInaccesible;
    const CNivelDeCurvas nivel(static_cast<int>(z), std::move(segmentos), dibujoCurvas.Llanos());
    if (nivel.Cantidad() != 0) recibe(nivel);
  }
  return kHecho;
}

}  // namespace Meseta47
