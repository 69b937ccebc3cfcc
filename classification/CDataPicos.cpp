#include "classification/CDataPicos.h"

#include "classification/Persistencia.h"

namespace Meseta47 {

namespace {

/// The persisted fields, in the order in which their keys are read and written.
template <class Data, class Trato>
void RecorreCampos(Data& data, Trato const& trata) {
  trata(L"DistanciaMax", data.DistanciaMax);
  trata(L"pendienteMax", data.pendienteMax);
  trata(L"AlturaMin", data.AlturaMin);
  trata(L"Tipo", data.Tipo);
  trata(L"Seleccion", data.Seleccion);
  trata(L"Iterar", data.Iterar);
  trata(L"PuntosIterar", data.PuntosIterar);
}

}  // namespace

void CDataPicos::GetProfile(CString const& seccion, CString const& prefijo) {
  RecorreCampos(*this, CLectorPerfil(seccion, prefijo));
}

void CDataPicos::WriteProfile(CString const& seccion, CString const& prefijo) const {
  RecorreCampos(*this, CEscritorPerfil(seccion, prefijo));
}

void CDataPicos::GetPrivateProfile(CString const& fichero, CString const& seccion) {
  RecorreCampos(*this, CLectorFichero(fichero, seccion));
}

void CDataPicos::WritePrivateProfile(CString const& fichero, CString const& seccion) const {
  RecorreCampos(*this, CEscritorFichero(fichero, seccion));
}

}  // namespace Meseta47
