#include <algorithm>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CIndiceAnillos.h"
#include "model/drawing/CPosicionEntidad.h"
#include "model/threads/Codigos.h"
#include "model/threads/IPorcentaje.h"

namespace Meseta47 {

namespace {

constexpr int kSinLimite = 2147483647;
constexpr std::uint64_t kCadaCuantos = 1024;  // points between two reports: cheap, and soon enough for a cancellation

bool CabeEnAltura(int z, int zMaximo, int sobre) {
  return sobre == kSinLimite || z <= static_cast<std::int64_t>(zMaximo) + sobre;
}

bool Esta(std::vector<CInfoClasificacion> const& clases, std::uint8_t clase) {
  return std::any_of(clases.begin(), clases.end(), [&](CInfoClasificacion const& c) { return c.Compara(clase); });
}

/// The places of the points of a drawing, or of a selection, one after another.
template <class Visita>
bool VisitaPuntos(CDibujo<int> const& dibujo, std::vector<CPosicionEntidad> const* seleccion, Visita const& visita) {
  if (seleccion != nullptr) {
    for (CPosicionEntidad const& p : *seleccion) {
      const auto entidad = static_cast<unsigned>(p.entidad);
      if (entidad >= dibujo.Cantidad() || p.punto < 0 || p.punto >= dibujo[entidad].NPuntos()) continue;
      if (!visita(p)) return false;
    }
    return true;
  }
  for (unsigned e = 0; e < dibujo.Cantidad(); ++e) {
    for (int i = 0; i < dibujo[e].NPuntos(); ++i) {
      if (!visita(CPosicionEntidad(static_cast<int>(e), i))) return false;
    }
  }
  return true;
}

}  // namespace

template <class T>
int CDibujo<T>::ClasificarPuntosSegunLimite(CDibujo const& limites, CInfoClasificacion const& info,
                                            unsigned int& cantidad, std::vector<CInfoClasificacion> const& incluidos,
                                            std::vector<CInfoClasificacion> const& excluidos, int sobreContorno,
                                            int sobreTodos, std::vector<CPosicionEntidad> const* seleccion,
                                            std::vector<CPosicionEntidad>* clasificados, IPorcentaje* porcentaje) {
  const CIndiceAnillos indice(limites);
  bool cambia[256];
  for (unsigned c = 0; c < 256; ++c) {
    const auto clase = static_cast<std::uint8_t>(c);
    cambia[c] = clase != info.GetTipo() && !Esta(excluidos, clase) && Esta(incluidos, clase);
  }
  const auto entra = [&](CLinea<T> const& e, CCoor3D<T> const& p) {
    if (!cambia[p.clasificacion] || e.EsBorrado() || !(e.EsGrafico() || e.EsSetPuntos())) return false;
    if (!CabeEnAltura(p.z, indice.ZMaximo(), sobreTodos)) return false;
    CAnillo const* anillo = indice.Busca(p.x, p.y);
    return anillo != nullptr && CabeEnAltura(p.z, anillo->ZMaximo(), sobreContorno);
  };

  std::vector<CPosicionEntidad> hallados;
  std::uint64_t hechos = 0;
  const std::uint64_t total = seleccion != nullptr ? seleccion->size() : nPuntos;
  const bool acabado = VisitaPuntos(*this, seleccion, [&](CPosicionEntidad const& lugar) {
    CLinea<T> const& e = *entidades[static_cast<std::size_t>(lugar.entidad)];
    if (entra(e, e.Punto(lugar.punto))) hallados.push_back(lugar);
    return porcentaje == nullptr || ++hechos % kCadaCuantos != 0 ||
           porcentaje->Porcentaje(nivelMensajes, hechos, total, false) != 0;
  });
  if (!acabado) return kCancelado;

  for (CPosicionEntidad const& lugar : hallados) {
    entidades[static_cast<std::size_t>(lugar.entidad)]->SetClasificacion(info, lugar.punto);
  }
  cantidad += static_cast<unsigned>(hallados.size());
  if (clasificados != nullptr) clasificados->insert(clasificados->end(), hallados.begin(), hallados.end());
  return kHecho;
}

template int CDibujo<int>::ClasificarPuntosSegunLimite(CDibujo const&, CInfoClasificacion const&, unsigned int&,
                                                       std::vector<CInfoClasificacion> const&,
                                                       std::vector<CInfoClasificacion> const&, int, int,
                                                       std::vector<CPosicionEntidad> const*,
                                                       std::vector<CPosicionEntidad>*, IPorcentaje*);

}  // namespace Meseta47
