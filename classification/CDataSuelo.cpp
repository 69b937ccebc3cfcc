#include "classification/CDataSuelo.h"

#include "classification/Persistencia.h"

namespace Meseta47 {

namespace {

/// The persisted fields, in the order in which their keys are read and written.
template <class Data, class Trato>
void RecorreCampos(Data& data, Trato const& trata) {
  trata(L"Ventana", data.Ventana);
  trata(L"Pendiente", data.Pendiente);
  trata(L"Banda", data.Banda);
  trata(L"Tipo", data.Tipo);
  trata(L"Ruido", data.Ruido);
}

}  // namespace

void CDataSuelo::GetProfile(CString const& seccion, CString const& prefijo) {
  RecorreCampos(*this, CLectorPerfil(seccion, prefijo));
}

void CDataSuelo::WriteProfile(CString const& seccion, CString const& prefijo) const {
  RecorreCampos(*this, CEscritorPerfil(seccion, prefijo));
}

void CDataSuelo::GetPrivateProfile(CString const& fichero, CString const& seccion) {
  RecorreCampos(*this, CLectorFichero(fichero, seccion));
}

void CDataSuelo::WritePrivateProfile(CString const& fichero, CString const& seccion) const {
  RecorreCampos(*this, CEscritorFichero(fichero, seccion));
}

}  // namespace Meseta47
