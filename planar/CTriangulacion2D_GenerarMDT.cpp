// The temporary file becomes a model: points registered and sorted, triangles read and filtered by one thread a
// processor, the outline built from the sides of what was left out.
#include <algorithm>
#include <cmath>
#include <limits>

#include "model/CRango.h"
#include "model/CTIN.h"
#include "model/IPorcentaje.h"
#include "planar/CHiloGenerarMDT.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CEvent.h"
#include "platform/Procesadores.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRegistra = 19020;
constexpr unsigned kMensajeGenera = 19029;
constexpr unsigned kRegistro = 12;           // bytes: three point numbers
constexpr unsigned long kMilisegundos = 40;  // between two progress steps while the readers work
constexpr unsigned char kEstadoOrdenado = 1;
constexpr unsigned char kEstadoRico = 3;  // from here on the points of a model have the richer form

/// The slope range of the parameters; a minimum below 0 with a maximum of 90 is none.
bool HayFiltroPendiente(CDataTriangulacion const& datos) {
  return !(Signo(datos.pendienteMin) < 0 && Signo(datos.pendienteMax - 90.0) == 0);
}

/// A pool of readers over one file, and what they share.
class CLectores {
 public:
  CLectores(unsigned long long laLongitud, unsigned cuantos) : longitud(laLongitud), eventos(cuantos), hilos(cuantos) {}
  ~CLectores() {
    for (CHiloGenerarMDT& hilo : hilos) hilo.Abandona();
  }

  bool Arranca(CString const& ruta, CTIN& tin, std::vector<int> const& mapa, double lado2, unsigned parte,
               CRango const* alturas, CRango const* intensidades, CRango const* pendientes) {
    for (unsigned i = 0; i < hilos.size(); ++i) {
      if (!hilos[i].Start(i, &eventos[i], ruta, &tin, &mapa, lado2, &longitud, parte, alturas, intensidades, pendientes,
                          &seccion, &bytes, &terminados)) {
        return false;
      }
    }
    return true;
  }

  /// Reports until all are done; false when the run is cancelled.
  bool Espera(IPorcentaje* porcentaje, int nivel) {
    std::vector<HANDLE> manejadores(eventos.begin(), eventos.end());
    while (terminados < static_cast<long>(hilos.size())) {
      if (porcentaje != nullptr && porcentaje->Porcentaje(nivel, bytes, longitud, false) == 0) return false;
      WaitForMultipleObjects(static_cast<unsigned long>(manejadores.size()), manejadores.data(), true, kMilisegundos);
    }
    for (CHiloGenerarMDT& hilo : hilos) hilo.Stop();
    return true;
  }

  [[nodiscard]] bool TodoLeido() const {
    return bytes == longitud / kRegistro * kRegistro &&
           std::none_of(hilos.begin(), hilos.end(),
                        [](CHiloGenerarMDT const& h) { return h.falloDeDisco || h.faltoMemoria; });
  }
  [[nodiscard]] std::vector<CHiloGenerarMDT> const& Hilos() const { return hilos; }

 private:
  unsigned long long longitud;
  std::vector<CEvent> eventos;
  CCriticalSection seccion;
  std::atomic<std::uint64_t> bytes{0};
  std::atomic<long> terminados{0};
  std::vector<CHiloGenerarMDT> hilos;
};

/// The sides that bound what was kept: those that occur once among all threads.
std::vector<CLado> LadosDelLimite(std::vector<CHiloGenerarMDT> const& hilos) {
  std::vector<CLado> lados;
  for (CHiloGenerarMDT const& hilo : hilos) {
    const auto primero =
        std::find_if(hilo.lados.begin(), hilo.lados.end(), [](CLado const& l) { return l.P1 != l.P2; });
    lados.insert(lados.end(), primero, hilo.lados.end());
  }
  std::sort(lados.begin(), lados.end());
  AnulaLadosRepetidos(lados);
  return lados;
}

void Suma(CResumenPlano& total, CResumenPlano const& parte) {
  total.porPendiente += parte.porPendiente;
  total.porAltura += parte.porAltura;
  total.porIntensidad += parte.porIntensidad;
  total.porLongitud += parte.porLongitud;
  total.delMarco += parte.delMarco;
}

}  // namespace

