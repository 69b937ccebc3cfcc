// A job's surface to a file, with a model in between only where one is needed.
#include <utility>

#include "model/terrain/CTIN.h"
#include "model/terrain/Exportacion.h"
#include "planar/CFuentes.h"
#include "planar/CSuperficieDeRun.h"
#include "planar/CTriangulacion2D.h"
#include "run/Fases.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeGenera = 19029, kMensajeEscribe = 19022;
constexpr unsigned kPasadas = 2;  // vertices and faces

}  // namespace

int CTriangulacion2D::RunPLY(CEncargo const& encargo, CAbreFichero const& abre) {
  const int codigo =
      Corre(encargo, EntradaDe(encargo), [&](CGeneracion const& como) { return EscribeSuperficie(como, abre); });
  resumen.segundosGenera -= resumen.segundosEscribe;
  return codigo;
}

/// What linking has left is the surface itself when nothing is filtered, no triangle is in doubt, and Euler's count
/// leaves no point without one: a surface of one piece with h sides around it has 2 v - 2 - h triangles.
int CTriangulacion2D::EscribeSuperficie(CGeneracion const& como, CAbreFichero const& abre) {
  const bool filtra =
      como.ladoMaximo != 0 || como.alturas != nullptr || como.intensidades != nullptr || FiltraPendientes();
  if (filtra || !sinMarco || medidas.dudosos != 0) return EscribeModelo(como, abre);
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeGenera);
  divisiones.clear();
  CSuperficieDeRun superficie;
  como.fuentes.Recorre([&superficie](short, CDibujo<int> const& d, auto const*) {
    superficie.Anade(d);
    return kHecho;
  });
  superficie.Cuenta();
  const std::uint64_t caras = medidas.triangulos;
  if (caras == 0 || caras + ladosDelCasco + 2 != 2 * superficie.Vertices()) return EscribeModelo(como, abre);

  resumen.vertices = superficie.Vertices();
  resumen.triangulos = caras;
  resumen.anillos = 1;
  resumen.delMarco = ladosDelCasco;
  const int codigo = EscribeEn(abre, [&](CFile& fichero, CAvance& avance) {
    return superficie.EscribePLY(fichero, semilla, cantidadPuntos, ficheroTemporal.Ruta(), caras, avance);
  });
  if (como.borra != nullptr && codigo == kHecho) {
    for (CDibujo<int>*& otro : *como.borra) delete std::exchange(otro, nullptr);
  }
  return codigo;
}

int CTriangulacion2D::EscribeModelo(CGeneracion const& como, CAbreFichero const& abre) {
  CTIN tin(0, 0, semilla);
  tin.conVecinos = false;
  if (const int codigo = Genera(como, tin); codigo != kHecho) return codigo;
  resumen.vertices = tin.puntos.size();
  resumen.triangulos = tin.Cantidad();
  resumen.anillos = tin.Limite().size();
  if (resumen.triangulos == 0) return kHecho;
  const CSuperficieExportada superficie(tin);
  return EscribeEn(abre,
                   [&superficie](CFile& fichero, CAvance& avance) { return EscribePLY(fichero, superficie, avance); });
}

int CTriangulacion2D::EscribeEn(CAbreFichero const& abre, std::function<int(CFile&, CAvance&)> const& escribe) {
  return Cronometra(resumen.segundosEscribe, [&] {
    IPorcentaje* porcentaje = Progreso();
    if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeEscribe);
    CFile* fichero = abre();
    CAvance avance(porcentaje, mensajes, kPasadas);
    return fichero != nullptr ? escribe(*fichero, avance) : int{kFicheroInaccesible};
  });
}

}  // namespace Meseta47
