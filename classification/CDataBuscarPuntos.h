#pragma once

#include "model/drawing/CInfoClasificacion.h"
#include "platform/CString.h"

namespace Meseta47 {

/// What a program asks its user for before a search of points, kept from one use to the next. Values are not checked.
///
/// A profile keeps one set of values for each prefix of its keys; an initialisation file, one for each section. Doubles
/// are kept to six decimals, and of a class its byte alone. What is absent or empty leaves its field as it is, but that
/// a double read from the profile is cut to six decimals in any case. Without an application object there is no
/// profile, and nothing happens. What a disk refuses to keep is lost in silence.
class URDIMBRE_API CDataBuscarPuntos {
 public:
  double DistanciaMax = 5.0;              ///< drawing units: how far a search spreads, and the rim of its outline
  double AlturaMin = 5.0;                 ///< drawing units: least height above the neighbours
  CInfoClasificacion Tipo1{6, 0.0, L""};  ///< class to give
  CInfoClasificacion Tipo2{6, 0.0, L""};  ///< second class, for the program
  int VecinosAislados = 2;                ///< least number of neighbours of a point that is not isolated
  int EsVegetacionBaja = 0;               ///< kept for the program, as are the next four
  int Iterar = 1;
  int Seleccion = 0;
  int PuntosIterar = 0;
  int Superficie = 1;
  double SuperficieMin = 100.0;  ///< area, kept for the program
  double DifCotaAereos = 5.0;    ///< factor of the aerial search

  void GetProfile(CString const& seccion, CString const& prefijo);
  void WriteProfile(CString const& seccion, CString const& prefijo) const;
  void GetPrivateProfile(CString const& fichero, CString const& seccion);
  void WritePrivateProfile(CString const& fichero, CString const& seccion) const;
};

}  // namespace Meseta47
