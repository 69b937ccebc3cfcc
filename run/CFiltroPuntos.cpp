#include "run/CFiltroPuntos.h"

#include "run/CListasClases.h"

namespace Meseta47 {

namespace {

bool Casa(CLinea<int> const& e, CDigiTab const& codigos) {
  for (unsigned i = 0; i < codigos.Cantidad(); ++i) {
    if (e.ComparaCodigo(codigos[i].GetCodigo())) return true;
  }
  return false;
}

}  // namespace

CFiltroPuntos::CFiltroPuntos(CDataTriangulacion const& losDatos, double escala, CDibujo<int> const& dibujo, CPor por)
    : datos(losDatos),
      zMin(losDatos.zMin * escala),
      zMax(losDatos.zMax * escala),
      nube(por != CPor::CodigosSiempre && dibujo.tipoNube >= 1 && dibujo.tipoNube <= 3),
      porClases(nube || por == CPor::DibujoYClases) {
  if (porClases) PreparaClases();
}

void CFiltroPuntos::PreparaClases() {
  const CListasClases listas(datos);
  for (unsigned c = 0; c < clases.size(); ++c) clases[c] = listas.Admite(static_cast<unsigned char>(c));
}

bool CFiltroPuntos::AdmiteEntidad(CLinea<int> const& e) const {
  if (!(e.EsGrafico() || e.EsSetPuntos()) || e.EsBorrado()) return false;
  if (e.maximas.Minimo.z > zMax || e.maximas.Maximo.z < zMin) return false;
  return nube || (Casa(e, datos.incluidos) && !Casa(e, datos.excluidos));
}

}  // namespace Meseta47
