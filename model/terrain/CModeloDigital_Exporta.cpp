#include "model/terrain/CModeloDigital.h"
#include "model/terrain/Exportacion.h"
#include "platform/CFicheroParcial.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeEscribe = 19022;

int Escribe(CFile& fichero, CTIN const& tin, CDataExportarMDT const& datos, CAvance& avance) {
  const CSuperficieExportada superficie(tin);
  switch (datos.formato) {
    case FORMATO_PLY:
      return EscribePLY(fichero, superficie, avance);
    case FORMATO_OBJ:
      return EscribeOBJ(fichero, superficie, avance);
    case FORMATO_2DM:
      return Escribe2DM(fichero, superficie, avance);
    case FORMATO_LANDXML:
      return EscribeLandXML(fichero, superficie, datos, avance);
    default:
      return kFicheroInconsistente;
  }
}

}  // namespace

int CModeloDigital::Exportar(CString const& ruta, CDataExportarMDT const& datos) {
  constexpr int kVersionNativa = 4;
  if (datos.formato == FORMATO_NATIVO) return Write(ruta, kVersionNativa);
  error.Empty();
  if (!tin->EstaOrdenado()) return kFicheroInconsistente;
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(nivelMensajes, kMensajeEscribe);
  CAvance avance(porcentaje, nivelMensajes, 2);
  CFicheroParcial parcial(ruta);
  const bool va = parcial.EstaAbierto();
  return Entrega(parcial, va ? Escribe(parcial.Fichero(), *tin, datos, avance) : kFicheroInaccesible);
}

}  // namespace Meseta47
