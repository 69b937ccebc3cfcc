#include "classification/CDataBuscarPuntos.h"

#include "classification/Persistencia.h"

namespace Meseta47 {

namespace {

/// The persisted fields, in the order in which their keys are read and written.
template <class Data, class Trato>
void RecorreCampos(Data& data, Trato const& trata) {
  trata(L"DistanciaMax", data.DistanciaMax);
  trata(L"AlturaMin", data.AlturaMin);
  trata(L"DifCotaAereos", data.DifCotaAereos);
  trata(L"Tipo1", data.Tipo1);
  trata(L"Tipo2", data.Tipo2);
  trata(L"EsVegetacionBaja", data.EsVegetacionBaja);
  trata(L"Iterar", data.Iterar);
  trata(L"Seleccion", data.Seleccion);
  trata(L"PuntosIterar", data.PuntosIterar);
  trata(L"Superficie", data.Superficie);
  trata(L"VecinosAislados", data.VecinosAislados);
  trata(L"SuperficieMin", data.SuperficieMin);
}

}  // namespace

void CDataBuscarPuntos::GetProfile(CString const& seccion, CString const& prefijo) {
  RecorreCampos(*this, CLectorPerfil(seccion, prefijo));
}

void CDataBuscarPuntos::WriteProfile(CString const& seccion, CString const& prefijo) const {
  RecorreCampos(*this, CEscritorPerfil(seccion, prefijo));
}

void CDataBuscarPuntos::GetPrivateProfile(CString const& fichero, CString const& seccion) {
  RecorreCampos(*this, CLectorFichero(fichero, seccion));
}

void CDataBuscarPuntos::WritePrivateProfile(CString const& fichero, CString const& seccion) const {
  RecorreCampos(*this, CEscritorFichero(fichero, seccion));
}

}  // namespace Meseta47
