#pragma once

#include "model/drawing/CInfoClasificacion.h"
#include "platform/CString.h"

namespace Meseta47 {

/// What the search of peaks is asked for, kept from one use of a program to the next as CDataBuscarPuntos is. Values
/// are not checked.
class URDIMBRE_API CDataPicos {
 public:
  double DistanciaMax = 3.0;             ///< drawing units: longest side that is looked at; 0, any
  double AlturaMin = 1.0;                ///< drawing units
  double pendienteMax = 0.0;             ///< not above 1e-7, slopes are not looked at
  CInfoClasificacion Tipo{2, 0.0, L""};  ///< class given to peaks
  int Seleccion = 0;                     ///< kept for the program, as are the next four
  int opcionA = 1;                       ///< not persisted
  int opcionB = 0;                       ///< not persisted
  int Iterar = 1;
  int PuntosIterar = 0;

  void GetProfile(CString const& seccion, CString const& prefijo);
  void WriteProfile(CString const& seccion, CString const& prefijo) const;
  void GetPrivateProfile(CString const& fichero, CString const& seccion);
  void WritePrivateProfile(CString const& fichero, CString const& seccion) const;
};

}  // namespace Meseta47
