// The filling phase: a pass that counts and measures, a division of space sized by it, and a pass that records in every
// cell which point will be its last.
#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CTriangulacion2D.h"
#include "run/Recorrido.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRellena = 19020;
constexpr unsigned kMinimoPuntos = 3;

}  // namespace

int CTriangulacion2D::Rellena(short lista, CDibujo<int> const& dibujo, CMaximas<int>& caja, unsigned& cuenta,
                              unsigned& progreso, unsigned total, bool contar,
                              std::vector<CPosicionEntidad> const* seleccion, bool registra) {
  const CFiltroPuntos filtro(datos, Precision(), dibujo);
  CMarcha marcha(Progreso(), mensajes, total, progreso);
  int codigo = kHecho;
  if (contar) {
    CCuentaPuntos suya{cuenta, caja};
    codigo = CuentaPuntos(dibujo, filtro, seleccion, marcha, suya);
    cuenta = suya.cuantos;
    caja = suya.caja;
  } else {
    codigo = RecorrePuntos(dibujo, filtro, seleccion, marcha, [&](CLinea<int> const& e, unsigned entidad, unsigned k) {
      ColocaIndices(*e.PunteroAPunto(static_cast<int>(k)), lista, entidad, k, registra);
      ++cantidadPuntos;
    });
  }
  if (marcha.HayQuienEscuche()) progreso = static_cast<unsigned>(marcha.Hechos());
  return codigo;
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
  CMarcha marcha(Progreso(), mensajes, total, progreso);
  CSetPuntosMdt const& puntos = tin.puntos;
  int codigo = kHecho;
  for (unsigned i = 0; codigo == kHecho && i < puntos.size(); ++i) {
    if (!marcha.Avanza()) {
      codigo = kCancelado;
    } else if (contar) {
      ++cuenta;
      caja.Nuevo(puntos[i]);
    } else {
      ColocaIndices(puntos[i], lista, i, 0, true);
      ++cantidadPuntos;
    }
  }
  if (marcha.HayQuienEscuche()) progreso = static_cast<unsigned>(marcha.Hechos());
  return codigo;
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
