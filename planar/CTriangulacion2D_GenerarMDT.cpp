// The temporary file becomes a model: points registered and sorted, triangles read and filtered by one thread a
// processor, the outline built from the sides of what was left out.
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

#include "model/geometry/CRango.h"
#include "model/geometry/OrdenDePuntos.h"
#include "model/terrain/CTIN.h"
#include "model/threads/CEquipo.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CHiloGenerarMDT.h"
#include "planar/CTriangulacion2D.h"
#include "platform/Procesadores.h"

namespace Meseta47 {

namespace {

constexpr unsigned kMensajeRegistra = 19020;
constexpr unsigned kMensajeGenera = 19029;
constexpr unsigned kRegistro = CFicheroTriples::kBytes;
constexpr unsigned char kEstadoOrdenado = 1;
constexpr unsigned char kEstadoRico = 3;  // from here on the points of a model have the richer form

/// Which triangles of the file belong to the model; null for a range that takes all.
struct CCriba {
  double lado2 = 0;  ///< squared length in plan that no side may pass, scaled units
  CRango const *alturas = nullptr, *intensidades = nullptr, *pendientes = nullptr;
  bool pasanTodos = false;  ///< known beforehand, as that they turn clockwise and that the points stand in order
};

/// A pool of readers over one file, and what they share.
class CLectores {
 public:
  CLectores(unsigned long long laLongitud, unsigned cuantos)
      : longitud(laLongitud), equipo(cuantos, false), hilos(cuantos) {}
  ~CLectores() {
    for (CHiloGenerarMDT& hilo : hilos) hilo.Abandona();
  }

  int Arranca(CString const& ruta, CTIN& tin, std::vector<int> const& mapa, unsigned parte, CCriba const& criba) {
    for (unsigned i = 0; i < hilos.size(); ++i) {
      if (criba.pasanTodos) hilos[i].Confia();
      if (!hilos[i].Start(i, &equipo[i], ruta, &tin, &mapa, criba.lado2, &longitud, parte, criba.alturas,
                          criba.intensidades, criba.pendientes, &seccion, &bytes, &terminados)) {
        return hilos[i].TieneFichero() ? kFicheroInconsistente : kFicheroInaccesible;
      }
    }
    return kHecho;
  }

  /// Reports until all are done; false when the run is cancelled.
  bool Espera(IPorcentaje* porcentaje, int nivel) {
    const auto sigue = [&] {
      return porcentaje == nullptr || porcentaje->Porcentaje(nivel, bytes, longitud, false) != 0;
    };
    if (!equipo.EsperaHasta([&] { return terminados == static_cast<long>(hilos.size()); }, sigue)) return false;
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
  CEquipo equipo;
  CCriticalSection seccion;
  std::atomic<std::uint64_t> bytes{0};
  std::atomic<long> terminados{0};
  std::vector<CHiloGenerarMDT> hilos;
};

/// The points of a mesh where they stand in the drawings, which do not change meanwhile. They are ordered there: a
/// model is as big as its drawing, and there is not room for it twice.
class CPuntosDeMalla {
 public:
  CPuntosDeMalla(CMaximas<int> const& laCaja, std::size_t cuantos) : caja(laCaja) { claves.reserve(cuantos); }

  void Anade(CLinea<int> const& e, unsigned k) {
    claves.emplace_back(*e.PunteroAPunto(static_cast<int>(k)), caja);
    if (std::exchange(ultima, &e) == &e) return;
    CSetPuntos<int> const* set = CSetPuntos<int>::De(e);
    if (set != nullptr && set->TieneInfos()) conInfos.push_back(set);
  }

  /// Copies them in order, with the places in it as their numbers; the map gets those of their old numbers less 1.
  /// Nothing is left here.
  void Copia(CSetPuntosMdt& puntos, std::vector<int>& mapa) {
    OrdenaPorPosicion(claves, caja);
    std::sort(conInfos.begin(), conInfos.end(),
              [](auto a, auto b) { return std::less()(a->PunteroAPunto(0), b->PunteroAPunto(0)); });
    puntos.Genera(claves.size(), [&](std::size_t i) {
      AnticipaPunto(claves, i);
      CPuntoTIN punto(*claves[i].punto);
      punto.aero = InfoDe(claves[i].punto);
      const int orden = static_cast<int>(i) + 1;
      mapa[static_cast<std::size_t>(punto.num) - 1] = orden;
      punto.num = orden;
      return punto;
    });
    VectorCrudo<CClavePunto>().swap(claves);
  }

 private:
  /// Survey data, of the set in whose memory the point stands.
  [[nodiscard]] tipoAero3 InfoDe(CCoor3D<int> const* punto) const {
    if (conInfos.empty()) return {};
    const auto siguiente = std::upper_bound(conInfos.begin(), conInfos.end(), punto,
                                            [](auto p, auto set) { return std::less()(p, set->PunteroAPunto(0)); });
    if (siguiente == conInfos.begin()) return {};
    CSetPuntos<int> const& set = **(siguiente - 1);
    const auto k = punto - set.PunteroAPunto(0);
    return k < set.NPuntos() ? set.Info(static_cast<unsigned>(k)) : tipoAero3{};
  }

