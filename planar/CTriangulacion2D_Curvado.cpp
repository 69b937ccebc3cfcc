// Contour lines: the worker cuts triangles as their cells close, and the segments are joined level by level.
#include <algorithm>
#include <compare>

#include "model/IPorcentaje.h"
#include "planar/GuardaDeRun.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeJunta = 19020;

/// Place of a segment among all. The height stands beside it, so that sorting does not visit the segments.
struct CPuesto {
  std::int32_t altura;
  unsigned indice;

  auto operator<=>(CPuesto const&) const = default;
};

/// The segments by height; those of one height in the order in which they came.
std::vector<CPuesto> PorAltura(CDibujo<int> const& segmentos) {
  std::vector<CPuesto> puestos;
  puestos.reserve(segmentos.Cantidad());
  for (unsigned i = 0; i < segmentos.Cantidad(); ++i) puestos.push_back({segmentos[i].maximas.Minimo.z, i});
  std::sort(puestos.begin(), puestos.end());
  return puestos;
}

}  // namespace

int CTriangulacion2D::Curvado(CDibujo<int>& dibujo, CDibujo<int>& curvas, double ladoMaximo, double equidistancia,
                              std::vector<CDibujo<int>*>* otros) {
  const CGuarda guarda(*this);
  const double escala = dibujo.semilla.Precision();
  paramCurvaA = Trunca(escala * equidistancia);
  paramCurvaB = Trunca(escala * ladoMaximo);
  dibujoCurvas.Clear();
  int codigo = CortaNiveles(dibujo, otros);
  if (codigo == kHecho) {
    BorraFicheroTemporal();  // of an earlier run, if it was left open
    codigo = JuntaNiveles(curvas);
  }
  dibujoCurvas.Clear();
  if (codigo != kHecho) return codigo;
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Cierra(mensajes, 0);
  return kHecho;
}

/// Triangulates, and leaves the segments of all levels in `dibujoCurvas`.
int CTriangulacion2D::CortaNiveles(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros) {
  const int codigo = Rellena(dibujo, otros, nullptr, nullptr);
  if (codigo != kHecho) return codigo;
  return EnlazaLista(dibujo, otros, nullptr, nullptr, CHiloSalvaTriangulosEnlazados::CURVA, nullptr, nullptr, nullptr,
                     nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr);
}

/// Every segment lies at a multiple of the interval, so that stepping by it from the lowest one meets them all.
int CTriangulacion2D::JuntaNiveles(CDibujo<int>& curvas) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeJunta);
  const std::vector<CPuesto> segmentos = PorAltura(dibujoCurvas);
  if (segmentos.empty()) return kHecho;
  const std::int64_t zMin = segmentos.front().altura, zMax = segmentos.back().altura;
  const auto pasos = static_cast<unsigned long long>((zMax - zMin) / paramCurvaA);
  unsigned long long paso = 0;
  auto siguiente = segmentos.begin();
  for (std::int64_t z = zMin; z <= zMax; z += paramCurvaA) {
    if (porcentaje != nullptr && porcentaje->Porcentaje(mensajes, ++paso, pasos, false) == 0) return kCancelado;
    CDibujo<int> nivel(curvas.semilla);
    for (; siguiente != segmentos.end() && siguiente->altura == z; ++siguiente) {
      nivel.Inserta(std::move(dibujoCurvas[siguiente->indice]));
    }
    nivel.Junta(0, 0, true, true, true, 0, 0, true);
    curvas.Suma(std::move(nivel), false, 0);
  }
  return kHecho;
}

}  // namespace Meseta47
