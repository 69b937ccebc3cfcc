// The filling phase: a pass that counts and measures, a division of space sized by it, and a pass that records in every
// cell which point will be its last.
#include "model/terrain/CTIN.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRellena = 19020;
constexpr unsigned kMinimoPuntos = 3;

}  // namespace

int CTriangulacion2D::Rellena(CFuentes const& fuentes) {
  EmpiezaRelleno();
  CCuentaPuntos cuenta;
  CMarcha primera(Progreso(), mensajes, 2 * fuentes.Entidades());  // a first estimate of the work
  int codigo = fuentes.Recorre([&](short, CDibujo<int> const& d, auto const* elegidos) {
    return CuentaPuntos(d, Filtro(d), elegidos, primera, cuenta);
  });
  if (codigo != kHecho) return codigo;
  EstableceDivisiones(cuenta.cuantos, cuenta.caja);
  const auto desde = static_cast<unsigned>(cuenta.cuantos * 0.5);  // the bar goes on from one third
  CMarcha segunda(Progreso(), mensajes, cuenta.cuantos + desde, desde);
  codigo = fuentes.Recorre([&](short lista, CDibujo<int> const& d, auto const* elegidos) {
    const bool esExtra = fuentes.EsExtra(lista);
    const std::uint32_t antes = cantidadPuntos;
    const int suyo = ColocaPuntos(lista, d, elegidos, segunda, !esExtra);
    if (esExtra) resumen.ofrecidos = cantidadPuntos - antes;
    return suyo;
  });
  return codigo == kHecho ? TerminaRelleno() : codigo;
}

int CTriangulacion2D::Rellena(CTIN& tin) {
  EmpiezaRelleno();
  CMaximas<int> caja;
  unsigned cuenta = 0, progreso = 0;
  const auto total = static_cast<unsigned>(2 * tin.puntos.size());
  if (const int codigo = Rellena(0, tin, caja, cuenta, progreso, total, true); codigo != kHecho) return codigo;
  EstableceDivisiones(cuenta, caja);
  const int codigo = Rellena(0, tin, caja, cuenta, progreso, total, false);
  return codigo == kHecho ? TerminaRelleno() : codigo;
}

int CTriangulacion2D::Rellena(short lista, CTIN& tin, CMaximas<int>& caja, unsigned& cuenta, unsigned& progreso,
                              unsigned total, bool contar) {
  CMarcha marcha(Progreso(), mensajes, total, progreso);
  int codigo = kHecho;
  for (unsigned i = 0; codigo == kHecho && i < tin.puntos.size(); ++i) {
    if (!marcha.Avanza()) {
      codigo = kCancelado;
    } else if (contar) {
      ++cuenta;
      caja.Nuevo(tin.puntos[i]);
    } else {
      ColocaIndices(tin.puntos[i], lista, i, 0, true);
      ++cantidadPuntos;
    }
  }
  if (marcha.HayQuienEscuche()) progreso = static_cast<unsigned>(marcha.Hechos());
  return codigo;
}

/// Drops what an earlier run left.
void CTriangulacion2D::EmpiezaRelleno() {
  PreparaEnlace();
  primerosPuntos.clear();
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeRellena);
  cantidadPuntos = duplicados = 0;
}

int CTriangulacion2D::TerminaRelleno() {
  for (unsigned i = 0; i < CDivisiones::kHijos; ++i) {
    porCuadrante[i] = divisiones.hijos != nullptr ? static_cast<std::uint64_t>(divisiones.hijos[i].lista.cantidad) : 0;
  }
  divisiones.Comprimir();
  resumen.aceptados = cantidadPuntos;
  return cantidadPuntos < kMinimoPuntos ? kPocosPuntos : kHecho;
}

int CTriangulacion2D::ColocaPuntos(short lista, CDibujo<int> const& dibujo,
                                   std::vector<CPosicionEntidad> const* seleccion, CMarcha& marcha, bool daSemillas) {
  CArbolDivisiones2D::CSeguidos seguidos(divisiones);
  return RecorrePuntos(dibujo, Filtro(dibujo), seleccion, marcha,
                       [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
                         const bool primera = seguidos.Coloca(*e.PunteroAPunto(static_cast<int>(k)),
                                                              {lista, static_cast<int>(entidad), static_cast<int>(k)});
                         if (primera && daSemillas) {
                           primerosPuntos.emplace_back(static_cast<unsigned>(lista), entidad, k);
                         }
                         ++cantidadPuntos;
                       });
}

}  // namespace Meseta47
