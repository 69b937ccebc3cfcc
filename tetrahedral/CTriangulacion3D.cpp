#include "tetrahedral/CTriangulacion3D.h"

#include <algorithm>

#include "model/threads/CMarcha.h"
#include "model/threads/IPorcentaje.h"
#include "platform/Manejadores.h"

namespace Meseta47 {

CTriangulacion3D::CTriangulacion3D(int, CDataSemilla const& laSemilla, CDataTriangulacion const& losDatos,
                                   unsigned elIdentificador)
    : CObjetoFichero(OBJETO_TRIANGULACION3D), semilla(laSemilla), datos(losDatos), identificador(elIdentificador) {}

CTriangulacion3D::CTriangulacion3D(int, CDataSemilla const& laSemilla, unsigned elIdentificador)
    : CTriangulacion3D(0, laSemilla, CDataTriangulacion(), elIdentificador) {}

CTriangulacion3D::CTriangulacion3D(CTriangulacion3D& otra, unsigned elIdentificador)
    : CObjetoFichero(otra),
      longitudLimite(otra.longitudLimite),
      segundoEntero(otra.segundoEntero),
      cantidadPuntos(otra.cantidadPuntos),
      semilla(otra.semilla),
      puntos(otra.puntos),
      maximas(otra.maximas),
      datos(otra.datos),
      identificador(elIdentificador),
      finura(otra.finura) {
  divisiones.CopiaDe(otra.divisiones);
}

CTriangulacion3D::~CTriangulacion3D() {
  hiloSalva.Stop();
  if (evento != nullptr) CloseHandle(evento);
  ficheroTemporal.Borra();
}

void CTriangulacion3D::Clear() {
  cantidadPuntos = 0;
  reservado = 0;
  maximas.Borra();
  CObjetoFichero::Clear();
}

CMaximas<double> CTriangulacion3D::GetMaximasDouble() const {
  CMaximas<double> m;
  m.Nuevo(CCoor3D<double>(maximas.Maximo) / Precision());
  m.Nuevo(CCoor3D<double>(maximas.Minimo) / Precision());
  return m;
}

void CTriangulacion3D::SetMaximasDouble(CMaximas<double> const& m) { maximas = CMaximas<int>(m * Precision()); }

CPuntoTIN* CTriangulacion3D::Punto(unsigned i) {
  CPuntoTIN* p = puntos.at(i);
  return p != nullptr ? p : puntos.at(0);
}

void CTriangulacion3D::ActualizaCantidades() {
  cantidades[0] = CantidadTetraedros();
  cantidades[1] = cantidadPuntos;
  cantidades[2] = 0;
}

IPorcentaje* CTriangulacion3D::Progreso() const { return nivelMensajes >= 1 ? BuscaPorcentaje() : nullptr; }

void CTriangulacion3D::Salva(CDivisiones* celda) {
  CSetTetraedros* set = celda->setAsociado;
  const unsigned tetraedros = set->QuitaTetraedroActual();
  resumen.picoVivos = std::max(resumen.picoVivos, balance.creados - balance.condenados - setsCerrados.Liberados());
  setsCerrados.Anade(set, tetraedros);
}

bool CTriangulacion3D::EsperaAlHilo(CMarcha const& marcha) {
  return !hiloSalva.EstaEnMarcha() || setsCerrados.EsperaSitio([&marcha] { return marcha.Sigue(); });
}

}  // namespace Meseta47
