// The search of peaks and pits: a run that ends with its linking.
#include <limits>

#include "classification/CDataPicos.h"
#include "model/geometry/Signo.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/Fases.h"

namespace Meseta47 {

int CTriangulacion2D::BuscaPicos(CDibujo<int>& dibujo, CDataPicos const& parametros, unsigned int& cantidad,
                                 std::vector<CDibujo<int>*>* otros, std::vector<CPosicionEntidad> const* seleccion,
                                 int* progreso, std::vector<CPosicionEntidad>* encontrados) {
  const double escala = dibujo.semilla.Precision();
  const bool conLimite = Signo(parametros.DistanciaMax) != 0;
  paramCurvaB = conLimite ? Trunca(escala * parametros.DistanciaMax) : std::numeric_limits<std::int32_t>::max();
  paramPicoA = Trunca(escala * parametros.AlturaMin);
  paramPicoB = parametros.pendienteMax;
  const CFuentes fuentes{dibujo, otros, seleccion};
  CEnlace enlace{.modo = CHiloSalvaTriangulosEnlazados::PICOS,
                 .contador = progreso,
                 .clasifica = &dibujo,
                 .tipoA = &parametros.Tipo,
                 .cuenta = &cantidad,
                 .hallados = encontrados};
  return Corre({{resumen.segundosRellena, [&] { return Rellena(fuentes); }},
                {resumen.segundosEnlaza, [&] { return Enlaza(fuentes, enlace); }}});
}

}  // namespace Meseta47
