#pragma once

#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Files that a model can be written to.
enum CFormatoMDT : int {
  FORMATO_PLY = 1,       ///< binary little-endian, coordinates in doubles
  FORMATO_OBJ = 2,       ///< Wavefront, text
  FORMATO_2DM = 3,       ///< SMS mesh, text
  FORMATO_NATIVO = 6,    ///< the binary model, the only one that is read back
  FORMATO_LANDXML = 10,  ///< LandXML 1.2
};

/// Units of the coordinates, for formats that name them.
enum CUnidadMDT : int { UNIDAD_METRO = 0, UNIDAD_PIE = 1, UNIDAD_PIE_TOPOGRAFICO = 2 };

/// How a model is exported.
class URDIMBRE_API CDataExportarMDT {
 public:
  int formato = FORMATO_PLY;      ///< one of CFormatoMDT
  int unidad = UNIDAD_METRO;      ///< one of CUnidadMDT
  CString nombre = L"terrain";    ///< name of the surface
  CString sistema;                ///< name of the coordinate reference system; empty when not known
  int epsg = 0;                   ///< its EPSG code; 0 when not known
  CString fecha = L"2000-01-01";  ///< the day that LandXML asks for; the clock is not read, so that equal models give
                                  ///< equal bytes
  CString hora = L"00:00:00";     ///< the time of that day

  CDataExportarMDT() = default;
  explicit CDataExportarMDT(int elFormato) : formato(elFormato) {}
  CDataExportarMDT(CDataExportarMDT const&) = default;
  CDataExportarMDT& operator=(CDataExportarMDT const&) = default;
  virtual ~CDataExportarMDT() = default;
};

}  // namespace Meseta47
