#include "planar/CFiltroPuntos.h"

#include "model/CInfoClasificacion.h"

namespace Meseta47 {

namespace {

bool Casa(CLinea<int> const& e, CDigiTab const& codigos) {
  for (unsigned i = 0; i < codigos.Cantidad(); ++i) {
    if (e.ComparaCodigo(codigos[i].GetCodigo())) return true;
  }
  return false;
}

CInfoClasificacion ClaseDeCodigo(CString const& codigo) {
  return {static_cast<unsigned char>(_wtoi(codigo)), 0.0, CString(L"")};
}

}  // namespace

CFiltroPuntos::CFiltroPuntos(CDataTriangulacion const& losDatos, double escala, CDibujo<int> const& dibujo,
                             bool clasesSiempre)
    : datos(losDatos),
      zMin(losDatos.zMin * escala),
      zMax(losDatos.zMax * escala),
      nube(dibujo.tipoNube >= 1 && dibujo.tipoNube <= 3),
      porClases(nube || clasesSiempre) {
  if (porClases) PreparaClases();
}

void CFiltroPuntos::PreparaClases() {
  std::vector<CInfoClasificacion> incluidos, excluidos;
  for (unsigned i = 0; i < datos.incluidos.Cantidad(); ++i) {
    CString const& codigo = datos.incluidos[i].GetCodigo();
    incluidos.push_back(codigo.Left(1) == L"*" ? CInfoClasificacion(0, 0.0, CString(kTextoComodin))
                                               : ClaseDeCodigo(codigo));
  }
  for (unsigned i = 0; i < datos.excluidos.Cantidad(); ++i) {
    excluidos.push_back(ClaseDeCodigo(datos.excluidos[i].GetCodigo()));
  }
  const auto alguna = [](std::vector<CInfoClasificacion> const& lista, unsigned char clase) {
    for (CInfoClasificacion const& info : lista) {
      if (info.Compara(clase)) return true;
    }
    return false;
  };
  for (unsigned c = 0; c < clases.size(); ++c) {
    const auto clase = static_cast<unsigned char>(c);
    clases[c] = !alguna(excluidos, clase) && alguna(incluidos, clase);
  }
}

bool CFiltroPuntos::AdmiteEntidad(CLinea<int> const& e) const {
  if (!(e.EsGrafico() || e.EsSetPuntos()) || e.EsBorrado()) return false;
  if (e.maximas.Minimo.z > zMax || e.maximas.Maximo.z < zMin) return false;
  return nube || (Casa(e, datos.incluidos) && !Casa(e, datos.excluidos));
}

}  // namespace Meseta47
