#pragma once

#include "model/drawing/CInfoClasificacion.h"
#include "platform/CString.h"

namespace Meseta47 {

/// What the ground search is asked for, kept from one use of a program to the next as CDataBuscarPuntos is. Values are
/// not checked. The defaults serve any airborne cloud. Lengths are metres, whatever the unit of the drawing.
class URDIMBRE_API CDataSuelo {
 public:
  static constexpr int kBandaAncha = 0;     ///< for rough or rounded clouds: takes in low growth
  static constexpr int kBandaEstrecha = 1;  ///< for dense and precise clouds
  static constexpr int kBandaDelLugar =
      2;  ///< by how far the minima around a point are scattered; at most the wide one

  double Ventana = 25.0;    ///< metres: radius of the largest disc, half the width of a building that is found
  double Pendiente = 0.10;  ///< rise over run that the openings let pass for terrain
  int Banda = kBandaDelLugar;
  CInfoClasificacion Tipo{2, 0.0, L""};   ///< class given to the ground
  CInfoClasificacion Ruido{7, 0.0, L""};  ///< class given to pits and to what lies far below the ground

  void GetProfile(CString const& seccion, CString const& prefijo);
  void WriteProfile(CString const& seccion, CString const& prefijo) const;
  void GetPrivateProfile(CString const& fichero, CString const& seccion);
  void WritePrivateProfile(CString const& fichero, CString const& seccion) const;
};

}  // namespace Meseta47