  CMaximas<int> const& caja;
  VectorCrudo<CClavePunto> claves;
  CLinea<int> const* ultima = nullptr;
  std::vector<CSetPuntos<int> const*> conInfos;
};

/// Gives points that have numbers those of their places, from 1; the map gets them by the old numbers less 1.
void Renumera(CSetPuntosMdt& puntos, std::vector<int>& mapa) {
  for (unsigned i = 0; i < puntos.size(); ++i) {
    int& num = puntos[i].num;
    if (num == 0) continue;
    const int orden = static_cast<int>(i) + 1;
    mapa[static_cast<std::size_t>(num) - 1] = orden;
    num = orden;
  }
}

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

/// A minimum below 0 with a maximum of 90 is no filter.
bool CTriangulacion2D::FiltraPendientes() const {
  return !(Signo(datos.pendienteMin) < 0 && Signo(datos.pendienteMax - 90.0) == 0);
}

int CTriangulacion2D::Genera(CGeneracion const& como, CTIN& tin) {
  if (IPorcentaje* porcentaje = Progreso()) porcentaje->Fase(mensajes, kMensajeRegistra);
  divisiones.clear();
  CSetPuntosMdt puntos(0, tin.estado >= kEstadoRico);
  std::vector<int> mapa(cantidadPuntos);  // numbers have gaps where a point was left out: as long as the last one
  // One drawing stands beside the points either way: then they go into order on all processors while they are copied.
  const bool deUnoEnUno =
      como.borra != nullptr && std::ranges::count(*como.borra, nullptr) + 1 < std::ssize(*como.borra);
  const int codigo = deUnoEnUno ? ReunePuntosBorrando(como, puntos, mapa) : ReunePuntos(como.fuentes, puntos, mapa);
  if (codigo != kHecho) return codigo;
  if (como.borra != nullptr) {
    for (CDibujo<int>*& otro : *como.borra) delete std::exchange(otro, nullptr);
  }
  tin.SetPuntosMdt(puntos);

  const double lado = como.ladoMaximo * Precision();
  const double lado2 = lado * lado > 0 ? lado * lado : std::numeric_limits<double>::max();
  return GeneraDesdeFichero(tin, mapa, lado2, como.alturas, como.intensidades, true);
}

/// The points of the mesh in order, copied from where they stand in the drawings, and the map to them.
int CTriangulacion2D::ReunePuntos(CFuentes const& fuentes, CSetPuntosMdt& puntos, std::vector<int>& mapa) const {
  CPuntosDeMalla malla(maximas, cantidadPuntos - duplicados);
  unsigned long long contador = 0;
  const int codigo = fuentes.Recorre([&](short, CDibujo<int> const& d, auto const*) {
    return RecorreMalla(d, contador, cantidadPuntos, nullptr,
                        [&malla](CLinea<int> const& e, unsigned k) { malla.Anade(e, k); });
  });
  if (codigo == kHecho) malla.Copia(puntos, mapa);
  return codigo;
}

/// The same where a further drawing goes as soon as its points are taken: never more than one of them stands beside
/// the points. These are put in order where they are, so that the run has no more of them at its peak.
int CTriangulacion2D::ReunePuntosBorrando(CGeneracion const& como, CSetPuntosMdt& puntos, std::vector<int>& mapa) {
  puntos.reserve(cantidadPuntos - duplicados, maximas.Minimo.x, maximas.Maximo.x);
  unsigned long long contador = 0;
  const int codigo = como.fuentes.Recorre([&](short lista, CDibujo<int> const& d, auto const*) {
    const int suyo = RecorreMalla(d, contador, cantidadPuntos, nullptr, [&puntos](CLinea<int> const& e, unsigned k) {
      puntos.push_back(PuntoDeModelo(e, k), false);  // nobody points at them yet
    });
    const bool esOtro = lista > 0 && !como.fuentes.EsExtra(lista);
    if (suyo == kHecho && esOtro) delete std::exchange((*como.borra)[static_cast<std::size_t>(lista) - 1], nullptr);
    return suyo;
  });
  if (codigo != kHecho) return codigo;
  puntos.OrdenaEnSitio();
  Renumera(puntos, mapa);
  return kHecho;
}

int CTriangulacion2D::GenerarMDT(CTIN& tin, double ladoMaximo, CString*, CDibujo<int> const*) {
  std::vector<int> mapa(cantidadPuntos);
  Renumera(tin.puntos, mapa);
  // The square goes through 32 bits: models remade so have a limit of 46340 scaled units, past which nothing passes.
  const double lado = ladoMaximo * Precision(), cuadrado = lado * lado;
  const double lado2 = cuadrado > 2147483647.0 ? -2147483648.0 : static_cast<double>(Trunca(cuadrado));
  return GeneraDesdeFichero(tin, mapa, lado2, nullptr, nullptr, false);
}

int CTriangulacion2D::GeneraDesdeFichero(CTIN& tin, std::vector<int> const& mapa, double lado2, CRango const* alturas,
                                         CRango const* intensidades, bool enOrden) {
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeGenera);
  resumen.porPendiente = resumen.porAltura = resumen.porIntensidad = resumen.porLongitud = resumen.delMarco = 0;
  const unsigned long long longitud = ficheroTemporal.Fichero()->GetLength();
  if (ficheroTemporal.Fichero()->HayError()) return kFicheroInconsistente;
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
  const bool sinRangos = alturas == nullptr && intensidades == nullptr && !FiltraPendientes();
  const bool pasanTodos = enOrden && sinRangos && medidas.dudosos == 0 && medidas.ladoMasLargo2 <= lado2 &&
                          medidas.triangulos + ladosDelCasco == registros;
  double ladoMasLargo = pasanTodos ? medidas.ladoMasLargo2 : 0;
  std::vector<CLado> lados;
  {
    CLectores lectores(longitud, procesadores);
    const CCriba criba{lado2, alturas, intensidades, FiltraPendientes() ? &pendientes : nullptr, pasanTodos};
    const int codigo = lectores.Arranca(ficheroTemporal.Ruta(), tin, mapa, parte, criba);
    if (codigo != kHecho) return codigo;
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
