#include <algorithm>

#include "model/storage/CFicheroSumado.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "model/threads/Codigos.h"
#include "model/threads/IPorcentaje.h"

namespace Meseta47 {

namespace {

constexpr unsigned kPuntosPorAviso = 1 << 16;

/// A point as it stands in a file. The survey data follow in the richer form only.
struct Registro {
  std::int32_t x, y, z, num;
  std::uint16_t intensidad;
  std::uint8_t marcas, clasificacion;
};
static_assert(sizeof(Registro) == 20);

/// Counts points and reports them in steps.
class Aviso {
 public:
  Aviso(unsigned& elValor, unsigned elTotal, IPorcentaje* elPorcentaje, CNivelMensajes elNivel)
      : valor(elValor), total(elTotal), porcentaje(elNivel > 0 ? elPorcentaje : nullptr), nivel(elNivel) {}

  /// Takes note of one more point. False cancels.
  bool Punto() {
    ++valor;
    return porcentaje == nullptr || valor % kPuntosPorAviso != 0 || porcentaje->Porcentaje(nivel, valor, total, false);
  }

 private:
  unsigned& valor;
  unsigned total;
  IPorcentaje* porcentaje;
  CNivelMensajes nivel;
};

template <class Bloque>
int LeePuntos(CSeccionEntrada& seccion, Bloque& puntos, bool rica, std::uint64_t cuantos, Aviso& aviso) {
  for (std::uint64_t i = 0; i < cuantos; ++i) {
    Registro r;
    CPuntoTIN p;
    if (!seccion.Toma(r) || (rica && !seccion.Toma(p.aero))) return kFicheroCortado;
    p.x = r.x, p.y = r.y, p.z = r.z, p.num = r.num;
    p.intensidad = r.intensidad, p.marcas = r.marcas, p.clasificacion = r.clasificacion;
    puntos.push_back(p);
    if (!aviso.Punto()) return kCancelado;
  }
  return seccion.Cierra();
}

}  // namespace

int CSetPuntosMdt::Write(CFile* fichero, unsigned int& valor, unsigned int total, IPorcentaje* porcentaje,
                         CNivelMensajes nivel) const {
  CSeccionSalida seccion(*fichero);
  Aviso aviso(valor, total, porcentaje, nivel);
  seccion.Pon(static_cast<std::uint32_t>(rica));
  seccion.Pon(static_cast<std::uint64_t>(size()));
  for (CPuntoTIN const& p : *this) {
    seccion.Pon(Registro{p.x, p.y, p.z, p.num, p.intensidad, p.marcas, p.clasificacion});
    if (rica) seccion.Pon(p.aero);
    if (!seccion.Va()) return kFicheroInaccesible;
    if (!aviso.Punto()) return kCancelado;
  }
  return seccion.Cierra() ? kHecho : kFicheroInaccesible;
}

int CSetPuntosMdt::Read(CFile* fichero) {
  unsigned int valor = 0;
  return Read(fichero, valor, 0, nullptr, MENSAJES_NINGUNO);
}

int CSetPuntosMdt::Read(CFile* fichero, unsigned int& valor, unsigned int total, IPorcentaje* porcentaje,
                        CNivelMensajes nivel) {
  clear();
  CSeccionEntrada seccion(*fichero);
  Aviso aviso(valor, total, porcentaje, nivel);
  std::uint32_t forma = 0;
  std::uint64_t cuantos = 0;
  if (!seccion.Toma(forma) || !seccion.Toma(cuantos)) return kFicheroCortado;
  if (forma > 1) return kFicheroInconsistente;
  if (!seccion.Caben(cuantos, sizeof(Registro) + (forma == 1 ? sizeof(tipoAero3) : 0))) return kFicheroCortado;
  rica = forma == 1;
  puntos.reserve(cuantos + reserva);
  const int codigo = LeePuntos(seccion, puntos, rica, cuantos, aviso);
  if (codigo != kHecho) clear();
  return codigo;
}

}  // namespace Meseta47
