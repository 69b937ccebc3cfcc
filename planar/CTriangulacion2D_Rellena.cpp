// The filling phase: a pass that counts and measures, a division of space sized by it, and a pass that records in every
// cell which point will be its last.
#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFiltroPuntos.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRellena = 19020;
constexpr unsigned kMinimoPuntos = 3;

/// A progress interface, if any, and how far it has been told.
struct CMarcha {
  IPorcentaje* porcentaje;
  int nivel;
  unsigned& progreso;
  unsigned total;

  /// One step more; false when the run is cancelled.
  [[nodiscard]] bool Avanza() const {
    if (porcentaje == nullptr) return true;
    ++progreso;
    return porcentaje->Porcentaje(nivel, progreso, total, false) != 0;
  }
};

/// Counts the points and takes the extents. An entity that lies wholly in the window is counted as a whole, also in a
/// cloud of which some classes don't count: the number only sizes the divisions.
struct CCuenta {
  CMarcha marcha;
  CFiltroPuntos const& filtro;
  CMaximas<int>& caja;
  unsigned& cuenta;
  int codigo = kHecho;

  bool Entidad(CLinea<int> const&) {
    if (marcha.Avanza()) return true;
    codigo = kCancelado;
    return false;
  }
  bool Entera(CLinea<int> const& e) {
    if (!filtro.TodaEnVentana(e)) return false;
    cuenta += static_cast<unsigned>(e.NPuntos());
    caja.Nuevo(e.maximas);
    return true;
  }
  CPaso Punto(CLinea<int> const& e, unsigned, unsigned k) {
    ++cuenta;
    caja.Nuevo(*e.PunteroAPunto(static_cast<int>(k)));
    return CPaso::Sigue;
  }
};

/// Hands each point to `registra`.
template <class F>
struct CRegistro {
  CMarcha marcha;
  F registra;
  int codigo = kHecho;

  bool Entidad(CLinea<int> const&) { return true; }
  bool Entera(CLinea<int> const&) { return false; }
  CPaso Punto(CLinea<int> const& e, unsigned entidad, unsigned k) {
    if (!marcha.Avanza()) {
      codigo = kCancelado;
      return CPaso::Termina;
    }
    registra(*e.PunteroAPunto(static_cast<int>(k)), entidad, k);
    return CPaso::Sigue;
  }
};

}  // namespace

int CTriangulacion2D::Rellena(short lista, CDibujo<int> const& dibujo, CMaximas<int>& caja, unsigned& cuenta,
                              unsigned& progreso, unsigned total, bool contar,
                              std::vector<CPosicionEntidad> const* seleccion, bool registra) {
  const CFiltroPuntos filtro(datos, Precision(), dibujo);
  const CMarcha marcha{Progreso(), mensajes, progreso, total};
  if (contar) {
    CCuenta visita{marcha, filtro, caja, cuenta};
    RecorrePuntos(dibujo, filtro, seleccion, visita);
    return visita.codigo;
  }
  const auto coloca = [&](CCoor3D<int> const& p, unsigned entidad, unsigned punto) {
    ColocaIndices(p, lista, entidad, punto, registra);
    ++cantidadPuntos;
  };
  CRegistro<decltype(coloca)> visita{marcha, coloca};
  RecorrePuntos(dibujo, filtro, seleccion, visita);
  return visita.codigo;
}

int CTriangulacion2D::Rellena(CDibujo<int> const& dibujo, std::vector<CDibujo<int>*>* otros,
                              std::vector<CPosicionEntidad> const* seleccion, CDibujo<int>* extra) {
  Prepara();
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeRellena);
  cantidadPuntos = duplicados = 0;

  CMaximas<int> caja;
  unsigned cuenta = 0, progreso = 0, total = dibujo.Cantidad();
  if (otros != nullptr) {
    for (CDibujo<int> const* otro : *otros) total += otro != nullptr ? otro->Cantidad() : 0;
  }
  if (extra != nullptr) total += extra->Cantidad();
  total *= 2;  // a first estimate of the work

  const auto pasa = [&](bool contar) {
    int codigo = Rellena(0, dibujo, caja, cuenta, progreso, total, contar, seleccion, true);
    short lista = 1;
    if (otros != nullptr) {
      for (CDibujo<int> const* otro : *otros) {
        if (codigo != kHecho) return codigo;
        if (otro != nullptr) codigo = Rellena(lista, *otro, caja, cuenta, progreso, total, contar, nullptr, true);
        ++lista;
      }
    }
    if (codigo == kHecho && extra != nullptr) {
      codigo = Rellena(lista, *extra, caja, cuenta, progreso, total, contar, nullptr, false);
    }
    return codigo;
  };

  if (const int codigo = pasa(true); codigo != kHecho) return codigo;
  EstableceDivisiones(cuenta, caja);
  progreso = static_cast<unsigned>(cuenta * 0.5);  // the bar goes on from one third
  total = cuenta + progreso;
  if (const int codigo = pasa(false); codigo != kHecho) return codigo;
  divisiones.Comprimir();
  resumen.aceptados = cantidadPuntos;
  return cantidadPuntos < kMinimoPuntos ? kPocosPuntos : kHecho;
}

int CTriangulacion2D::Rellena(short lista, CTIN& tin, CMaximas<int>& caja, unsigned& cuenta, unsigned& progreso,
                              unsigned total, bool contar) {
  const CMarcha marcha{Progreso(), mensajes, progreso, total};
  CSetPuntosMdt const& puntos = tin.puntos;
  for (unsigned i = 0; i < puntos.size(); ++i) {
    if (!marcha.Avanza()) return kCancelado;
    if (contar) {
      ++cuenta;
      caja.Nuevo(puntos[i]);
    } else {
      ColocaIndices(puntos[i], lista, i, 0, true);
      ++cantidadPuntos;
    }
  }
  return kHecho;
}

int CTriangulacion2D::Rellena(CTIN& tin) {
  Prepara();
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeRellena);
  cantidadPuntos = duplicados = 0;

  CMaximas<int> caja;
  unsigned cuenta = 0, progreso = 0;
  const auto total = static_cast<unsigned>(2 * tin.puntos.size());
  if (const int codigo = Rellena(0, tin, caja, cuenta, progreso, total, true); codigo != kHecho) return codigo;
  EstableceDivisiones(cuenta, caja);
  if (const int codigo = Rellena(0, tin, caja, cuenta, progreso, total, false); codigo != kHecho) return codigo;
  divisiones.Comprimir();
  resumen.aceptados = cantidadPuntos;
  return cantidadPuntos < kMinimoPuntos ? kPocosPuntos : kHecho;
}

}  // namespace Meseta47
