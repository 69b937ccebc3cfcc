#include "run/CListasClases.h"

#include <algorithm>

namespace Meseta47 {

namespace {

CInfoClasificacion ClaseDeCodigo(CString const& codigo) {
  return {static_cast<unsigned char>(EnteroDe(codigo)), 0.0, CString(L"")};
}

bool Alguna(std::vector<CInfoClasificacion> const& lista, unsigned char clase) {
  return std::any_of(lista.begin(), lista.end(), [clase](CInfoClasificacion const& c) { return c.Compara(clase); });
}

}  // namespace

CListasClases::CListasClases(CDataTriangulacion const& datos) {
  for (unsigned i = 0; i < datos.incluidos.Cantidad(); ++i) {
    CString const& codigo = datos.incluidos[i].GetCodigo();
    incluidos.push_back(codigo.Left(1) == L"*" ? CInfoClasificacion(0, 0.0, CString(kTextoComodin))
                                               : ClaseDeCodigo(codigo));
  }
  for (unsigned i = 0; i < datos.excluidos.Cantidad(); ++i) {
    excluidos.push_back(ClaseDeCodigo(datos.excluidos[i].GetCodigo()));
  }
}

bool CListasClases::Admite(unsigned char clase) const { return !Alguna(excluidos, clase) && Alguna(incluidos, clase); }

}  // namespace Meseta47