int CTriangulacion2D::GenerarMDT(CDibujo<int> const& dibujo, std::vector<CDibujo<int>*>* otros, CTIN& tin,
                                 double ladoMaximo, bool vaciar, CString*, CDibujo<int> const*,
                                 CDibujo<int> const* anadido, CRango const* alturas, CRango const* intensidades) {
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeRegistra);
  CSetPuntosMdt puntos(0, tin.estado >= kEstadoRico);
  const unsigned long long enMalla = cantidadPuntos - duplicados;
  puntos.reserve(tin.puntos.size() + enMalla, maximas.Minimo.x, maximas.Maximo.x);
  divisiones.clear();

  unsigned long long contador = 0;
  const auto registra = [&](CDibujo<int> const& d) {
    return RegistraPuntos(puntos, d, contador, cantidadPuntos, nullptr, nullptr, nullptr);
  };
  if (const int codigo = registra(dibujo); codigo != kHecho) return codigo;
  if (otros != nullptr) {
    for (CDibujo<int>*& otro : *otros) {
      if (otro == nullptr) continue;
      if (const int codigo = registra(*otro); codigo != kHecho) return codigo;
      if (!vaciar) continue;
      delete otro;
      otro = nullptr;
    }
  }
  if (anadido != nullptr) {
    if (const int codigo = registra(*anadido); codigo != kHecho) return codigo;
  }

  puntos.sort(0, true);
  std::vector<int> mapa(
      cantidadPuntos);  // numbers have gaps where a point was left out, so it is as long as the last one
  for (unsigned i = 0; i < puntos.size(); ++i) {
    const int orden = static_cast<int>(i) + 1;
    mapa[static_cast<std::size_t>(puntos[i].num) - 1] = orden;
    puntos[i].num = orden;
  }
  tin.SetPuntosMdt(puntos);

  const double lado = ladoMaximo * Precision();
  const double lado2 = lado * lado > 0 ? lado * lado : std::numeric_limits<double>::max();
  return GeneraDesdeFichero(tin, mapa, lado2, alturas, intensidades);
}

int CTriangulacion2D::GenerarMDT(CTIN& tin, double ladoMaximo, CString*, CDibujo<int> const*) {
  std::vector<int> mapa(cantidadPuntos);
  for (unsigned i = 0; i < tin.puntos.size(); ++i) {
    CPuntoTIN& p = tin.puntos[i];
    if (p.num == 0) continue;
    const int orden = static_cast<int>(i) + 1;
    mapa[static_cast<std::size_t>(p.num) - 1] = orden;
    p.num = orden;
  }
  // The square goes through 32 bits: models remade so have a limit of 46340 scaled units, past which nothing passes.
  const double lado = ladoMaximo * Precision(), cuadrado = lado * lado;
  const double lado2 = cuadrado > 2147483647.0 ? -2147483648.0 : static_cast<double>(Trunca(cuadrado));
  return GeneraDesdeFichero(tin, mapa, lado2, nullptr, nullptr);
}

int CTriangulacion2D::GeneraDesdeFichero(CTIN& tin, std::vector<int> const& mapa, double lado2, CRango const* alturas,
                                         CRango const* intensidades) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeGenera);
  const unsigned long long longitud = ficheroTemporal->GetLength();
  if (ficheroTemporal->HayError()) return kFicheroInconsistente;
  const auto registros = static_cast<unsigned>(longitud / kRegistro);
  unsigned procesadores = NumeroProcesadores();
  unsigned parte = registros / procesadores;
  if (parte == 0) {
    procesadores = 1;
    parte = registros;
  }
  ++parte;

  CRango pendientes(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0);
  pendientes.SetValorMin(datos.pendienteMin);
  pendientes.SetValorMax(datos.pendienteMax);
  double ladoMasLargo = 0;
  std::vector<CLado> lados;
  {
    CLectores lectores(longitud, procesadores);
    if (!lectores.Arranca(nombreTemporal, tin, mapa, lado2, parte, alturas, intensidades,
                          HayFiltroPendiente(datos) ? &pendientes : nullptr)) {
      return kFicheroInaccesible;
    }
    if (!lectores.Espera(porcentaje, mensajes)) return kCancelado;
    if (!lectores.TodoLeido()) return kFicheroInconsistente;
    for (CHiloGenerarMDT const& hilo : lectores.Hilos()) {
      ladoMasLargo = std::max(ladoMasLargo, hilo.ladoMasLargo);
      Suma(resumen, hilo.rechazos);
    }
    lados = LadosDelLimite(lectores.Hilos());
  }

  if (const int codigo = tin.GenerarLimiteAPartirLados(lados, 1, 0); codigo != kHecho) return codigo;
  tin.longitudMaxima = Trunca(std::sqrt(ladoMasLargo));
  const int codigo = tin.Sort(porcentaje, 0, true);
  if (codigo == kHecho && tin.estado < kEstadoOrdenado) tin.estado = kEstadoOrdenado;
  return codigo;
}

}  // namespace Meseta47
