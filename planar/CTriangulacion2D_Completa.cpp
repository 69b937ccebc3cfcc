// What fills the convex hull once the mesh is finished: the triangles that lie there without the corners of the frame.
#include <new>

#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

namespace {

constexpr std::int32_t kFuera = -1;  // stands for the outside of the hull, as the corners of a frame would

/// Records of three numbers, as the worker writes them. Each side of the hull gets one with the outside as its third
/// vertex, so that whoever reads the file finds the rim of the surface as it would with a frame.
std::vector<CTriple> RegistrosDe(CBordeDelMarco::CCierre const& cierre) {
  std::vector<CTriple> registros;
  registros.reserve(cierre.triangulos.size() + cierre.contorno.size());
  for (auto const& [a, b, c] : cierre.triangulos) registros.push_back({a->num, b->num, c->num});
  for (auto const& [a, b] : cierre.contorno) registros.push_back({a->num, b->num, kFuera});
  return registros;
}

}  // namespace

bool CTriangulacion2D::Completa(unsigned modo) const {
  return sinMarco && (modo == CHiloSalvaTriangulosEnlazados::SALVA || modo == CHiloSalvaTriangulosEnlazados::CURVA);
}

/// Called when the worker is done. What the disk refuses stays with the file, as of the worker's records.
int CTriangulacion2D::CompletaSuperficie(unsigned modo) {
  if (!Completa(modo) || hiloSalva.FaltoMemoria()) return kHecho;
  try {
    const CBordeDelMarco::CCierre cierre = borde.Cierra();
    resumen.completados = cierre.triangulos.size();
    ladosDelCasco = cierre.contorno.size();
    for (auto const& [a, b, c] : cierre.triangulos) medidas.Anota(*a, *b, *c);
    if (modo == CHiloSalvaTriangulosEnlazados::CURVA) {
      const double lado2 = static_cast<double>(paramCurvaB) * paramCurvaB;
      for (auto const& [a, b, c] : cierre.triangulos) CTriangulo2D(a, b, c).Curva(dibujoCurvas, paramCurvaA, lado2);
    } else {
      const auto registros = RegistrosDe(cierre);
      ficheroTemporal.Fichero()->Write(registros.data(), registros.size() * sizeof(CTriple));
    }
  } catch (std::bad_alloc const&) {
    return Abandona(kFicheroInconsistente);
  }
  return kHecho;
}

}  // namespace Meseta47
